// SPDX-License-Identifier: MIT
#include "present/statistics/Pageview.h"

#include "present/Pagelayout.h"
#include "present/Words.h"
#include "present/controls/Tablecopy.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>
#include <memory>

namespace {

constexpr int Margin = 12;
constexpr int TextColumns = 100;
constexpr double Unbounded = 1e5;
constexpr int CloseGap = 5;
const char *const CloseName = "nuvoClose"; // a property of documents that are set closer

/// Where the second half of the page begins.
auto diagnosticsOf(const nuvo::Page &page)
{
    return std::find_if(page.parts.begin(), page.parts.end(), [](const nuvo::Page::Part &part) {
        return part.kind == nuvo::Page::Kind::Heading && part.text == nuvo::PageWords::tr("Diagnostics");
    });
}

nuvo::Page partOf(const nuvo::Page &page, QList<nuvo::Page::Part>::const_iterator from,
                  QList<nuvo::Page::Part>::const_iterator to)
{
    nuvo::Page part;
    part.point = page.point;
    std::copy(from, to, std::back_inserter(part.parts));
    return part;
}

/// Some columns of a table, after that with the names of the rows.
nuvo::Page::Table columnsOf(const nuvo::Page::Table &table, qsizetype from, qsizetype count)
{
    nuvo::Page::Table part;
    part.columns = table.columns.mid(0, 1) + table.columns.mid(from, count);
    for (const QStringList &row : table.rows)
        part.rows += row.mid(0, 1) + row.mid(from, count);
    return part;
}

/// As the document of a page makes them.
std::vector<double> columnWidths(const nuvo::Page::Table &table, QChar point)
{
    nuvo::Page page;
    page.point = point;
    page.addTable(table);
    const std::unique_ptr<QTextDocument> document = nuvo::pageDocument(page);
    document->setDocumentMargin(0);
    document->setTextWidth(Unbounded);
    const auto *made = qobject_cast<const QTextTable *>(document->rootFrame()->childFrames().value(0));
    std::vector<double> widths(std::size_t(table.columns.size()), 0.0);
    if (made == nullptr)
        return widths;
    const QAbstractTextDocumentLayout &layout = *document->documentLayout();
    double right = layout.frameBoundingRect(const_cast<QTextTable *>(made)).right();
    for (std::size_t column = widths.size(); column-- > 0;) {
        const double left =
            layout.blockBoundingRect(made->cellAt(0, int(column)).firstCursorPosition().block()).left();
        widths[column] = right - left;
        right = left;
    }
    return widths;
}

} // namespace

TPageView::TPageView(QWidget *parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFrameStyle(QFrame::NoFrame);
}

void TPageView::SetPage(const nuvo::Page &page)
{
    page_ = page;
    widths_.clear();
    for (const nuvo::Page::Part &part : page.parts) {
        if (part.kind == nuvo::Page::Kind::Table)
            widths_.push_back(columnWidths(part.table, page.point));
    }
    LayOut(true);
    verticalScrollBar()->setValue(0);
}

void TPageView::LayOut(bool anew)
{
    const double width = viewport()->width();
    const auto count = [](const Groups &groups) {
        std::size_t all = 0;
        for (const std::vector<int> &counts : groups)
            all += counts.size();
        return all;
    };
    const Groups usual = GroupsFor(width, 0);
    const Groups closer = GroupsFor(width, nuvo::usualGap - CloseGap);
    const bool isClose = count(closer) < count(usual);
    const Groups &groups = isClose ? closer : usual;
    if (anew || groups != groups_ || document()->property(CloseName).toBool() != isClose)
        Show(groups, isClose);
}

TPageView::Groups TPageView::GroupsFor(double width, double saved) const
{
    Groups groups;
    for (const std::vector<double> &widths : widths_) {
        const double names = 2 * Margin + widths.front() - saved;
        double used = names;
        std::vector<int> &counts = groups.emplace_back(1, 0);
        for (std::size_t column = 1; column < widths.size(); ++column) {
            if (used + widths[column] - saved > width && counts.back() > 0) {
                counts.push_back(0);
                used = names;
            }
            used += widths[column] - saved;
            ++counts.back();
        }
    }
    return groups;
}

void TPageView::Show(const Groups &groups, bool isClose)
{
    groups_ = groups;
    nuvo::Page shown;
    shown.point = page_.point;
    std::size_t table = 0;
    for (const nuvo::Page::Part &part : page_.parts) {
        if (part.kind != nuvo::Page::Kind::Table) {
            shown.parts += part;
            continue;
        }
        qsizetype from = 1;
        for (const int count : groups[table++]) {
            if (from > 1)
                shown.add(nuvo::Page::Kind::Paragraph, QString(QChar::Nbsp));
            shown.addTable(columnsOf(part.table, from, count));
            from += count;
        }
    }
    std::unique_ptr<QTextDocument> made = nuvo::pageDocument(shown, isClose ? CloseGap : nuvo::usualGap);
    made->setProperty(CloseName, isClose);
    const QPointer<QTextDocument> before = document(); // the view may take it along
    made->setDocumentMargin(Margin);
    made->setUndoRedoEnabled(false);
    made->setParent(this);
    setDocument(made.release());
    // Not at once: whoever sent a resize event may be walking the view's children.
    if (before)
        before->deleteLater();
}

void TPageView::resizeEvent(QResizeEvent *event)
{
    QTextBrowser::resizeEvent(event);
    LayOut(false);
}

void TPageView::Copy()
{
    if (textCursor().hasSelection())
        return copy();
    auto content = std::make_unique<QMimeData>();
    content->setText(nuvo::pageText(page_, TextColumns));
    content->setHtml(nuvo::pageHtml(page_));
    QGuiApplication::clipboard()->setMimeData(content.release());
}

nuvo::Page::Table TPageView::TableAt(int position) const
{
    std::vector<nuvo::Page::Table> tables;
    for (const nuvo::Page::Part &part : page_.parts) {
        if (part.kind == nuvo::Page::Kind::Table)
            tables.push_back(part.table);
    }
    if (tables.empty())
        return {};
    // A table of the page is as many tables of the document as it has groups.
    std::size_t table = 0;
    std::size_t group = 0;
    for (const QTextFrame *const frame : document()->rootFrame()->childFrames()) {
        if (table >= groups_.size())
            break;
        if (position >= frame->firstPosition() && position <= frame->lastPosition())
            return tables[table];
        if (++group == groups_[table].size()) {
            group = 0;
            ++table;
        }
    }
    return tables.front();
}

nuvo::Page::Table TPageView::CurrentTable() const
{
    return TableAt(textCursor().position());
}

void TPageView::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *const menu = createStandardContextMenu(event->pos());
    menu->setObjectName(QStringLiteral("PageMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const nuvo::Page::Table table = TableAt(cursorForPosition(event->pos()).position());
    if (!table.columns.isEmpty()) {
        menu->addSeparator();
        menu->addAction(nuvo::copyTableText(), this, [table] { nuvo::copyTable(table); });
        menu->addAction(nuvo::copyMarkdownText(), this, [table] { nuvo::copyTableAsMarkdown(table); });
    }
    menu->popup(event->globalPos());
}

bool TPageView::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
        event->accept(); // a window around it may have the key for itself
        return true;
    }
    return QTextBrowser::event(event);
}

void TPageView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy))
        return Copy();
    QTextBrowser::keyPressEvent(event);
}

TSummaryPage::TSummaryPage(QWidget *parent) : TPageView(parent)
{
    setAccessibleName(tr("Summary"));
    setAccessibleDescription(tr("Coefficients, analysis of variance and warnings of the fit"));
}

void TSummaryPage::SetFigures(const nuvo::Figures &figures)
{
    const nuvo::Page page = nuvo::readersPage(figures);
    SetPage(partOf(page, page.parts.begin(), diagnosticsOf(page)));
}

TDiagnosticsPage::TDiagnosticsPage(QWidget *parent) : TPageView(parent)
{
    setAccessibleName(tr("Diagnostics"));
    setAccessibleDescription(tr("Tests of the fit, what each term does, and the observations worth looking at"));
}

void TDiagnosticsPage::SetFigures(const nuvo::Figures &figures)
{
    const nuvo::Page page = nuvo::readersPage(figures);
    nuvo::Page part = partOf(page, diagnosticsOf(page), page.parts.end());
    if (part.parts.isEmpty()) {
        part.add(nuvo::Page::Kind::Heading, nuvo::PageWords::tr("Diagnostics"));
        part.add(nuvo::Page::Kind::Paragraph, tr("There is no fit to look into."));
    }
    SetPage(part);
}

namespace nuvo {

Page readersPage(const Figures &figures)
{
    PageStyle style;
    style.influence = true;
    style.point = QLocale().decimalPoint().front();
    return statisticsPage(figures, style);
}

} // namespace nuvo
