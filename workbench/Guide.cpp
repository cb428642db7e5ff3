// SPDX-License-Identifier: MIT
#include "workbench/Guide.h"

#include "workbench/Guidepages.h"

#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextFragment>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace nuvo {

namespace {

QUrl urlOf(const QString &place)
{
    return QUrl(QLatin1String("qrc") + guideFolder() + u'/' + place);
}

/// A file of the program, as a resource has it; empty for the address of anything else.
QString fileOf(const QUrl &url)
{
    return url.scheme() == u"qrc" ? u':' + url.path() : QString();
}

/// Of a picture; its format has the one that it is shown in.
constexpr int OwnSize = QTextFormat::UserProperty;

QToolButton *button(QWidget *parent, const char *name, Qt::ArrowType arrow, const QString &hint)
{
    auto *const made = new QToolButton(parent);
    made->setObjectName(QLatin1String(name));
    made->setArrowType(arrow);
    made->setToolTip(hint);
    made->setAccessibleName(hint);
    made->setFocusPolicy(Qt::StrongFocus);
    return made;
}

} // namespace

Guide::Guide(QWidget *parent)
    : QWidget(parent, Qt::Window), contents_(new QTreeWidget(this)), page_(new QTextBrowser(this)),
      back_(button(this, "GuideBack", Qt::LeftArrow, tr("Back (Alt+Left)"))),
      forward_(button(this, "GuideForward", Qt::RightArrow, tr("Forward (Alt+Right)"))), search_(new QLineEdit(this)),
      said_(new QLabel(this))
{
    setObjectName(QStringLiteral("Guide"));
    setWindowTitle(tr("Guide"));
    contents_->setObjectName(QStringLiteral("GuideContents"));
    contents_->setAccessibleName(tr("Contents"));
    contents_->setHeaderHidden(true);
    page_->setObjectName(QStringLiteral("GuidePage"));
    page_->setAccessibleName(tr("Page of the guide"));
    page_->setOpenLinks(false);
    page_->document()->setDocumentMargin(16);
    search_->setObjectName(QStringLiteral("GuideSearch"));
    search_->setAccessibleName(tr("Find in the guide"));
    search_->setPlaceholderText(tr("Find in the guide (Ctrl+F, F3 for the next place)"));
    search_->setClearButtonEnabled(true);
    said_->setObjectName(QStringLiteral("GuideSaid"));
    said_->setTextFormat(Qt::PlainText);
    said_->hide();

    auto *const line = new QHBoxLayout;
    line->addWidget(back_);
    line->addWidget(forward_);
    line->addWidget(search_, 1);
    auto *const halves = new QSplitter(Qt::Horizontal, this);
    halves->setChildrenCollapsible(false);
    halves->addWidget(contents_);
    halves->addWidget(page_);
    halves->setSizes({260, 720});
    auto *const all = new QVBoxLayout(this);
    all->addLayout(line);
    all->addWidget(said_);
    all->addWidget(halves, 1);
    resize(1000, 760);
    ShowContents();
    page_->viewport()->installEventFilter(this);

    connect(contents_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem *item) {
        if (item != nullptr)
            ShowPlace(item->data(0, Qt::UserRole).toString());
    });
    connect(page_, &QTextBrowser::anchorClicked, this, &Guide::ShowUrl);
    connect(page_, &QTextBrowser::sourceChanged, this, &Guide::GoToAnchor);
    connect(page_, &QTextBrowser::backwardAvailable, back_, &QWidget::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward_, &QWidget::setEnabled);
    connect(back_, &QToolButton::clicked, page_, &QTextBrowser::backward);
    connect(forward_, &QToolButton::clicked, page_, &QTextBrowser::forward);
    connect(search_, &QLineEdit::returnPressed, this, &Guide::FindNext);
    const auto shortcut = [this](const QKeySequence &keys, const auto &slot) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, slot);
    };
    shortcut(QKeySequence::Find, [this] {
        search_->setFocus();
        search_->selectAll();
    });
    shortcut(Qt::Key_F3, [this] { FindNext(); });
    shortcut(Qt::Key_Escape, [this] { close(); });
    shortcut(QKeySequence::Back, [this] { page_->backward(); });
    shortcut(QKeySequence::Forward, [this] { page_->forward(); });
    back_->setEnabled(false);
    forward_->setEnabled(false);
}

void Guide::ShowContents()
{
    for (const GuidePage &page : guidePages()) {
        auto *const item = new QTreeWidgetItem(contents_, {page.title()});
        item->setData(0, Qt::UserRole, page.name);
        for (const GuideHeading &heading : page.headings) {
            if (heading.level != 2)
                continue;
            auto *const below = new QTreeWidgetItem(item, {heading.text});
            below->setData(0, Qt::UserRole, QString(page.name + u'#' + heading.anchor));
        }
    }
}

void Guide::ShowPlace(const QString &place)
{
    ShowUrl(urlOf(place));
}

void Guide::ShowUrl(const QUrl &url)
{
    said_->hide();
    if (const QString file = fileOf(url); file.endsWith(u".md") && QFile::exists(file)) {
        page_->setSource(url, QTextDocument::MarkdownResource);
        return;
    }
    said_->setText(tr("\"%1\" is not part of the guide; it comes with the sources.").arg(url.fileName()));
    said_->show();
}

void Guide::GoToAnchor(const QUrl &url)
{
    place_ = url.fileName() + (url.hasFragment() ? u'#' + url.fragment() : QString());
    FitPictures();
    const int position = url.hasFragment() ? guidePosition(*page_->document(), url.fragment()) : -1;
    if (position >= 0) {
        QTextCursor cursor(page_->document());
        cursor.movePosition(QTextCursor::End);
        page_->setTextCursor(cursor); // so that the heading comes to the top
        cursor.setPosition(position);
        page_->setTextCursor(cursor);
    }
    // The contents follow without leading.
    const QSignalBlocker quiet(contents_);
    for (const QString &place : {place_, url.fileName()}) {
        for (QTreeWidgetItemIterator at(contents_); *at != nullptr; ++at) {
            if ((*at)->data(0, Qt::UserRole).toString() == place) {
                contents_->setCurrentItem(*at);
                return;
            }
        }
    }
    contents_->setCurrentItem(nullptr);
}

void Guide::FindNext()
{
    const QString text = search_->text().trimmed();
    if (text.isEmpty() || page_->find(text)) {
        said_->hide();
        return;
    }
    const std::vector<GuidePage> &pages = guidePages();
    const auto count = pages.size();
    std::size_t now = 0;
    while (now < count && pages[now].name != page_->source().fileName())
        ++now;
    for (std::size_t step = 1; step <= count; ++step) {
        const GuidePage &page = pages[(now + step) % count];
        if (!page.text.contains(text, Qt::CaseInsensitive))
            continue;
        if (page.name != page_->source().fileName() || page_->source().hasFragment())
            ShowPlace(page.name);
        page_->moveCursor(QTextCursor::Start);
        if (page_->find(text)) {
            said_->hide();
            return;
        }
    }
    said_->setText(tr("\"%1\" is nowhere in the guide.").arg(text));
    said_->show();
}

void Guide::FitPictures()
{
    QTextDocument &document = *page_->document();
    const QUrl here = urlOf(place_.section(u'#', 0, 0));
    const double room = page_->viewport()->width() - 2 * document.documentMargin();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            QTextImageFormat format = part.fragment().charFormat().toImageFormat();
            if (!format.isValid())
                continue;
            if (!format.hasProperty(OwnSize))
                format.setProperty(OwnSize, QImageReader(fileOf(here.resolved(QUrl(format.name())))).size());
            const QSizeF own = format.property(OwnSize).toSizeF();
            const double width = std::min(own.width(), std::max(room, 1.0));
            if (own.isEmpty() || format.width() == width)
                continue;
            format.setWidth(width);
            format.setHeight(width * own.height() / own.width());
            QTextCursor cursor(&document);
            cursor.setPosition(part.fragment().position());
            cursor.setPosition(part.fragment().position() + part.fragment().length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
            break; // the block's parts are others now
        }
    }
}

bool Guide::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == page_->viewport() && event->type() == QEvent::Resize)
        FitPictures();
    return QWidget::eventFilter(watched, event);
}

void Guide::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // The document has the colours of its links in itself.
    if (event->type() == QEvent::PaletteChange && !page_->source().isEmpty())
        page_->reload();
}

} // namespace nuvo
