// SPDX-License-Identifier: MIT
// The form of the README, with its program's entry out of the way.
#define main exampleMain
#include "examples/Form.cpp" // NOLINT(bugprone-suspicious-include)
#undef main

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <gtest/gtest.h>

namespace {

/// The example on a folder that has a sample database, or none.
class FormExample : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder_.isValid());
        ASSERT_TRUE(QDir::setCurrent(folder_.path()));
        SetMessageHandler([this](const QString &text, TMsgDlgType, unsigned, int) {
            messages_.append(text);
            return int(mrOk);
        });
    }

    void TearDown() override
    {
        SetMessageHandler({});
        QDir::setCurrent(QDir::rootPath());
    }

    static void ClickFit(Form &form) { QTest::mouseClick(form.findChild<QPushButton *>(), Qt::LeftButton); }

    QTemporaryDir folder_;
    QStringList messages_;
};

} // namespace

TEST_F(FormExample, AClickFitsAndTheGridShowsTheRecords)
{
    ASSERT_TRUE(QFile::copy(QStringLiteral(BUILD_ROOT "/samples.db"), QStringLiteral("samples.db")));
    Form form;
    form.show();
    ClickFit(form);
    EXPECT_EQ(form.findChild<QLabel *>()->text(), QStringLiteral("R² = 0.980655"));
    EXPECT_EQ(form.findChild<QTableView *>()->model()->rowCount(), 16);
    EXPECT_EQ(messages_, QStringList());
}

TEST_F(FormExample, WithoutADatabaseAClickShowsOneMessageAndTheProgramGoesOn)
{
    Form form;
    form.show();
    ClickFit(form);
    ASSERT_EQ(messages_.size(), 1);
    EXPECT_TRUE(messages_[0].contains(QStringLiteral("samples.db"))) << qPrintable(messages_[0]);
    EXPECT_EQ(form.findChild<QLabel *>()->text(), QString());
}
