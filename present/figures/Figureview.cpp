// SPDX-License-Identifier: MIT
#include "present/figures/Figureview.h"

#include "present/Filedialog.h"
#include "present/Forms.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFontInfo>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QStyleOptionFocusRect>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// How near to a point counts as on it, in pixels.
constexpr double Reach = 9;
/// The nearest zoom, as a part of the whole; far before doubles end.
constexpr double NearestZoom = 1e-6;
constexpr double FarthestZoom = 20;
constexpr double KeyZoom = 1.5;
constexpr double WheelZoom = 1.25;

QChar decimalPoint()
{
    const QString point = QLocale().decimalPoint();
    return point.isEmpty() ? QChar(u'.') : point.front();
}

/// The range so many times narrower around a value that keeps its place.
nuvo::AxisRange narrowed(const nuvo::Axis &axis, double factor, double place)
{
    return {axis.Value(place - place / factor), axis.Value(place + (1 - place) / factor)};
}

/// As a tool tip, in which names with angle brackets are no markup.
QString shownLines(const QString &words)
{
    return words.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
}

double lengthOf(const nuvo::AxisRange &range)
{
    return range.high / 2 - range.low / 2;
}

} // namespace

TFigureView::TFigureView(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    SetFigure({});
}

TFigureView::~TFigureView() = default;

QSize TFigureView::sizeHint() const
{
    return {640, 440};
}

QSize TFigureView::minimumSizeHint() const
{
    return {240, 160};
}

void TFigureView::SetFigure(const nuvo::Figure &figure)
{
    painter_.reset(); // it refers to the figure before
    figure_ = figure;
    section_ = nuvo::wholeSection(figure_);
    current_ = -1;
    setAccessibleName(figure_.title);
    setAccessibleDescription(nuvo::figureInWords(figure_, decimalPoint()));
    Redraw();
}

void TFigureView::SetSelected(const std::set<qint64> &records)
{
    if (records == selected_)
        return;
    selected_ = records;
    update();
}

void TFigureView::SetSection(const nuvo::FigureSection &section)
{
    const nuvo::FigureSection whole = nuvo::wholeSection(figure_);
    const auto fits = [](const nuvo::AxisRange &range, const nuvo::AxisRange &all) {
        const double part = lengthOf(range) / lengthOf(all);
        return !range.IsEmpty() && part >= NearestZoom && part <= FarthestZoom;
    };
    if (section == section_ || !fits(section.x, whole.x) || !fits(section.y, whole.y))
        return;
    section_ = section;
    Redraw();
}

void TFigureView::ShowAll()
{
    SetSection(nuvo::wholeSection(figure_));
}

void TFigureView::Zoom(double factor, const QPointF &around)
{
    const nuvo::FigurePainter &now = Painter();
    const QRectF &frame = now.Frame();
    const QPointF held(std::clamp(around.x(), frame.left(), frame.right()),
                       std::clamp(around.y(), frame.top(), frame.bottom()));
    const double across = (held.x() - frame.left()) / frame.width();
    const double up = (frame.bottom() - held.y()) / frame.height();
    const QPointF value = now.Value(held);
    SetSection({narrowed(now.XAxis(), factor, across), narrowed(now.YAxis(), factor, up)});
    MoveTo(value, held);
}

void TFigureView::MoveTo(const QPointF &value, const QPointF &where)
{
    // The frame follows the width of the texts beside it, so that it may have to be moved once more.
    for (int twice = 0; twice < 2; ++twice) {
        const nuvo::FigurePainter &now = Painter();
        const QPointF way = now.Place(value.x(), value.y()) - where;
        const auto moved = [](const nuvo::Axis &axis, double by) {
            return nuvo::AxisRange{axis.Value(by), axis.Value(1 + by)};
        };
        if (way.manhattanLength() > 0.01)
            SetSection({moved(now.XAxis(), way.x() / now.Frame().width()),
                        moved(now.YAxis(), -way.y() / now.Frame().height())});
    }
}

const nuvo::FigurePainter &TFigureView::Painter() const
{
    if (!painter_) {
        nuvo::FigureStyle style;
        style.theme = nuvo::FigureTheme::of(palette());
        style.font = font();
        style.font.setPixelSize(QFontInfo(font()).pixelSize());
        style.point = decimalPoint();
        painter_ = std::make_unique<nuvo::FigurePainter>(figure_, size(), style, section_);
    }
    return *painter_;
}

void TFigureView::Redraw()
{
    painter_.reset();
    layer_ = QPixmap();
    update();
}

void TFigureView::paintEvent(QPaintEvent *)
{
    // Drawing thousands of points takes longer than a pointer's way from one to the next.
    const double ratio = devicePixelRatioF();
    if (layer_.isNull() || layer_.devicePixelRatio() != ratio) {
        layer_ = QPixmap((QSizeF(size()) * ratio).toSize());
        layer_.setDevicePixelRatio(ratio);
        QPainter painter(&layer_);
        Painter().Paint(painter);
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, layer_);
    Painter().PaintSelected(painter, selected_);
    if (current_ >= 0)
        Painter().PaintCurrent(painter, std::size_t(current_));
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(1, 1, -1, -1);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void TFigureView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Redraw();
}

void TFigureView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::LocaleChange:
        Redraw();
        break;
    default:
        break;
    }
}

bool TFigureView::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // A window around it may have these keys for itself.
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::Save))
            key->accept();
    }
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    if (const QString words = WordsAt(help->pos()); !words.isEmpty())
        QToolTip::showText(help->globalPos(), shownLines(words), this);
    else
        QToolTip::hideText();
    return true;
}

QString TFigureView::WordsAt(const QPointF &where) const
{
    if (const int point = Painter().PointAt(where, Reach); point >= 0)
        return nuvo::pointInWords(figure_, std::size_t(point), decimalPoint());
    if (const int bar = Painter().BarAt(where); bar >= 0)
        return nuvo::barInWords(figure_, std::size_t(bar), decimalPoint());
    return {};
}

void TFigureView::SetCurrent(int point)
{
    if (point == current_)
        return;
    current_ = point;
    update();
}

void TFigureView::Select(std::set<qint64> records)
{
    if (records == selected_)
        return;
    selected_ = std::move(records);
    update();
    const QPointer<TFigureView> here = this; // whoever listens may delete it
    const qint64 only = selected_.size() == 1 ? *selected_.begin() : 0;
    Q_EMIT SelectionChanged();
    if (here && only != 0)
        Q_EMIT Picked(only);
}

void TFigureView::ClickAt(const QPointF &where, bool add)
{
    std::set<qint64> there;
    if (const int point = Painter().PointAt(where, Reach); point >= 0) {
        SetCurrent(point);
        if (std::size_t(point) < figure_.records.size())
            there.insert(figure_.records[std::size_t(point)]);
    } else if (const int bar = Painter().BarAt(where); bar >= 0) {
        const std::vector<qint64> &records = figure_.bars[std::size_t(bar)].records;
        there.insert(records.begin(), records.end());
    }
    if (add) {
        std::set<qint64> chosen = selected_;
        for (const qint64 record : there) {
            if (chosen.erase(record) == 0)
                chosen.insert(record);
        }
        there = std::move(chosen);
    }
    Select(std::move(there));
}

void TFigureView::Step(bool across, bool forwards, bool toEnd)
{
    if (figure_.PointCount() == 0)
        return StepToBar(forwards, toEnd);
    // Points of the same value follow each other in their order, so that each can be reached.
    const auto key = [&](int i) {
        return std::pair(across ? figure_.x[std::size_t(i)] : figure_.y[std::size_t(i)], i);
    };
    const bool from = current_ >= 0 && std::size_t(current_) < figure_.PointCount();
    int next = -1;
    for (int i = 0; i < int(figure_.PointCount()); ++i) {
        if (!Painter().IsSeen(std::size_t(i)))
            continue;
        if (from && !toEnd && (forwards ? key(i) <= key(current_) : key(i) >= key(current_)))
            continue;
        const bool better = next < 0 || (forwards != toEnd ? key(i) < key(next) : key(i) > key(next));
        if (better)
            next = i;
    }
    if (next < 0)
        return;
    SetCurrent(next);
    const auto i = std::size_t(next);
    Say(nuvo::pointInWords(figure_, i, decimalPoint()), Painter().Place(figure_.x[i], figure_.y[i]));
    if (i < figure_.records.size())
        Select({figure_.records[i]});
}

void TFigureView::StepToBar(bool forwards, bool toEnd)
{
    const int bars = int(figure_.bars.size());
    const int way = forwards ? 1 : -1;
    // From the first one that way, or from the last one backwards where the end is looked for.
    int next = toEnd ? (forwards ? bars - 1 : 0) : current_ < 0 ? (forwards ? 0 : bars - 1) : current_ + way;
    while (next >= 0 && next < bars && figure_.bars[std::size_t(next)].height <= 0)
        next += toEnd ? -way : way;
    if (next < 0 || next >= bars)
        return;
    SetCurrent(next);
    const nuvo::FigureBar &bar = figure_.bars[std::size_t(next)];
    Say(nuvo::barInWords(figure_, std::size_t(next), decimalPoint()),
        Painter().Place((bar.from + bar.to) / 2, bar.height));
    Select({bar.records.begin(), bar.records.end()});
}

void TFigureView::Say(const QString &words, const QPointF &where)
{
    QString spoken = words;
    setAccessibleDescription(spoken.replace(u'\n', QStringLiteral(", ")));
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
    QToolTip::showText(mapToGlobal(where.toPoint()), shownLines(words), this);
}

void TFigureView::keyPressEvent(QKeyEvent *event)
{
    const QPointF middle = Painter().Frame().center();
    if (event->matches(QKeySequence::Copy))
        return Copy();
    if (event->matches(QKeySequence::Save))
        return SaveAs();
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        return Step(true, event->key() == Qt::Key_Right, false);
    case Qt::Key_Up:
    case Qt::Key_Down:
        return Step(false, event->key() == Qt::Key_Up, false);
    case Qt::Key_Home:
    case Qt::Key_End:
        return Step(true, event->key() == Qt::Key_End, true);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return Zoom(KeyZoom, middle);
    case Qt::Key_Minus:
        return Zoom(1 / KeyZoom, middle);
    case Qt::Key_0:
        return ShowAll();
    default:
        QWidget::keyPressEvent(event);
    }
}

void TFigureView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    pressed_ = event->position();
    pressedValue_ = Painter().Value(event->position());
    dragging_ = false;
    doubleClicked_ = false;
}

void TFigureView::mouseMoveEvent(QMouseEvent *event)
{
    if (!pressed_) {
        SetCurrent(Painter().PointAt(event->position(), Reach));
        return;
    }
    const QPointF way = event->position() - *pressed_;
    if (!dragging_ && way.manhattanLength() < QApplication::startDragDistance())
        return;
    dragging_ = true;
    setCursor(Qt::ClosedHandCursor);
    MoveTo(pressedValue_, event->position());
}

void TFigureView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !pressed_)
        return QWidget::mouseReleaseEvent(event);
    const QPointF where = *std::exchange(pressed_, std::nullopt);
    unsetCursor();
    if (!std::exchange(dragging_, false) && !std::exchange(doubleClicked_, false))
        ClickAt(where, event->modifiers().testFlag(Qt::ControlModifier));
}

void TFigureView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    ShowAll();
    pressed_ = event->position();
    pressedValue_ = Painter().Value(event->position());
    doubleClicked_ = true;
}

void TFigureView::wheelEvent(QWheelEvent *event)
{
    const int turned = event->angleDelta().y();
    if (turned == 0)
        return event->ignore();
    Zoom(std::pow(WheelZoom, turned / 120.0), event->position());
    event->accept();
}

void TFigureView::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    if (!hasFocus())
        SetCurrent(-1);
}

nuvo::FigureSheet TFigureView::Sheet() const
{
    nuvo::FigureSheet sheet;
    sheet.size = size();
    sheet.point = decimalPoint();
    sheet.section = section_;
    sheet.selected = selected_;
    return sheet;
}

void TFigureView::Copy() const
{
    auto *content = new QMimeData;
    content->setImageData(nuvo::figureImage(figure_, Sheet(), devicePixelRatioF()));
    content->setData(QStringLiteral("image/svg+xml"), nuvo::figureSvg(figure_, Sheet()));
    QGuiApplication::clipboard()->setMimeData(content);
}

void TFigureView::SaveAs()
{
    const QPointer<TFigureView> here = this;
    nuvo::guarded([&] {
        const QString file =
            nuvo::askFileName(this, tr("Save Figure"),
                              {tr("PNG picture (*.png)"), tr("SVG picture (*.svg)"), tr("PDF document (*.pdf)")},
                              nuvo::figureFileName(figure_));
        if (here && !file.isEmpty())
            nuvo::saveFigure(figure_, file, Sheet());
    });
}

void TFigureView::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("FigureMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&Copy"), this, &TFigureView::Copy)->setShortcut(QKeySequence::Copy);
    menu->addAction(tr("&Save As…"), this, &TFigureView::SaveAs)->setShortcut(QKeySequence::Save);
    menu->addSeparator();
    menu->addAction(tr("Show &All"), this, &TFigureView::ShowAll)->setShortcut(Qt::Key_0);
    const QPointF middle = Painter().Frame().center();
    menu->addAction(tr("Zoom &In"), this, [this, middle] { Zoom(KeyZoom, middle); })->setShortcut(Qt::Key_Plus);
    menu->addAction(tr("Zoom &Out"), this, [this, middle] { Zoom(1 / KeyZoom, middle); })->setShortcut(Qt::Key_Minus);
    if (!actions().isEmpty()) {
        // A person means what the menu was opened on.
        const int point = event->reason() == QContextMenuEvent::Mouse ? Painter().PointAt(event->pos(), Reach) : -1;
        if (point >= 0 && std::size_t(point) < figure_.records.size() &&
            !selected_.contains(figure_.records[std::size_t(point)]))
            ClickAt(event->pos(), false);
        menu->addSeparator();
        menu->addActions(actions());
    }
    menu->popup(event->globalPos());
}
