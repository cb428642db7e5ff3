// SPDX-License-Identifier: MIT
#include <QApplication>

#include <gtest/gtest.h>

namespace {

/// To CTest: whatever was asked for was skipped.
constexpr int AllSkipped = 77;

} // namespace

// Windows are real; they are drawn off screen unless the caller chose a platform.
int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // As nuvostat does: a machine without a locale would not know how wide a letter is.
    qputenv("LC_ALL", "C.UTF-8");
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS(); // and runs none
    QApplication application(argc, argv);
    const int status = RUN_ALL_TESTS();
    const testing::UnitTest &all = *testing::UnitTest::GetInstance();
    return status == 0 && all.skipped_test_count() > 0 && all.successful_test_count() == 0 ? AllSkipped : status;
}
