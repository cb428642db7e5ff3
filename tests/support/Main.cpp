#include <QApplication>

#include <gtest/gtest.h>

// Windows are real; they are drawn off screen unless the caller chose a platform.
int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // As nuvostat does: a machine without a locale would not know how wide a letter is.
    qputenv("LC_ALL", "C.UTF-8");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
