// SPDX-License-Identifier: MIT
#include "present/statistics/Observationspage.h"

#include "present/Fitted.h"
#include "present/Windowtest.h"
#include "support/Text.h"

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

namespace {

nuvo::Figures taken(TRegression &regression)
{
    nuvo::Asked asked;
    asked.influence = true;
    return nuvo::figures(regression, asked);
}

/// One record, 7, lies far off.
double withAnOutlier(int i, int j)
{
    return scattered(i, j) + (i == 7 && j == 0 ? 200 : 0);
}

class ObservationsPage : public testing::Test
{
protected:
    void fill(Fitted &fitted)
    {
        page.SetFigures(taken(fitted.table));
        page.resize(900, 400);
        page.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
        page.activateWindow();
        page.View().setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
    }
    const QAbstractItemModel &model() { return *page.View().model(); }
    int columnOf(const char *title)
    {
        for (int column = 0; column < model().columnCount(); ++column) {
            if (model().headerData(column, Qt::Horizontal).toString() == u(title))
                return column;
        }
        ADD_FAILURE() << "no column " << title;
        return 0;
    }
    QString cell(int row, const char *title, int role = Qt::DisplayRole)
    {
        return model().index(row, columnOf(title)).data(role).toString();
    }
    void clickHeading(const char *title)
    {
        QHeaderView *header = page.View().horizontalHeader();
        const int column = columnOf(title);
        page.View().scrollTo(model().index(0, column));
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
    }

    TObservationsPage page;
};

QStringList lines(const QString &text)
{
    return text.split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

TEST_F(ObservationsPage, HasARowForEachObservationWithItsFigures)
{
    Fitted fitted = scatteredFit(20, 2);
    fill(fitted);
    ASSERT_EQ(model().rowCount(), 20);
    QStringList titles;
    for (int column = 0; column < model().columnCount(); ++column)
        titles += model().headerData(column, Qt::Horizontal).toString();
    EXPECT_EQ(titles.join(u'|'), u("Record|y|x1|x2|Fitted|Residual|Leverage|Standardized|Studentized|Cook|DFFITS|"
                                   "Stands out by"));
    const int i = 5;
    EXPECT_EQ(cell(i - 1, "Record"), u("5"));
    const auto shown = [&](const char *title) { return cell(i - 1, title).toDouble(); };
    const auto expectClose = [](double found, double wanted) {
        EXPECT_NEAR(found, wanted, std::fabs(wanted) * 1e-6);
    };
    expectClose(shown("x2"), fitted.table.Getx(i, 2));
    expectClose(shown("Fitted"), fitted.table.GetyHat(i));
    expectClose(shown("Residual"), fitted.table.Gete(i));
    expectClose(shown("Leverage"), fitted.table.GetLeverage(i));
    expectClose(shown("Cook"), fitted.table.GetCook(i));
}

TEST_F(ObservationsPage, NumbersRecordsByTheirPlaceInTheTable)
{
    Fitted fitted(12, controlNames(1), [](int i, int j) {
        return i == 3 && j == 1 ? std::numeric_limits<double>::quiet_NaN() : scattered(i, j);
    });
    fill(fitted);
    ASSERT_EQ(model().rowCount(), 11);
    EXPECT_EQ(cell(1, "Record"), u("2"));
    EXPECT_EQ(cell(2, "Record"), u("4"));
    page.SetSelected({3, 4});
    EXPECT_EQ(page.Selected(), (std::set<qint64>{4}));
}

TEST_F(ObservationsPage, TheReasonStandsBesideTheRecordAndFilesHaveItLast)
{
    Fitted fitted = scatteredFit(30, 2);
    Fitted wider = scatteredFit(30, 5);
    for (Fitted *one : {&fitted, &wider, &fitted}) {
        fill(*one);
        const QHeaderView *header = page.View().horizontalHeader();
        const int last = model().columnCount() - 1;
        EXPECT_EQ(columnOf("Stands out by"), last);
        EXPECT_EQ(header->visualIndex(last), 1);
        EXPECT_EQ(header->visualIndex(0), 0);
        for (int column = 1; column < last; ++column)
            EXPECT_EQ(header->visualIndex(column), column + 1);
    }
    const QTemporaryDir directory;
    page.SaveCsv(directory.filePath(u("o.csv")));
    QFile file(directory.filePath(u("o.csv")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readLine(), "record,y,x1,x2,fitted,residual,leverage,standardizedResidual,studentizedResidual,"
                               "cook,dffits,standsOutBy\n")
        << "as nuvostat fit --save-observations, and the reasons behind";
    bool isThere = false;
    while (!file.atEnd()) {
        const QByteArray reasons = file.readLine().trimmed().split(',').last();
        isThere = isThere || reasons.contains("leverage") || reasons.contains("studentizedResidual") ||
                  reasons.contains("cook") || reasons.contains("dffits");
    }
    EXPECT_TRUE(isThere);
}

TEST_F(ObservationsPage, SortsByNumberNotByText)
{
    Fitted fitted = scatteredFit(30, 2);
    fill(fitted);
    clickHeading("Residual");
    EXPECT_EQ(page.View().horizontalHeader()->sortIndicatorSection(), columnOf("Residual"));
    const auto expectSorted = [&](bool rising) {
        for (int row = 1; row < 30; ++row) {
            const double before = cell(row - 1, "Residual").toDouble();
            const double after = cell(row, "Residual").toDouble();
            EXPECT_TRUE(rising ? before <= after : before >= after) << row;
        }
    };
    expectSorted(page.View().horizontalHeader()->sortIndicatorOrder() == Qt::AscendingOrder);
    clickHeading("Residual");
    expectSorted(page.View().horizontalHeader()->sortIndicatorOrder() == Qt::AscendingOrder);
    clickHeading("Record");
    EXPECT_EQ(cell(9, "Record"), u("10"));
}

TEST_F(ObservationsPage, WhatDoesNotExistStaysAtTheEndEitherWay)
{
    Fitted fitted(8, controlNames(1), [](int i, int j) { return j == 0 ? scattered(i, 0) : double(i == 8); });
    fill(fitted);
    for (int times = 0; times < 2; ++times) {
        clickHeading("Studentized"); // of a leverage of 1
        EXPECT_EQ(cell(7, "Studentized"), u("-"));
        EXPECT_EQ(cell(7, "Record"), u("8"));
    }
}

TEST_F(ObservationsPage, MarksWhatStandsOutInColourAndInWords)
{
    Fitted fitted(30, controlNames(2), withAnOutlier);
    fill(fitted);
    EXPECT_TRUE(cell(6, "Stands out by").contains(u("residual"))) << cell(6, "Stands out by").toStdString();
    EXPECT_TRUE(cell(6, "Studentized", Qt::ToolTipRole).contains(u("Stands out by: ")));
    EXPECT_TRUE(cell(6, "Studentized", Qt::AccessibleTextRole).contains(u("Stands out by: ")));
    EXPECT_FALSE(cell(6, "x1", Qt::AccessibleTextRole).contains(u("Stands out")));
    const auto ground = [&](int row, const char *title) {
        const QModelIndex index = model().index(row, columnOf(title));
        page.View().scrollTo(index);
        const QRect place = page.View().visualRect(index);
        return page.View().viewport()->grab().toImage().pixelColor(place.left() + 2, place.top() + 2);
    };
    for (const QColor &base : {QColor(Qt::white), QColor(0x1e, 0x1e, 0x1e)}) {
        QPalette palette = page.palette();
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, base == Qt::white ? Qt::black : Qt::white);
        page.setPalette(palette);
        EXPECT_EQ(ground(6, "x1"), base);
        EXPECT_NE(ground(6, "Studentized"), base);
    }
    auto *only = part<QCheckBox>(page, "OnlyStandOuts");
    only->click();
    EXPECT_LT(model().rowCount(), 30);
    for (int row = 0; row < model().rowCount(); ++row)
        EXPECT_FALSE(cell(row, "Stands out by").isEmpty());
    EXPECT_EQ(part<QLabel>(page, "ObservationsCount")->text().section(u' ', 0, 0).toInt(), model().rowCount());
    only->click();
    EXPECT_EQ(model().rowCount(), 30);
}

TEST_F(ObservationsPage, CopiesTheSelectedRowsAsTheyAreSortedOrAllOfThem)
{
    Fitted fitted = scatteredFit(15, 1);
    fill(fitted);
    page.View().sortByColumn(0, Qt::DescendingOrder);
    page.SetSelected({3, 11});
    QTest::keyClick(&page.View(), Qt::Key_C, Qt::ControlModifier);
    QStringList copied = lines(QGuiApplication::clipboard()->text());
    ASSERT_EQ(copied.size(), 3);
    EXPECT_EQ(copied[0].section(u'\t', 0, 2), u("Record\ty\tx1"));
    EXPECT_EQ(copied[1].section(u'\t', 0, 0), u("11"));
    EXPECT_EQ(copied[2].section(u'\t', 0, 0), u("3"));
    EXPECT_EQ(copied[2].section(u'\t', 3, 3).toDouble(), fitted.table.GetyHat(3)); // all digits
    page.SetSelected({});
    QTest::keyClick(&page.View(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(lines(QGuiApplication::clipboard()->text()).size(), 16);
}

TEST_F(ObservationsPage, SavesCsvWithAllDigitsThatReadsBack)
{
    Fitted fitted(10, {u("a,\"b\"")}, scattered);
    fill(fitted);
    const QTemporaryDir directory;
    const QString file = directory.filePath(u("rows.csv"));
    const Person person([&](QDialog &dialog) {
        auto *edit = part<QLineEdit>(dialog, "fileNameEdit");
        edit->setText(file);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    click(page, "SaveObservations");
    QFile saved(file);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    const QStringList rows = lines(QString::fromUtf8(saved.readAll()));
    ASSERT_EQ(rows.size(), 11);
    EXPECT_TRUE(rows[0].startsWith(u("record,y,\"a,\"\"b\"\"\",fitted,"))) << rows[0].toStdString();
    for (int i = 1; i <= 10; ++i) {
        EXPECT_EQ(rows[i].section(u',', 0, 0).toInt(), i);
        EXPECT_EQ(rows[i].section(u',', 3, 3).toDouble(), fitted.table.GetyHat(i));
    }
}

TEST_F(ObservationsPage, ACsvFileThatCannotBeWrittenIsAnErrorThatNamesIt)
{
    Fitted fitted = scatteredFit(10, 1);
    fill(fitted);
    const QString error = errorOf([&] { page.SaveCsv(u("/nowhere/rows.csv")); });
    EXPECT_TRUE(error.contains(u("/nowhere/rows.csv"))) << error.toStdString();
}

TEST_F(ObservationsPage, SaysSelectionsOfThePersonOnly)
{
    Fitted fitted = scatteredFit(15, 1);
    fill(fitted);
    const QSignalSpy spy(&page, &TObservationsPage::SelectionChanged);
    page.SetSelected({2, 3});
    EXPECT_EQ(spy.count(), 0);
    const QRect place = page.View().visualRect(model().index(4, 1));
    QTest::mouseClick(page.View().viewport(), Qt::LeftButton, {}, place.center());
    EXPECT_EQ(page.Selected(), (std::set<qint64>{5}));
    EXPECT_GE(spy.count(), 1);
}

TEST_F(ObservationsPage, WithoutAFitIsEmptyAndSaysSo)
{
    TMLRTable never;
    page.SetFigures(taken(never));
    EXPECT_EQ(model().rowCount(), 0);
    EXPECT_EQ(part<QLabel>(page, "ObservationsCount")->text(), u("There is no fit with observations."));
    EXPECT_FALSE(part(page, "SaveObservations")->isEnabled());
    EXPECT_EQ(lines(page.SelectionText()).size(), 1);
}

TEST_F(ObservationsPage, HoldsTwoThousandFiveHundredObservations)
{
    Fitted fitted = scatteredFit(2500, 10);
    fill(fitted);
    ASSERT_EQ(model().rowCount(), 2500);
    page.View().sortByColumn(columnOf("Cook"), Qt::DescendingOrder);
    EXPECT_GE(cell(0, "Cook").toDouble(), cell(2499, "Cook").toDouble());
    std::set<qint64> all;
    for (qint64 record = 1; record <= 2500; ++record)
        all.insert(record);
    page.SetSelected(all);
    EXPECT_EQ(page.Selected(), all);
}
