// SPDX-License-Identifier: MIT
#include "present/controls/Tablecopy.h"

#include "present/controls/Figuretable.h"

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QTableView>
#include <QTreeView>

#include <cmath>
#include <memory>

namespace nuvo {

namespace {

/// A cell of one line: tabs and line breaks part cells and lines.
QString oneLine(QString text)
{
    for (QChar &c : text) {
        if (c == u'\t' || c == u'\n' || c == u'\r')
            c = u' ';
    }
    return text;
}

QString textOf(const QModelIndex &index)
{
    const QVariant exact = index.data(NumberRole);
    if (exact.userType() == QMetaType::QString)
        return exact.toString();
    if (exact.userType() != QMetaType::Double)
        return index.data(Qt::DisplayRole).toString();
    const double value = exact.toDouble();
    if (std::isnan(value))
        return {};
    constexpr double wholes = 1e15; // a million is no 1e+06
    if (std::abs(value) < wholes && value == std::trunc(value))
        return QString::number(qint64(value));
    return QString::number(value, 'g', QLocale::FloatingPointShortest)
        .replace(u'.', QLocale().decimalPoint().front());
}

bool isFigure(const QModelIndex &index)
{
    return Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()).testFlag(Qt::AlignRight);
}

} // namespace

Page::Table tableOf(const QAbstractItemView &view)
{
    Page::Table table;
    const QAbstractItemModel *const model = view.model();
    if (model == nullptr)
        return table;
    const QItemSelectionModel &selection = *view.selectionModel();
    const int columns = model->columnCount();
    for (int column = 0; column < columns; ++column)
        table.columns.append({model->headerData(column, Qt::Horizontal).toString(),
                              model->rowCount() > 0 && isFigure(model->index(0, column))});
    const bool all = !selection.hasSelection();
    for (int row = 0; row < model->rowCount(); ++row) {
        if (!all && !selection.rowIntersectsSelection(row))
            continue;
        QStringList cells;
        for (int column = 0; column < columns; ++column)
            cells.append(textOf(model->index(row, column)));
        table.rows.append(cells);
    }
    return table;
}

QString tableText(const Page::Table &table)
{
    QString text;
    const auto add = [&text](const QStringList &cells) {
        for (qsizetype i = 0; i < cells.size(); ++i)
            text += (i > 0 ? QStringLiteral("\t") : QString()) + oneLine(cells[i]);
        text += u'\n';
    };
    QStringList headings;
    for (const Page::Column &column : table.columns)
        headings.append(column.heading);
    add(headings);
    for (const QStringList &row : table.rows)
        add(row);
    return text;
}

QString tableHtml(const Page::Table &table)
{
    const auto cell = [&table](const char *tag, qsizetype column, const QString &text) {
        const bool right = column < table.columns.size() && table.columns[column].figures;
        return QStringLiteral("<%1 align=\"%2\">%3</%1>")
            .arg(QLatin1String(tag), right ? QStringLiteral("right") : QStringLiteral("left"), text.toHtmlEscaped());
    };
    QString html = QStringLiteral("<table>\n<tr>");
    for (qsizetype column = 0; column < table.columns.size(); ++column)
        html += cell("th", column, table.columns[column].heading);
    html += QLatin1String("</tr>\n");
    for (const QStringList &row : table.rows) {
        html += QLatin1String("<tr>");
        for (qsizetype column = 0; column < row.size(); ++column)
            html += cell("td", column, row[column]);
        html += QLatin1String("</tr>\n");
    }
    return html + QLatin1String("</table>\n");
}

QString tableMarkdown(const Page::Table &table)
{
    Page::Table lines = table;
    for (QStringList &row : lines.rows) {
        for (QString &cell : row)
            cell = oneLine(cell);
    }
    Page page;
    page.point = QLocale().decimalPoint().front();
    page.addTable(lines);
    return pageMarkdown(page);
}

void copyTable(const Page::Table &table)
{
    if (table.columns.isEmpty())
        return;
    auto content = std::make_unique<QMimeData>();
    content->setText(tableText(table));
    content->setHtml(tableHtml(table));
    QGuiApplication::clipboard()->setMimeData(content.release());
}

void copyTableAsMarkdown(const Page::Table &table)
{
    if (table.columns.isEmpty())
        return;
    QGuiApplication::clipboard()->setText(tableMarkdown(table));
}

QString copyTableText()
{
    return QCoreApplication::translate("nuvo::Tablecopy", "Copy &Table");
}

QString copyMarkdownText()
{
    return QCoreApplication::translate("nuvo::Tablecopy", "Copy Table as Mar&kdown");
}

void addCopyMenu(QAbstractItemView &view)
{
    view.setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *const text = new QAction(copyTableText(), &view);
    auto *const markdown = new QAction(copyMarkdownText(), &view);
    QObject::connect(text, &QAction::triggered, &view, [&view] { copyTable(tableOf(view)); });
    QObject::connect(markdown, &QAction::triggered, &view, [&view] { copyTableAsMarkdown(tableOf(view)); });
    view.addActions({text, markdown});
    const auto addSorting = [](auto *sorted, QHeaderView *header) {
        addSortMenu(*sorted, [sorted, header](int column) {
            const bool back =
                header->sortIndicatorSection() == column && header->sortIndicatorOrder() == Qt::AscendingOrder;
            sorted->sortByColumn(column, back ? Qt::DescendingOrder : Qt::AscendingOrder);
        });
    };
    if (auto *const table = qobject_cast<QTableView *>(&view); table != nullptr && table->isSortingEnabled())
        addSorting(table, table->horizontalHeader());
    if (auto *const tree = qobject_cast<QTreeView *>(&view); tree != nullptr && tree->isSortingEnabled())
        addSorting(tree, tree->header());
}

void addSortMenu(QAbstractItemView &view, std::function<void(int)> sort)
{
    auto *const menu = new QMenu(QCoreApplication::translate("nuvo::Tablecopy", "&Sort by"), &view);
    menu->setObjectName(QStringLiteral("SortMenu"));
    // Headings change with what is shown.
    QObject::connect(menu, &QMenu::aboutToShow, &view, [&view, menu, sort = std::move(sort)] {
        menu->clear();
        for (int column = 0; view.model() != nullptr && column < view.model()->columnCount(); ++column) {
            const QString title = view.model()->headerData(column, Qt::Horizontal).toString();
            menu->addAction(QString(title).replace(u'&', QLatin1String("&&")), &view,
                            [sort, column] { sort(column); });
        }
    });
    view.addAction(menu->menuAction());
}

} // namespace nuvo
