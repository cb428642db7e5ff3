// SPDX-License-Identifier: MIT
#include "workbench/Mainwindow.h"

#include "design/model/Modeleditor.h"
#include "engine/Regression.h"
#include "engine/kernel/Prediction.h"
#include "platform/Errors.h"
#include "platform/Modal.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"
#include "select/choice/Modelspage.h"
#include "support/Text.h"
#include "workbench/Choicepage.h"
#include "workbench/Livefit.h"
#include "workbench/Modelstable.h"
#include "workbench/Pages.h"
#include "workbench/Predictpage.h"
#include "workbench/Predicttable.h"
#include "workbench/Recordspage.h"
#include "workbench/Sitting.h"
#include "workbench/Sittingfolder.h"
#include "workbench/Waiting.h"
#include "workbench/Workbenchtest.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QDragEnterEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QUndoStack>

#include <gtest/gtest.h>

#include <cmath>

TEST_F(Workbench, FitsADroppedFileAsSoonAsYAndXAreThere)
{
    drop(csv("trial data.csv", 50));
    EXPECT_EQ(window->CurrentSitting().State().table, u("trial_data"));
    EXPECT_EQ(window->ShownPages().Records().View().model()->columnCount(), 4);
    EXPECT_EQ(window->Editor().Fields().numericNames(), (QStringList{u("y"), u("x"), u("z")}));
    defineXY();
    ASSERT_TRUE(window->Fit().HasFit()) << message().toStdString();
    EXPECT_NEAR(window->Fit().Regression()->Getb(1), 2, 0.1);
    EXPECT_EQ(message(), u("Fitted to 50 records."));
    EXPECT_TRUE(window->ShownPages().Summary().toPlainText().contains(u("x")));
    EXPECT_EQ(window->CurrentSitting().Models().size(), 1U);
}

TEST_F(Workbench, UndoesAndRedoesEveryChange)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 2);
    EXPECT_EQ(window->CurrentSitting().Models().size(), 2U);
    action("Undo").trigger();
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 1);
    EXPECT_EQ(window->Editor().Model().placesOf(u("z")).size(), 0U);
    action("Undo").trigger();
    EXPECT_FALSE(window->Fit().HasFit());
    action("Redo").trigger();
    action("Redo").trigger();
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 2);
}

TEST_F(Workbench, UndoesWhatIsTypedInALineBeforeTheModel)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const auto press = [](QWidget *widget, bool again = false) {
        QTest::keyClick(widget, Qt::Key_Z, again ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier);
    };
    const QUndoStack &steps = window->CurrentSitting().Undo();
    const int all = steps.index();
    for (const char *const name : {"Filter", "FieldFilter", "Value_x"}) {
        window->ShownPages().setCurrentIndex(u(name) == u("Value_x") ? 6 : 0);
        auto *const edit = window->findChild<QLineEdit *>(u(name));
        edit->setFocus();
        const QString before = edit->text();
        edit->end(false);
        QTest::keyClicks(edit, u("3"));
        press(edit);
        EXPECT_EQ(edit->text(), before) << name;
        EXPECT_EQ(steps.index(), all) << name;
        press(edit, true);
        EXPECT_EQ(edit->text(), before + u'3') << name;
        press(edit);
        press(edit);
        EXPECT_EQ(steps.index(), all - 1) << name << ": there is nothing more to undo in it";
        window->CurrentSitting().Undo().redo();
    }
    // A number is a part of the model with every digit.
    nuvo::ModelState state = window->CurrentSitting().State();
    state.model.setTransformation(1, u("Power"));
    state.model.setNumber(1, u("2"));
    window->CurrentSitting().Change(state, {});
    auto *const number = window->findChild<QLineEdit *>(u("NumberX1"));
    number->setFocus();
    number->end(false);
    QTest::keyClicks(number, u("3"));
    EXPECT_EQ(window->CurrentSitting().State().model.number(1), u("23"));
    press(number);
    EXPECT_EQ(window->CurrentSitting().State(), state);
    EXPECT_EQ(number->text(), u("2"));
    press(number);
    EXPECT_EQ(steps.index(), all);
}

TEST_F(Workbench, UndoesWhatIsTypedForAFieldAlsoWhileNamesAreOffered)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const QUndoStack &steps = window->CurrentSitting().Undo();
    const int all = steps.index();
    auto *const slot = window->findChild<QWidget *>(u("FieldX2"));
    slot->setFocus();
    QTest::keyClicks(slot, u("y"));
    auto *const edit = slot->findChild<QLineEdit *>();
    ASSERT_NE(edit, nullptr);
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClicks(edit, u("z"));
    QWidget *const offered = QApplication::activePopupWidget();
    ASSERT_NE(offered, nullptr);
    QTest::keyClick(offered, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(edit->text(), QString());
    EXPECT_EQ(steps.index(), all);
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(edit, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(steps.index(), all) << "who types a name has not come to the model yet";
}

TEST_F(Workbench, BringsTheSittingBack)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    const nuvo::ModelState state = window->CurrentSitting().State();
    // Not closed: as after the power was cut.
    std::unique_ptr<nuvo::MainWindow> killed = std::move(window);
    begin();
    EXPECT_EQ(window->CurrentSitting().State(), state);
    EXPECT_EQ(window->CurrentSitting().Models().size(), 2U);
    EXPECT_TRUE(window->Fit().HasFit());
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 2);
}

TEST_F(Workbench, PutsADamagedSittingAside)
{
    drop(csv("data.csv", 50));
    window.reset();
    QFile file(folder.filePath(u("sitting.json")));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.resize(file.size() / 2));
    file.close();
    begin();
    EXPECT_TRUE(message().contains(u("is no sitting"))) << message().toStdString();
    EXPECT_FALSE(window->CurrentSitting().State().hasData());
    EXPECT_TRUE(QFile::exists(folder.filePath(u("sitting-damaged.json"))));
}

TEST_F(Workbench, KeepsTheModelWhereTheDatabaseIsGone)
{
    drop(csv("data.csv", 50));
    defineXY();
    const nuvo::ModelState state = window->CurrentSitting().State();
    window.reset();
    ASSERT_TRUE(QFile::rename(state.database, state.database + u("x")));
    begin();
    EXPECT_TRUE(message().contains(u("data.db"))) << message().toStdString();
    EXPECT_EQ(window->CurrentSitting().State(), state);
    window.reset();
    ASSERT_TRUE(QFile::rename(state.database + u("x"), state.database));
    begin();
    EXPECT_TRUE(window->Fit().HasFit()) << message().toStdString();
}

TEST(SittingFolders, AreTakenByOneRunAlone)
{
    const QTemporaryDir base;
    {
        const nuvo::SittingFolder first(base.path());
        const nuvo::SittingFolder second(base.path());
        EXPECT_EQ(first.path(), base.filePath(u("sitting")));
        EXPECT_EQ(second.path(), base.filePath(u("sitting-2")));
    }
    EXPECT_EQ(nuvo::SittingFolder(base.path()).path(), base.filePath(u("sitting")));
}

TEST_F(Workbench, SelectsAnObservationEverywhere)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->ShownPages().Records().View().selectRow(6);
    EXPECT_EQ(window->ShownPages().Observations().Selected(), (std::set<qint64>{7}));
    window->ShownPages().Observations().View().selectRow(2);
    EXPECT_EQ(window->ShownPages().Records().Selected(), window->ShownPages().Observations().Selected());
}

TEST_F(Workbench, LeavesRecordsOutByAFilter)
{
    drop(csv("data.csv", 50));
    defineXY();
    auto *const filter = window->findChild<QLineEdit *>(u("Filter"));
    QTest::keyClicks(filter, u("x > 20"));
    QTest::keyClick(filter, Qt::Key_Return);
    EXPECT_EQ(window->Fit().Regression()->RecordsUsed(), 30);
    EXPECT_EQ(window->ShownPages().Records().View().model()->rowCount(), 30);
    filter->setText(u("no such thing >"));
    QTest::keyClick(filter, Qt::Key_Return);
    EXPECT_FALSE(window->Fit().HasFit());
    EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
    EXPECT_EQ(window->findChild<QLineEdit *>(u("GoTo"))->placeholderText(), QString()) << "nothing is counted";
    action("Undo").trigger();
    EXPECT_EQ(window->Fit().Regression()->RecordsUsed(), 30);
}

TEST_F(Workbench, ReadsEveryRecordInTheBackground)
{
    drop(csv("data.csv", 5000));
    defineXY();
    EXPECT_EQ(window->Fit().Regression()->RecordsUsed(), 2500);
    EXPECT_TRUE(message().contains(u("Every Record"))) << message().toStdString();
    QSignalSpy ended(&window->Fit(), &nuvo::LiveFit::Ended);
    action("Every Record").trigger();
    EXPECT_TRUE(window->Fit().IsReading());
    ASSERT_TRUE(ended.wait(20000));
    EXPECT_EQ(window->Fit().Regression()->RecordsUsed(), 5000);
    EXPECT_EQ(message(), u("Fitted to %1 records.").arg(QLocale().toString(5000)));
}

TEST_F(Workbench, GoesOnWhenTheModelChangesWhileEveryRecordIsRead)
{
    drop(csv("data.csv", 5000));
    defineXY();
    action("Every Record").trigger();
    ASSERT_TRUE(window->Fit().IsReading());
    QSignalSpy ended(&window->Fit(), &nuvo::LiveFit::Ended);
    window->Editor().AddFields({u("z")});
    ASSERT_TRUE(window->Fit().HasFit() || ended.wait(20000));
    while (window->Fit().IsReading())
        ASSERT_TRUE(ended.wait(20000));
    ASSERT_TRUE(window->Fit().HasFit()) << message().toStdString();
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 2);
    EXPECT_EQ(window->Fit().Regression()->RecordsUsed(), 5000);
}

TEST_F(Workbench, CopiesTheCommandWithTheFileThatTheTableWasMadeOf)
{
    const QString file = csv("data.csv", 50);
    drop(file);
    defineXY();
    const auto copied = [this] {
        action("Copy as Command").trigger();
        return QApplication::clipboard()->text();
    };
    const QString ofFile = u("nuvostat fit %1 --response y --control x").arg(file);
    const QString ofSitting = u("nuvostat fit --database %1/data.db --table data --response y --control x");
    EXPECT_EQ(copied(), ofFile);
    EXPECT_EQ(message(), u("Copied."));
    begin();
    EXPECT_EQ(copied(), ofFile) << "another day";
    action("Copy as C++").trigger();
    EXPECT_TRUE(message().contains(u("Save Database"))) << "the sitting's own goes with it";
    const nuvo::ModelState state = window->CurrentSitting().State();
    nuvo::ModelState other = state;
    other.filter = u("x > (SELECT avg(x) FROM data)");
    window->CurrentSitting().Change(other, {});
    EXPECT_TRUE(copied().startsWith(u("nuvostat fit --database "))) << "there the table is called otherwise";
    EXPECT_TRUE(message().contains(u(", as the filter names the table: "))) << message().toStdString();
    window->CurrentSitting().Change(state, {});
    csv("data.csv", 51);
    EXPECT_EQ(copied(), ofSitting.arg(folder.path()));
    EXPECT_TRUE(message().startsWith(u("Copied. It names the database of this sitting, as data.csv has changed ")))
        << message().toStdString();
    EXPECT_TRUE(message().contains(u("Save Database")));
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_EQ(copied(), ofSitting.arg(folder.path()));
    EXPECT_TRUE(message().contains(u("data.csv is no longer there"))) << message().toStdString();
    ASSERT_TRUE(QFile::copy(state.database, folder.filePath(u("kept.db"))));
    other = state;
    other.database = folder.filePath(u("kept.db"));
    window->CurrentSitting().Change(other, {});
    copied();
    EXPECT_EQ(message(), u("Copied."));
}

TEST_F(Workbench, ShowsTheRecordsOfATableThatTakesThePlaceOfAFit)
{
    drop(csv("data.csv", 50));
    defineXY();
    auto *const pages = window->findChild<nuvo::Pages *>();
    pages->setCurrentIndex(3);
    ASSERT_EQ(pages->tabText(3), u("Observations"));
    drop(csv("other.csv", 20));
    EXPECT_EQ(pages->tabText(pages->currentIndex()), u("Records"));
}

TEST_F(Workbench, ShowsAFileBeforeItIsReadAndTakesCorrections)
{
    QFile file(folder.filePath(u("german.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Größe;Preis\n1,5;3\n2,5;5\n3,5;6\n4,5;9\n");
    file.close();
    answer = [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), u("Open german.csv"));
        auto *const records = dialog.findChild<QTableWidget *>(u("PreviewRecords"));
        EXPECT_EQ(records->columnCount(), 2);
        EXPECT_EQ(records->rowCount(), 4);
        EXPECT_EQ(records->horizontalHeaderItem(0)->text(), u("Größe"));
        auto *const separator = dialog.findChild<QComboBox *>(u("Separator"));
        EXPECT_EQ(separator->itemText(0), u("recognised: semicolon"));
        EXPECT_EQ(dialog.findChild<QComboBox *>(u("Decimal"))->itemText(0), u("recognised: comma"));
        separator->setCurrentIndex(3);
        Q_EMIT separator->activated(3);
        EXPECT_EQ(records->columnCount(), 1);
        separator->setCurrentIndex(0);
        Q_EMIT separator->activated(0);
        EXPECT_EQ(records->columnCount(), 2);
        return int(QDialog::Accepted);
    };
    drop(file.fileName());
    EXPECT_EQ(window->Editor().Fields().numericNames(), (QStringList{u("Größe"), u("Preis")}))
        << message().toStdString();
}

TEST_F(Workbench, IsToldWhatStandsForAMissingValue)
{
    QFile file(folder.filePath(u("gaps.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("y,x\n1,2\n.,3\n3,-999\n4,1\n6,7\n");
    file.close();
    answer = [](QDialog &dialog) {
        const auto *const records = dialog.findChild<QTableWidget *>(u("PreviewRecords"));
        EXPECT_EQ(records->item(1, 0)->text(), u("."));
        QTest::keyClicks(dialog.findChild<QLineEdit *>(u("Nulls")), u(". -999"));
        EXPECT_EQ(records->item(1, 0)->text(), QString());
        EXPECT_EQ(records->item(2, 1)->text(), QString());
        return int(QDialog::Accepted);
    };
    drop(file.fileName());
    EXPECT_EQ(window->Editor().Fields().numericNames(), (QStringList{u("y"), u("x")}));
    defineXY();
    EXPECT_EQ(window->Fit().Regression()->RecordsUsed(), 3);
}

TEST_F(Workbench, ShowsTheNamesThatColumnsWillHave)
{
    QFile file(folder.filePath(u("rows.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(",row,a,\n1,5,1.5,x\n2,6,2.5,y\n");
    file.close();
    QStringList names;
    answer = [&](QDialog &dialog) {
        auto *const records = dialog.findChild<QTableWidget *>(u("PreviewRecords"));
        for (int column = 0; column < records->columnCount(); ++column)
            names.append(records->horizontalHeaderItem(column)->text());
        EXPECT_TRUE(records->horizontalHeaderItem(0)->font().italic());
        EXPECT_FALSE(records->horizontalHeaderItem(0)->toolTip().isEmpty());
        EXPECT_FALSE(records->horizontalHeaderItem(2)->font().italic());
        EXPECT_TRUE(records->item(0, 2)->textAlignment() & Qt::AlignRight);
        EXPECT_FALSE(records->item(0, 3)->textAlignment() & Qt::AlignRight);
        return int(QDialog::Rejected);
    };
    drop(file.fileName());
    EXPECT_EQ(names, (QStringList{u("row_2"), u("row"), u("a"), u("(no name)")}));
}

TEST_F(Workbench, ReadsNothingOfAFileThatIsGivenUp)
{
    answer = [](QDialog &) { return int(QDialog::Rejected); };
    drop(csv("data.csv", 50));
    EXPECT_FALSE(window->CurrentSitting().State().hasData());
    EXPECT_FALSE(QFile::exists(folder.filePath(u("data.db"))));
}

TEST_F(Workbench, OffersTheSamples)
{
    for (int time = 0; time < 2; ++time) {
        QTest::mouseClick(window->findChild<QAbstractButton *>(u("WelcomeSamples")), Qt::LeftButton);
        auto *const tables = window->findChild<QListWidget *>(u("Tables"));
        EXPECT_EQ(tables->findItems(u("Longley"), Qt::MatchExactly).size(), 1) << message().toStdString();
        window->OpenTable(u("Longley"));
        EXPECT_EQ(window->ShownPages().Records().View().model()->rowCount(), 16);
        window->CurrentSitting().Change({}, u("close"));
    }
}

TEST_F(Workbench, SaysWhatIsWrongWithAFile)
{
    QFile file(folder.filePath(u("broken.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("a,b\n1,2\n3\n");
    file.close();
    drop(file.fileName());
    EXPECT_TRUE(message().startsWith(u("Error: "))) << message().toStdString();
    EXPECT_TRUE(message().contains(u("line 3"))) << message().toStdString();
    window->OpenFile(folder.filePath(u("none.csv")));
    EXPECT_TRUE(message().contains(u("none.csv"))) << message().toStdString();
    EXPECT_FALSE(window->CurrentSitting().State().hasData());
}

TEST_F(Workbench, SaysHowANumberIsMadeOfATextAndThatWayWorks)
{
    drop(csv("data.csv", 50));
    window->Editor().AddFields({u("note")});
    const QString said = window->Editor().findChild<QLabel *>(u("Said"))->text();
    const QString expression = u("CASE WHEN \"note\" = 'yes' THEN 1 ELSE 0 END AS yes");
    EXPECT_EQ(said, u("note holds no number (text): it cannot be a variable of a regression. File > Query can make a "
                      "number of it, such as %1.")
                        .arg(expression));
    nuvo::ModelState state = window->CurrentSitting().State();
    state.sql = u("SELECT y, %1 FROM data").arg(QString(expression).replace(u("'yes'"), u("'n3'")));
    state.table.clear();
    window->Open(state, {});
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->CurrentSitting().State().isQuery(); }, 10000));
    window->Editor().MakeResponse(u("y"));
    window->Editor().AddFields({u("yes")});
    EXPECT_TRUE(window->Fit().HasFit()) << message().toStdString();
}

TEST_F(Workbench, TakesAModelThatWasChosen)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    nuvo::ChoicePage &page = window->ShownPages().Choosing();
    for (const int method : {0, 1, 2, 3}) {
        page.findChild<QComboBox *>(u("Method"))->setCurrentIndex(method);
        QTest::mouseClick(page.findChild<QPushButton *>(u("Choose")), Qt::LeftButton);
        EXPECT_TRUE(page.findChild<QLabel *>(u("ChoiceSaid"))->text().contains(u("x"))) << method;
        EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 2) << "the model stays";
    }
    page.findChild<QComboBox *>(u("Method"))->setCurrentIndex(0);
    QTest::mouseClick(page.findChild<QPushButton *>(u("Choose")), Qt::LeftButton);
    Q_EMIT page.findChild<TModelsPage *>()->UseModel(1);
    EXPECT_EQ(window->CurrentSitting().State().terms(), (QStringList{u("x")}));
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 1);
    action("Undo").trigger();
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 2);
}

TEST_F(Workbench, PredictsWhatIsTyped)
{
    drop(csv("data.csv", 50));
    defineXY();
    const auto &page = window->ShownPages().Prediction();
    auto *const edit = page.findChild<QLineEdit *>(u("Value_x"));
    auto *const result = page.findChild<QLabel *>(u("Prediction"));
    EXPECT_EQ(edit->text(), QLocale().toString(25.5)) << "the mean stands there first";
    edit->selectAll();
    QTest::keyClicks(edit, u("10"));
    const double expected = window->Fit().Regression()->PredictAt({{u("x"), 10}}).value;
    EXPECT_TRUE(result->text().startsWith(u("y = ") + QLocale().toString(expected, 'g', 8)))
        << result->text().toStdString();
    QTest::keyClicks(edit, u("?"));
    EXPECT_EQ(result->text(), u("\"10?\" is no number."));
}

TEST_F(Workbench, WritesPredictionsForATable)
{
    drop(csv("data.csv", 5));
    defineXY();
    nuvo::ScanSource table;
    table.databaseName = window->CurrentSitting().State().database;
    table.table = u("data");
    const QString name = folder.filePath(u("out.csv"));
    nuvo::Task task;
    const nuvo::TablePredictions done = nuvo::predictTable(
        nuvo::predictorOf(*window->Fit().Regression(), window->CurrentSitting().State().model, 0.9), table, name,
        task);
    EXPECT_EQ(done.records, 5);
    EXPECT_EQ(done.without, 0);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    ASSERT_EQ(lines.size(), 7);
    EXPECT_EQ(lines[0], "record,y,x,z,note,predicted y,standardError,confidenceLow,confidenceHigh,predictionLow,"
                        "predictionHigh");
    const nuvo::Prediction at = window->Fit().Regression()->PredictAt({{u("x"), 5}}, 0.9);
    EXPECT_TRUE(lines[5].startsWith("5,12.")) << lines[5].constData();
    EXPECT_EQ(lines[5].split(',').mid(2, 3), (QList<QByteArray>{"5", "8", "n5"}));
    EXPECT_EQ(lines[5].split(',')[5].toDouble(), at.value);
    EXPECT_EQ(lines[5].split(',')[10].toDouble(), at.prediction[1]);
}

TEST_F(Workbench, ComparesAndThrowsAwayModels)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    auto *const models = window->findChild<nuvo::ModelsTable *>();
    models->selectAll();
    EXPECT_TRUE(models->Comparison().contains(u("Only in the second: z"))) << models->Comparison().toStdString();
    models->model()->setData(models->model()->index(0, 0), u("plain"));
    EXPECT_EQ(window->CurrentSitting().Models()[0].title(), u("plain"));
    models->selectionModel()->select(models->model()->index(0, 0),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    QTest::keyClick(models, Qt::Key_Return);
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 1);
    models->selectionModel()->select(models->model()->index(1, 0),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    QTest::keyClick(models, Qt::Key_Delete);
    EXPECT_EQ(window->CurrentSitting().Models().size(), 1U);
    action("Undo").trigger();
    EXPECT_EQ(window->CurrentSitting().Models().size(), 2U);
}
