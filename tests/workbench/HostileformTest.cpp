// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "workbench/Asform.h"

#include <QAction>
#include <QFile>

class HostileForms : public HostileWindow
{
protected:
    void SetUp() override
    {
        HostileWindow::SetUp();
        QByteArray rows = "y,x\n";
        for (int i = 0; i < 20; ++i)
            rows += QByteArray::number(3 + 2 * i + i % 3) + ',' + QByteArray::number(i) + '\n';
        drop(write("good.csv", rows));
        defineModel("y", "x");
        ASSERT_TRUE(fit().HasFit()) << message().toStdString();
    }
    QString refusal(const char *name, const QByteArray &content)
    {
        const nuvo::ModelState before = sitting().State();
        drop(write(name, content));
        EXPECT_EQ(sitting().State(), before);
        EXPECT_TRUE(fit().HasFit());
        EXPECT_TRUE(isAlive());
        EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
        EXPECT_TRUE(message().contains(u(name))) << message().toStdString();
        return message();
    }
};

TEST_F(HostileForms, ThatAreNoneAreRefused)
{
    refusal("broken.ui", "<?xml version=\"1.0\"?><ui version=\"4.0\"><widget class=\"QWidget\"");
    refusal("empty.ui", "");
    refusal("text.ui", "not a form at all");
    refusal("page.ui", "<html><body>a page</body></html>");
    refusal("binary.ui", QByteArray("\x7f\x45\x4c\x46\0\1\2\3", 8));
    refusal("deep.ui",
            QByteArray("<ui version=\"4.0\">") + QByteArray("<widget class=\"QWidget\" name=\"a\">").repeated(3000));
}

TEST_F(HostileForms, OfOtherProgramsHaveNoRegression)
{
    const QString said = refusal(
        "other.ui",
        "<ui version=\"4.0\"><class>W</class><widget class=\"QMainWindow\" name=\"W\"><widget class=\"Some3DView\" "
        "name=\"v\"><property name=\"source\"><url><string>http://127.0.0.1:9/x</string></url></property></widget>"
        "<widget class=\"QPushButton\" name=\"b\"/></widget><customwidgets><customwidget><class>Some3DView</class>"
        "<extends>QWidget</extends><header>some3dview.h</header></customwidget></customwidgets></ui>");
    EXPECT_TRUE(said.contains(u("no regression component"))) << said.toStdString();
}

TEST_F(HostileForms, WithADatabaseThatIsGoneKeepTheirModel)
{
    nuvo::ModelState state = sitting().State();
    state.database = folder.filePath(u("gone.db"));
    const nuvo::ModelState before = sitting().State();
    drop(write("gone.ui", nuvo::formFile(state, folder.path())));
    EXPECT_TRUE(message().contains(u("gone.db"))) << message().toStdString();
    EXPECT_EQ(sitting().State().terms(), state.terms());
    EXPECT_FALSE(fit().HasFit());
    EXPECT_TRUE(isAlive());
    action("Undo").trigger();
    EXPECT_EQ(sitting().State(), before);
    EXPECT_TRUE(fit().HasFit()) << message().toStdString();
}
