#include "present/statistics/Pageview.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QTextDocument>

#include <algorithm>
#include <memory>

namespace {

constexpr int Margin = 12;
constexpr int TextColumns = 100;

/// Where the second half of the page begins.
auto diagnosticsOf(const nuvo::Page &page)
{
    return std::find_if(page.parts.begin(), page.parts.end(), [](const nuvo::Page::Part &part) {
        return part.kind == nuvo::Page::Kind::Heading && part.text == QLatin1String("Diagnostics");
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
    std::unique_ptr<QTextDocument> made = nuvo::pageDocument(page);
    const QPointer<QTextDocument> before = document(); // the view may take it along
    made->setDocumentMargin(Margin);
    made->setUndoRedoEnabled(false);
    made->setParent(this);
    setDocument(made.release());
    delete before;
    verticalScrollBar()->setValue(0);
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
    setAccessibleName(QStringLiteral("Summary"));
    setAccessibleDescription(QStringLiteral("Coefficients, analysis of variance and warnings of the fit"));
}

void TSummaryPage::SetFigures(const nuvo::Figures &figures)
{
    const nuvo::Page page = nuvo::readersPage(figures);
    SetPage(partOf(page, page.parts.begin(), diagnosticsOf(page)));
}

TDiagnosticsPage::TDiagnosticsPage(QWidget *parent) : TPageView(parent)
{
    setAccessibleName(QStringLiteral("Diagnostics"));
    setAccessibleDescription(
        QStringLiteral("Tests of the fit, what each term does, and the observations worth looking at"));
}

void TDiagnosticsPage::SetFigures(const nuvo::Figures &figures)
{
    const nuvo::Page page = nuvo::readersPage(figures);
    nuvo::Page part = partOf(page, diagnosticsOf(page), page.parts.end());
    if (part.parts.isEmpty()) {
        part.add(nuvo::Page::Kind::Heading, QStringLiteral("Diagnostics"));
        part.add(nuvo::Page::Kind::Paragraph, QStringLiteral("There is no fit to look into."));
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
