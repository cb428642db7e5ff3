// SPDX-License-Identifier: MIT
#include "design/model/Fieldslot.h"

#include "design/model/Modelmime.h"
#include "platform/Messages.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QDrag>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QStyleOptionFrame>
#include <QStylePainter>

#include <memory>

namespace nuvo {

namespace {

constexpr int Margin = 5;
constexpr int LettersSeen = 14;

} // namespace

FieldSlot::FieldSlot(int place, bool takesPlaces, QWidget *parent)
    : QAbstractButton(parent), place_(place), takesPlaces_(takesPlaces)
{
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FieldSlot::SetField(const QString &field, bool quiet)
{
    field_ = field;
    quiet_ = quiet;
    setText(withoutControls(field));
    update();
}

QSize FieldSlot::sizeHint() const
{
    const QLineEdit line;
    return {fontMetrics().averageCharWidth() * LettersSeen + 2 * Margin + ArrowRect().width(),
            line.sizeHint().height()};
}

QSize FieldSlot::minimumSizeHint() const
{
    const QSize usual = sizeHint();
    return {usual.width() * 2 / 3, usual.height()};
}

QRect FieldSlot::ArrowRect() const
{
    const int side = std::max(16, fontMetrics().height());
    return {width() - side - 2, 0, side, height()};
}

void FieldSlot::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, this);
    frame.state |= QStyle::State_Sunken;
    painter.drawPrimitive(QStyle::PE_PanelLineEdit, frame);

    const bool empty = field_.isEmpty();
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled,
                                   empty || quiet_ ? QPalette::PlaceholderText : QPalette::Text));
    const QRect room = rect().adjusted(Margin, 0, -ArrowRect().width() - 2, 0);
    const QString shown = empty ? placeholder_ : text();
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(shown, Qt::ElideMiddle, room.width()));

    QStyleOption arrow;
    arrow.initFrom(this);
    arrow.palette.setColor(QPalette::ButtonText, palette().color(QPalette::Text));
    arrow.rect = QRect(0, 0, 9, 9);
    arrow.rect.moveCenter(ArrowRect().center());
    painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, arrow);

    if (hovered_ || hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), hovered_ ? 3 : 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void FieldSlot::Edit(const std::optional<QString> &letters)
{
    if (IsEditing() || !isEnabled())
        return;
    edit_ = new QLineEdit(this);
    edit_->setObjectName(QStringLiteral("FieldEdit"));
    edit_->setAccessibleName(accessibleName());
    edit_->setGeometry(rect());
    edit_->setText(letters.value_or(field_));
    if (!letters)
        edit_->selectAll();
    auto *completer = new QCompleter(offered_, edit_);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setMaxVisibleItems(12);
    edit_->setCompleter(completer);
    connect(completer, qOverload<const QString &>(&QCompleter::activated), this, [this](const QString &name) {
        if (!IsEditing())
            return; // Return has taken it already
        edit_->setText(name);
        CloseEdit(true);
    });
    // A list that is open hands Return to the line past every filter.
    connect(edit_, &QLineEdit::returnPressed, this, [this] { CloseEdit(true); });
    edit_->installEventFilter(this);
    setTabOrder(this, edit_);
    edit_->show();
    edit_->setFocus();
    if (offered_.isEmpty())
        return;
    completer->setCompletionPrefix(letters.value_or(QString()));
    if (completer->completionCount() > 0)
        completer->complete();
}

void FieldSlot::EndEdit()
{
    if (IsEditing())
        CloseEdit(true);
}

void FieldSlot::CloseEdit(bool keep)
{
    QLineEdit *const edit = edit_;
    if (edit == nullptr)
        return;
    edit_ = nullptr;
    edit->removeEventFilter(this);
    edit->setObjectName(QString());
    const bool hadFocus = edit->hasFocus() || edit->completer()->popup()->isVisible();
    edit->completer()->popup()->hide();
    QString name = edit->text();
    edit->hide();
    edit->deleteLater();
    if (hadFocus)
        setFocus();
    if (!keep || name == field_)
        return;
    // As the database writes it, where only the capitals differ.
    for (const QString &offered : offered_) {
        if (!offered_.contains(name) && offered.compare(name, Qt::CaseInsensitive) == 0)
            name = offered;
    }
    Q_EMIT Named(name);
}

void FieldSlot::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers held = event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (held == Qt::NoModifier) {
        switch (event->key()) {
        case Qt::Key_F2:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            return Edit();
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            Q_EMIT RemoveWanted();
            return;
        default:
            break;
        }
        if (!event->text().isEmpty() && event->text().front().isPrint())
            return Edit(event->text());
    }
    event->ignore();
}

void FieldSlot::mousePressEvent(QMouseEvent *event)
{
    pressed_ = event->position().toPoint();
    if (event->button() == Qt::LeftButton && ArrowRect().contains(pressed_))
        Edit();
}

void FieldSlot::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Edit();
}

void FieldSlot::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint way = event->position().toPoint() - pressed_;
    if (!takesPlaces_ || field_.isEmpty() || !(event->buttons() & Qt::LeftButton) ||
        way.manhattanLength() < QApplication::startDragDistance())
        return;
    auto *drag = new QDrag(this); // it deletes itself
    drag->setMimeData(mimeOfPlace(place_));
    drag->setPixmap(grab());
    drag->setHotSpot(pressed_);
    drag->exec(Qt::MoveAction);
}

void FieldSlot::resizeEvent(QResizeEvent *event)
{
    if (IsEditing())
        edit_->setGeometry(rect());
    QAbstractButton::resizeEvent(event);
}

void FieldSlot::focusInEvent(QFocusEvent *event)
{
    QAbstractButton::focusInEvent(event);
    update();
}

bool FieldSlot::Takes(const QMimeData *mime) const
{
    if (takesPlaces_)
        return !fieldsIn(mime).isEmpty() || placeIn(mime).value_or(place_) != place_;
    return fieldsIn(mime).size() == 1;
}

void FieldSlot::SetHovered(bool hovered)
{
    hovered_ = hovered;
    update();
}

void FieldSlot::dragEnterEvent(QDragEnterEvent *event)
{
    if (!Takes(event->mimeData()))
        return event->ignore();
    SetHovered(true);
    event->acceptProposedAction();
}

void FieldSlot::dragMoveEvent(QDragMoveEvent *event)
{
    event->setAccepted(Takes(event->mimeData()));
}

void FieldSlot::dragLeaveEvent(QDragLeaveEvent *)
{
    SetHovered(false);
}

void FieldSlot::dropEvent(QDropEvent *event)
{
    SetHovered(false);
    if (!Takes(event->mimeData()))
        return event->ignore();
    event->acceptProposedAction();
    const QStringList fields = fieldsIn(event->mimeData());
    if (!fields.isEmpty())
        Q_EMIT Dropped(fields);
    else if (const std::optional<int> place = placeIn(event->mimeData()))
        Q_EMIT PlaceDropped(*place);
}

bool FieldSlot::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != edit_)
        return QAbstractButton::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress) {
        // Return and Escape are the line's own business, not the dialog's.
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) {
            CloseEdit(key != Qt::Key_Escape);
            return true;
        }
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
            return false;
    } else if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            CloseEdit(true);
    }
    return QAbstractButton::eventFilter(watched, event);
}

} // namespace nuvo
