// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QPointer>
#include <QStringList>

#include <optional>

class QLineEdit;
class QMimeData;

namespace nuvo {

/// A place for a field: shows its name, takes fields that are dropped on it, can be dragged itself, and lets a name
/// be typed or chosen from a list. It tells what is wanted and changes nothing by itself.
class FieldSlot : public QAbstractButton
{
    Q_OBJECT

public:
    /// \param place of the definition, which is dragged with the slot where `takesPlaces`.
    FieldSlot(int place, bool takesPlaces, QWidget *parent);

    /// What is shown where there is no field.
    void SetPlaceholder(const QString &text) { placeholder_ = text; }
    /// \param quiet of a field that takes no part.
    void SetField(const QString &field, bool quiet = false);
    const QString &Field() const { return field_; }
    /// The names to choose from.
    void SetOffered(const QStringList &names) { offered_ = names; }
    /// Opens a line to type a name in, with these letters.
    void Edit(const std::optional<QString> &letters = {});
    /// Ends that and takes what was typed.
    void EndEdit();
    bool IsEditing() const { return !edit_.isNull(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A name was typed or chosen; empty where it was taken away.
    void Named(const QString &field);
    /// Fields were dropped.
    void Dropped(const QStringList &fields);
    /// Another place was dropped.
    void PlaceDropped(int place);
    void RemoveWanted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool hitButton(const QPoint &) const override { return false; }

private:
    bool Takes(const QMimeData *mime) const;
    void SetHovered(bool hovered);
    void CloseEdit(bool keep);
    QRect ArrowRect() const;

    int place_;
    bool takesPlaces_;
    QString field_;
    QString placeholder_;
    QStringList offered_;
    bool quiet_ = false;
    bool hovered_ = false;
    QPoint pressed_;
    QPointer<QLineEdit> edit_;
};

} // namespace nuvo
