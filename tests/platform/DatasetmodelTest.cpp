// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "support/Databases.h"
#include "support/Print.h"
#include "support/Recordlimits.h"
#include "support/Text.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

class Views : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    std::unique_ptr<TestDatabase> db = TestDatabase::make(GetParam());
    TTable table;
    QTableView view;
    QStringList messages;

    void SetUp() override
    {
        SetMessageHandler([this](const QString &text, TMsgDlgType, unsigned, int) {
            messages.append(text);
            return int(mrOk);
        });
        table.SetDatabaseName(db->name());
        table.SetTableName(u("numbers"));
    }
    void TearDown() override { SetMessageHandler({}); }

    void attach()
    {
        view.setModel(table.Model());
        view.setSelectionModel(table.SelectionModel());
        new QAbstractItemModelTester(table.Model(), QAbstractItemModelTester::FailureReportingMode::Fatal, &view);
        view.resize(400, 300);
        view.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    }
    QString shown(int row, int column) const { return view.model()->index(row, column).data().toString(); }
    int currentRow() const { return view.currentIndex().row(); }
};

INSTANTIATE_TEST_SUITE_P(On, Views, testing::Values(TestDatabase::Sqlite, TestDatabase::Postgres),
                         [](const auto &each) { return backendName(each.param); });

TEST_P(Views, ShowTheRecordsUnderTheNamesOfTheFields)
{
    db->exec(u("CREATE TABLE numbers (id INTEGER PRIMARY KEY, x DOUBLE PRECISION, v VARCHAR(9), b BIGINT)"));
    db->exec(u("INSERT INTO numbers VALUES (1, 0.5, 'Größe', 9007199254740993), (2, NULL, NULL, NULL)"));
    table.Open();
    attach();
    ASSERT_EQ(view.model()->rowCount(), 2);
    ASSERT_EQ(view.model()->columnCount(), 4);
    EXPECT_EQ(view.model()->headerData(2, Qt::Horizontal).toString(), u("v"));
    EXPECT_EQ(view.model()->headerData(1, Qt::Vertical).toInt(), 2);
    EXPECT_EQ(shown(0, 1), u("0.5"));
    EXPECT_EQ(shown(0, 2), u("Größe"));
    EXPECT_EQ(shown(0, 3), u("9007199254740993"));
    EXPECT_EQ(shown(1, 1), QString());
    EXPECT_EQ(view.model()->index(0, 1).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignVCenter));
    EXPECT_EQ(view.model()->index(0, 2).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignLeft | Qt::AlignVCenter));
    EXPECT_FALSE(view.model()->index(0, 0).data(Qt::CheckStateRole).isValid());
    EXPECT_EQ(currentRow(), 0);
}

TEST_P(Views, GrowWithWhatIsFetched)
{
    db->makeNumbers(u("numbers"), 1000, 2);
    table.Open();
    QAbstractItemModel *model = table.Model();
    EXPECT_EQ(model->rowCount(), 64);
    EXPECT_TRUE(model->canFetchMore({}));
    QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
    model->fetchMore({});
    EXPECT_EQ(model->rowCount(), 192);
    EXPECT_EQ(inserted.count(), 1);
    table.MoveBy(500);
    EXPECT_GE(model->rowCount(), 501);
    EXPECT_EQ(table.SelectionModel()->currentIndex().row(), 500);
    while (model->canFetchMore({}))
        model->fetchMore({});
    EXPECT_EQ(model->rowCount(), 1000);
    EXPECT_EQ(table.RecNo(), 501);
    EXPECT_EQ(model->index(999, 0).data().toString(), u("1000"));
    model->fetchMore({});
    EXPECT_EQ(model->rowCount(), 1000);
}

TEST_P(Views, ScrollToTheEndOfATableThatIsNotKept)
{
    db->makeNumbers(u("numbers"), 2000, 2);
    nuvo::RecordLimits limits;
    limits.blockRows = 16;
    limits.headRows = 64;
    limits.windowRows = 128;
    limits.firstChunk = 16;
    limits.lastChunk = 32;
    setRecordLimits(table, limits);
    table.Open();
    attach();
    for (int i = 0; i < 500 && view.model()->rowCount() < 2000; ++i) {
        view.scrollToBottom();
        QTest::qWait(1);
    }
    ASSERT_EQ(view.model()->rowCount(), 2000);
    for (const int row : {1999, 0, 1000, 70, 1500, 63, 64})
        EXPECT_EQ(shown(row, 0), QString::number(row + 1)) << row;
    // The current record stands where it was, whatever was shown meanwhile.
    EXPECT_EQ(table.RecNo(), 1);
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 1);
    table.MoveBy(1200);
    EXPECT_EQ(shown(5, 0), u("6"));
    EXPECT_EQ(shown(1990, 0), u("1991"));
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 1201);
    EXPECT_EQ(table.FieldByName(u("x1")).AsFloat(), TestDatabase::number(1201, 1));
    table.Next();
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 1202);
    EXPECT_EQ(messages, QStringList());
}

TEST_P(Views, CanLookElsewhereWhileTheCursorReachesTheEnd)
{
    db->makeNumbers(u("numbers"), 60, 1);
    nuvo::RecordLimits limits;
    limits.blockRows = 4;
    limits.headRows = 8;
    limits.windowRows = 8;
    limits.firstChunk = 4;
    limits.lastChunk = 4;
    setRecordLimits(table, limits);
    table.Open();
    table.MoveBy(59); // the chunk ends with the table, which is not known yet
    const QAbstractItemModel *model = table.Model();
    ASSERT_EQ(model->rowCount(), 60);
    EXPECT_EQ(model->index(20, 0).data().toString(), u("21"));
    table.Next();
    EXPECT_TRUE(table.Eof());
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 60);
    EXPECT_EQ(model->index(20, 0).data().toString(), u("21"));
    table.Last();
    EXPECT_EQ(table.RecNo(), 60);
}

TEST_P(Views, AndTheCursorFollowEachOther)
{
    db->makeNumbers(u("numbers"), 300, 2);
    table.Open();
    attach();
    QSignalSpy scrolled(&table, &TDataSet::Scrolled);
    QSignalSpy current(table.SelectionModel(), &QItemSelectionModel::currentRowChanged);
    table.Next();
    EXPECT_EQ(currentRow(), 1);
    table.Last();
    EXPECT_EQ(currentRow(), 299);
    EXPECT_TRUE(table.Eof());
    table.First();
    EXPECT_EQ(currentRow(), 0);
    EXPECT_TRUE(table.Bof());
    EXPECT_EQ(scrolled.count(), 3);
    EXPECT_EQ(current.count(), 3);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(table.RecNo(), 3);
    EXPECT_EQ(scrolled.count(), 5);
    EXPECT_EQ(current.count(), 5);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.model()->index(5, 1)).center());
    EXPECT_EQ(table.RecNo(), 6);
    EXPECT_EQ(view.currentIndex().column(), 1);
    EXPECT_EQ(table.FieldByName(u("id")).AsInteger(), 6);
    table.Next();
    EXPECT_EQ(view.currentIndex().column(), 1);
    EXPECT_EQ(currentRow(), 6);
}

TEST_P(Views, StayQuietWhileControlsAreDisabled)
{
    db->makeNumbers(u("numbers"), 3000, 2);
    table.Open();
    attach();
    const int rows = view.model()->rowCount();
    QSignalSpy inserted(view.model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(view.model(), &QAbstractItemModel::modelReset);
    QSignalSpy current(table.SelectionModel(), &QItemSelectionModel::currentRowChanged);
    QSignalSpy scrolled(&table, &TDataSet::Scrolled);
    table.DisableControls();
    qint64 seen = 0;
    for (table.First(); !table.Eof(); table.Next(), ++seen) {
        if (seen % 500 == 0) {
            view.viewport()->repaint();
            QTest::keyClick(&view, Qt::Key_Down);
        }
    }
    EXPECT_EQ(seen, 3000);
    EXPECT_EQ(view.model()->rowCount(), rows);
    EXPECT_FALSE(view.model()->canFetchMore({}));
    EXPECT_EQ(inserted.count(), 0);
    EXPECT_EQ(scrolled.count(), 0);
    EXPECT_EQ(shown(2900, 0), QString());
    current.clear();
    table.EnableControls();
    EXPECT_EQ(view.model()->rowCount(), 3000);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(reset.count(), 0);
    EXPECT_EQ(scrolled.count(), 1);
    EXPECT_EQ(current.count(), 1);
    EXPECT_EQ(currentRow(), 2999);
}

TEST_P(Views, FollowOpeningRefreshingAndClosing)
{
    db->makeNumbers(u("numbers"), 10, 1);
    attach();
    EXPECT_EQ(view.model()->rowCount(), 0);
    EXPECT_EQ(view.model()->columnCount(), 0);
    table.Open();
    EXPECT_EQ(view.model()->rowCount(), 10);
    EXPECT_EQ(view.horizontalHeader()->count(), 2);
    table.MoveBy(4);
    db->exec(u("DELETE FROM numbers WHERE id > 7"));
    table.Refresh();
    EXPECT_EQ(view.model()->rowCount(), 7);
    EXPECT_EQ(currentRow(), 4);
    table.SetTableName(u("others"));
    EXPECT_EQ(view.model()->rowCount(), 0);
    EXPECT_FALSE(view.currentIndex().isValid());
    db->makeNumbers(u("others"), 3, 4);
    table.DisableControls();
    table.Open();
    EXPECT_EQ(view.model()->rowCount(), 0);
    table.EnableControls();
    EXPECT_EQ(view.model()->rowCount(), 3);
    EXPECT_EQ(view.horizontalHeader()->count(), 5);
    table.DisableControls();
    table.Close();
    EXPECT_EQ(shown(0, 0), QString());
    table.EnableControls();
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_P(Views, CarryOutAWishToBeActive)
{
    db->makeNumbers(u("numbers"), 10, 1);
    table.WishActive(true);
    EXPECT_EQ(table.Model()->rowCount(), 10);
    EXPECT_TRUE(table.Active());
    EXPECT_EQ(table.SelectionModel()->currentIndex().row(), 0);

    TTable later;
    later.SetDatabaseName(db->name());
    later.SetTableName(u("numbers"));
    view.setModel(later.Model());
    view.setSelectionModel(later.SelectionModel());
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    EXPECT_EQ(later.Model()->rowCount(), 0);
    later.WishActive(true);
    EXPECT_FALSE(later.Active());
    QTest::qWait(1);
    EXPECT_TRUE(later.Active());
    EXPECT_EQ(later.Model()->rowCount(), 10);
}

TEST_P(Views, OfADatasetThatDoesNotOpenShowOneMessage)
{
    table.WishActive(true);
    attach();
    QTest::qWait(10);
    EXPECT_EQ(view.model()->rowCount(), 0);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith(u("No table \"numbers\" in database "))) << messages[0].toStdString();
}

TEST_P(Views, ThatCannotReadOnShowOneMessageAndWhatIsThere)
{
    db->makeNumbers(u("numbers"), 1000, 1);
    table.Open();
    attach();
    const int rows = view.model()->rowCount();
    db->exec(u("DROP TABLE numbers"));
    for (int i = 0; i < 5; ++i) {
        view.scrollToBottom();
        view.model()->fetchMore({});
        QTest::qWait(1);
    }
    EXPECT_EQ(messages.size(), 1);
    EXPECT_EQ(view.model()->rowCount(), rows);
    EXPECT_EQ(shown(0, 0), u("1"));
    table.Next();
    EXPECT_EQ(currentRow(), 1);
}

TEST_P(Views, KeepTheirRowWhenTheCursorCannotFollow)
{
    db->makeNumbers(u("numbers"), 1000, 1);
    nuvo::RecordLimits limits;
    limits.blockRows = 16;
    limits.headRows = 64;
    limits.windowRows = 64;
    limits.firstChunk = 16;
    limits.lastChunk = 16;
    setRecordLimits(table, limits);
    table.Open();
    table.Last();
    table.First();
    attach();
    db->exec(u("DROP TABLE numbers"));
    view.setCurrentIndex(view.model()->index(500, 0));
    QTest::qWait(1);
    EXPECT_EQ(messages.size(), 1);
    EXPECT_EQ(table.RecNo(), 1);
    EXPECT_EQ(currentRow(), 0);
}

TEST_P(Views, LetGoOfADatasetThatIsDestroyed)
{
    db->makeNumbers(u("numbers"), 10, 1);
    auto query = std::make_unique<TQuery>();
    query->SetDatabaseName(db->name());
    query->SetSQL(u("SELECT * FROM numbers"));
    query->Open();
    view.setModel(query->Model());
    view.setSelectionModel(query->SelectionModel());
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    query.reset();
    view.viewport()->repaint();
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::qWait(1);
    EXPECT_TRUE(view.model() == nullptr || view.model()->rowCount() == 0);
}
