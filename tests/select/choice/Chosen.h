// SPDX-License-Identifier: MIT
#pragma once

#include "present/Fitted.h"
#include "present/Windowtest.h"
#include "select/Bkmain.h"
#include "select/Choice.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"
#include "support/Text.h"

#include <QHeaderView>
#include <QTableView>
#include <QTemporaryDir>

#include <limits>

// Choices by the textbook's rule, for the windows that show them.

/// The cement data of Woods, Steinour and Starke: heat on a, b, c, d.
inline double cementValue(int i, int j)
{
    static const double data[13][5] = {{78.5, 7, 26, 6, 60},   {74.3, 1, 29, 15, 52}, {104.3, 11, 56, 8, 20},
                                       {87.6, 11, 31, 8, 47},  {95.9, 7, 52, 6, 33},  {109.2, 11, 55, 9, 22},
                                       {102.7, 3, 71, 17, 6},  {72.5, 1, 31, 22, 44}, {93.1, 2, 54, 18, 22},
                                       {115.9, 21, 47, 4, 26}, {83.8, 1, 40, 23, 34}, {113.3, 11, 66, 9, 12},
                                       {109.4, 10, 68, 8, 12}};
    return data[i - 1][j];
}

/// A regression and a method that has chosen its model by the rule Textbook.
template <class Method>
class Chosen
{
public:
    explicit Chosen(int n = 13, const QStringList &controls = {u("a"), u("b"), u("c"), u("d")},
                    const std::function<double(int, int)> &value = cementValue,
                    const std::function<void(Method &)> &prepare = {})
        : fitted(n, controls, value)
    {
        SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); });
        method.SetTable(&fitted.table);
        method.SetRule(TCorvane::Textbook);
        if constexpr (std::is_same_v<Method, TOptimizeMLR>)
            method.SetModelsPerSize(3);
        if (prepare)
            prepare(method);
        method.Run();
        SetMessageHandler({});
        EXPECT_NE(method.Choice(), nullptr);
    }

    const nuvo::Choice &choice() const { return *method.Choice(); }
    /// Terms of the regression as it stands.
    QString model() const
    {
        QStringList terms;
        for (int j = 1; j <= fitted.table.GetNumVars(); ++j)
            terms += fitted.table.GetcVar(j).OutputTerm();
        return terms.join(u' ');
    }

    Fitted fitted;
    Method method;
};

inline int columnOf(QTableView &view, const char *title)
{
    for (int column = 0; column < view.model()->columnCount(); ++column) {
        if (view.model()->headerData(column, Qt::Horizontal).toString() == u(title))
            return column;
    }
    ADD_FAILURE() << "no column " << title;
    return 0;
}

inline QString cell(QTableView &view, int row, const char *title, int role = Qt::DisplayRole)
{
    return view.model()->index(row, columnOf(view, title)).data(role).toString();
}

/// The cells of a column from the first row shown to the last.
inline QStringList column(QTableView &view, const char *title)
{
    QStringList cells;
    for (int row = 0; row < view.model()->rowCount(); ++row)
        cells += cell(view, row, title);
    return cells;
}

inline void clickHeading(QTableView &view, const char *title)
{
    QHeaderView *header = view.horizontalHeader();
    const int column = columnOf(view, title);
    view.scrollTo(view.model()->index(0, column));
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
}

inline QPoint middleOf(QTableView &view, int row, const char *title)
{
    const QModelIndex index = view.model()->index(row, columnOf(view, title));
    view.scrollTo(index);
    return view.visualRect(index).center();
}

/// Shows a widget and gives a table of it the focus.
inline void showOn(QWidget &page, QTableView &view)
{
    page.resize(900, 420);
    page.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
    page.activateWindow();
    view.setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
}

inline QStringList lines(const QString &text)
{
    return text.split(u'\n', Qt::SkipEmptyParts);
}

inline QStringList linesOf(const QString &file)
{
    QFile saved(file);
    EXPECT_TRUE(saved.open(QIODevice::ReadOnly)) << file.toStdString();
    return lines(QString::fromUtf8(saved.readAll()));
}
