// SPDX-License-Identifier: MIT
// The form of the example, with its program's entry out of the way.
#define main predictionMain
#include "examples/Prediction.cpp" // NOLINT(bugprone-suspicious-include)
#undef main

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class PredictionExample : public testing::Test
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

    static QStringList figures(const PredictionForm &form)
    {
        QStringList texts;
        const auto *layout = static_cast<QFormLayout *>(form.layout());
        for (int row = 2; row < layout->rowCount(); ++row)
            texts.append(static_cast<QLabel *>(layout->itemAt(row, QFormLayout::FieldRole)->widget())->text());
        return texts;
    }

    QTemporaryDir folder_;
    QStringList messages_;
};

} // namespace

TEST_F(PredictionExample, AWarmerDayChangesThePredictionAndBothIntervals)
{
    ASSERT_TRUE(QFile::copy(QStringLiteral(BUILD_ROOT "/samples.db"), QStringLiteral("samples.db")));
    PredictionForm form;
    // R: predict(lm(Ozone ~ Temp + I(1/Wind), airquality), data.frame(Temp = c(80, 90), Wind = 10), interval = ...)
    const QStringList before = figures(form);
    form.findChildren<QSpinBox *>()[0]->setValue(90);
    const QStringList after = figures(form);
    EXPECT_EQ(before,
              (QStringList{QStringLiteral("41.1"), QStringLiteral("36.8 to 45.3"), QStringLiteral("0.7 to 81.4")}));
    EXPECT_EQ(after,
              (QStringList{QStringLiteral("57.8"), QStringLiteral("50.5 to 65.2"), QStringLiteral("17.1 to 98.6")}));
    EXPECT_EQ(messages_, QStringList());
}

TEST_F(PredictionExample, WithoutADatabaseOneMessageSaysSo)
{
    const PredictionForm form;
    ASSERT_EQ(messages_.size(), 1);
    EXPECT_TRUE(messages_[0].contains(QStringLiteral("samples.db"))) << qPrintable(messages_[0]);
}
