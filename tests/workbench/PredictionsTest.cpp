// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "workbench/Csvpreview.h"
#include "workbench/Language.h"
#include "workbench/Predictpage.h"
#include "workbench/Predicttable.h"
#include "workbench/Workbenchtest.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>

namespace {

class Predicting : public Workbench
{
protected:
    QString written;

    void SetUp() override
    {
        Workbench::SetUp();
        written = folder.filePath(u("out.csv"));
        drop(csv("trial.csv", 50));
        window->Editor().MakeResponse(u("y"));
        window->Editor().AddFields({u("x"), u("z")});
        ASSERT_TRUE(window->Fit().HasFit());
    }
    QString file(const char *name, const QByteArray &text)
    {
        QFile made(folder.filePath(u(name)));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(text);
        return made.fileName();
    }
    /// Answers the dialogs of a prediction from a file.
    void predictFrom(const QString &name)
    {
        answer = [this, name](QDialog &dialog) {
            if (auto *const choose = qobject_cast<QFileDialog *>(&dialog)) {
                const bool save = choose->acceptMode() == QFileDialog::AcceptSave;
                choose->setDirectory(folder.path());
                choose->selectFile(save ? written : name);
            }
            return int(QDialog::Accepted);
        };
        QTest::mouseClick(window->findChild<QPushButton *>(u("PredictFile")), Qt::LeftButton);
    }
    QStringList lines() const
    {
        QFile read(written);
        return read.open(QIODevice::ReadOnly) ? QString::fromUtf8(read.readAll()).split(u'\n') : QStringList();
    }
};

} // namespace

TEST_F(Predicting, WaitsUntilEveryRecordIsRead)
{
    const QString trial = csv("new.csv", 20);
    action("Every Record").trigger();
    ASSERT_TRUE(window->Fit().IsReading());
    for (const char *const button : {"PredictTable", "PredictFile"}) {
        window->findChild<QPushButton *>(u(button))->click();
        EXPECT_TRUE(message().startsWith(u("Error: Every record is being read"))) << message().toStdString();
    }
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->Fit().HasFit(); }, 60000)) << message().toStdString();
    predictFrom(trial);
    EXPECT_EQ(lines().size(), 22) << message().toStdString();
}

TEST_F(Predicting, AFileOfNewRecordsSaysWhyOneHasNoValue)
{
    predictFrom(file("new.csv", "z;x;note\n3;1,5;a\n;2;b\n4;;c\n5;60;d\nNA;NA;e\n"));
    const QStringList out = lines();
    ASSERT_EQ(out.size(), 7) << message().toStdString();
    EXPECT_EQ(out[0], u("record,z,x,note,y,standardError,confidenceLow,confidenceHigh,predictionLow,predictionHigh"));
    const nuvo::Prediction at = window->Fit().Regression()->PredictAt({{u("x"), 1.5}, {u("z"), 3}});
    EXPECT_TRUE(out[1].startsWith(u("1,3,1.5,a,"))) << out[1].toStdString();
    EXPECT_EQ(out[1].split(u',')[4].toDouble(), at.value);
    EXPECT_EQ(out[1].split(u',')[9].toDouble(), at.prediction[1]);
    EXPECT_EQ(out[2], u("2,,2,b,,,,,,"));
    EXPECT_TRUE(message().contains(u("Predictions for 5 records in "))) << message().toStdString();
    EXPECT_TRUE(message().endsWith(u("; 3 of them have no value: x is null in 2, z is null in 1.")))
        << message().toStdString();
}

TEST_F(Predicting, TheOtherColumnsAreBesideThePredictionsAsTheyAre)
{
    predictFrom(file("new.csv", "key,record,Y,x,z,\"who, \"\"when\"\"\",predictionlow,share\n"
                                "9007199254740993,00123,1,1,2,\"Ann, \"\"9\"\" \",low,0.1\n"
                                ",A7,,2,3,\"two\nlines\",,1e300\n"));
    const QString out = lines().join(u'\n');
    EXPECT_TRUE(out.startsWith(u("record_2,key,record,Y,x,z,\"who, \"\"when\"\"\",predictionlow,share,predicted y,"
                                 "standardError,confidenceLow,confidenceHigh,predictionLow_2,predictionHigh\n"
                                 "1,9007199254740993,00123,1,1,2,\"Ann, \"\"9\"\" \",low,0.1,")))
        << out.toStdString() << message().toStdString();
    EXPECT_TRUE(out.contains(u("\n2,,A7,,2,3,\"two\nlines\",,1e+300,"))) << out.toStdString();
    // It is a file like any other.
    const QString first = written;
    written = folder.filePath(u("again.csv"));
    predictFrom(first);
    EXPECT_TRUE(message().startsWith(u("Predictions for 2 records in "))) << message().toStdString();
    EXPECT_TRUE(lines().value(0).startsWith(u("record_3,record_2,key,record,Y,"))) << lines().value(0).toStdString();
}

TEST_F(Predicting, OneRecordIsToldAsOneInBothLanguages)
{
    const struct
    {
        const char *code;
        const char *alone;
        const char *oneOfTwo;
    } said[] = {
        {"en", "1 record in %1, without a value: x is null in 1.", "; 1 of them has no value: "},
        {"de", "1 Datensatz in %1, ohne Wert: x ist in 1 leer.", "; 1 davon hat keinen Wert: "},
    };
    for (const auto &[code, alone, oneOfTwo] : said) {
        const nuvo::Language language((u(code)));
        predictFrom(file("new.csv", "x,z\n,2\n"));
        EXPECT_EQ(message(), u(alone).arg(written));
        predictFrom(file("new.csv", "x,z\n,2\n1,2\n"));
        EXPECT_TRUE(message().contains(u(oneOfTwo))) << message().toStdString();
    }
}

TEST_F(Predicting, AFileWithoutAFieldOfTheModelIsToldSo)
{
    predictFrom(file("new.csv", "a,b\n1,2\n"));
    EXPECT_TRUE(message().contains(u("not all there: x, z. There are: a, b."))) << message().toStdString();
    EXPECT_FALSE(QFile::exists(written));
}

TEST_F(Predicting, ATextWhereANumberShouldBeIsCounted)
{
    predictFrom(file("new.csv", "x,z\n1,2\ntwo,2\n3,4\n"));
    EXPECT_TRUE(message().endsWith(u("1 of them have no value: x holds no number in 1."))) << message().toStdString();
    EXPECT_EQ(lines().value(2), u("2,two,2,,,,,,"));
}

TEST_F(Predicting, ATermThatCannotBeWorkedOutIsCounted)
{
    nuvo::ModelState state = window->CurrentSitting().State();
    state.model.setTransformation(1, u("Log"));
    window->CurrentSitting().Change(state, u("log"));
    ASSERT_TRUE(window->Fit().HasFit()) << message().toStdString();
    predictFrom(file("new.csv", "x,z\n1,2\n-1,2\n"));
    EXPECT_TRUE(message().endsWith(u("a term cannot be worked out in 1."))) << message().toStdString();
}

TEST_F(Predicting, ATableOfTheDatabaseIsAskedFor)
{
    answer = [this](QDialog &dialog) {
        if (auto *const choose = qobject_cast<QInputDialog *>(&dialog)) {
            EXPECT_EQ(choose->textValue(), u("trial"));
        }
        if (auto *const save = qobject_cast<QFileDialog *>(&dialog)) {
            save->setDirectory(folder.path());
            save->selectFile(written);
        }
        return int(QDialog::Accepted);
    };
    QTest::mouseClick(window->findChild<QPushButton *>(u("PredictTable")), Qt::LeftButton);
    EXPECT_EQ(lines().size(), 52) << message().toStdString();
    EXPECT_EQ(message(), u("Predictions for 50 records in %1.").arg(written));
}

TEST_F(Predicting, ValuesThatAreTypedGiveBothIntervals)
{
    const auto &page = window->ShownPages().Prediction();
    const auto type = [&](const char *field, const char *value) {
        auto *const edit = page.findChild<QLineEdit *>(u(field));
        edit->selectAll();
        QTest::keyClicks(edit, u(value));
    };
    type("Value_x", "30");
    type("Value_z", "5");
    const nuvo::Prediction at = window->Fit().Regression()->PredictAt({{u("x"), 30}, {u("z"), 5}}, 0.95);
    const auto shown = [](double figure) { return QLocale().toString(figure, 'g', 8); };
    const QString text = page.findChild<QLabel *>(u("Prediction"))->text();
    EXPECT_TRUE(text.contains(u("Mean, 95 %: %1 to %2").arg(shown(at.confidence[0]), shown(at.confidence[1]))))
        << text.toStdString();
    EXPECT_TRUE(
        text.contains(u("New observation, 95 %: %1 to %2").arg(shown(at.prediction[0]), shown(at.prediction[1]))));
    ASSERT_EQ(page.Table().rows.size(), 1);
    EXPECT_EQ(page.Table().rows.first(),
              (QStringList{u("30"), u("5"), shown(at.value), shown(at.standardError), shown(at.confidence[0]),
                           shown(at.confidence[1]), shown(at.prediction[0]), shown(at.prediction[1])}));
}
