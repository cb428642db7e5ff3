// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/figures/Figure.h"
#include "present/figures/Figurefile.h"
#include "present/figures/Figurepainter.h"

#include <QPixmap>
#include <QWidget>

#include <memory>
#include <optional>
#include <set>

/// Shows one figure, at any size and in the colours of its palette.
///
/// The mouse: hovering tells a point's record and values, a click selects it, Ctrl and a click adds it to the
/// selection or takes it away, a click beside all points selects nothing. The wheel zooms around the pointer,
/// dragging pans, a double click shows all again. A click on a bar selects the observations in it.
///
/// The keyboard: Left and Right go to the next point by its place across, Up and Down by its height, Home and End to
/// the ends, and select it; + and - zoom around the middle, 0 shows all; Ctrl+C copies the picture, Ctrl+S asks for a
/// file's name and saves as PNG, SVG or PDF. The context menu has these too, and the
/// widget's actions; a point that it is opened on is selected for them.
class NUVO_EXPORT TFigureView : public QWidget
{
    Q_OBJECT

public:
    /// Without a figure.
    explicit TFigureView(QWidget *parent = nullptr);
    ~TFigureView() override;

    /// As it was set.
    const nuvo::Figure &Figure() const { return figure_; }
    /// Another figure, all of it shown; the selection stays.
    void SetFigure(const nuvo::Figure &figure);

    /// Ordinals of the records that are selected.
    const std::set<qint64> &Selected() const { return selected_; }
    /// Sends no signal.
    void SetSelected(const std::set<qint64> &records);

    /// The part of the figure that is shown.
    const nuvo::FigureSection &Section() const { return section_; }
    /// One that is empty, or too small or large to be told from the whole, is not taken.
    void SetSection(const nuvo::FigureSection &section);
    /// The whole figure.
    void ShowAll();
    /// Shows so many times less (above 1) or more (below 1) around a place of the widget, which stays where it is.
    void Zoom(double factor, const QPointF &around);

    /// How it is laid out now: places of points and frame, in the widget's coordinates.
    const nuvo::FigurePainter &Painter() const;
    /// The point that the keyboard or the pointer is at, or the bar of a figure without points; -1 when at none.
    int Current() const { return current_; }
    /// What stands in the tool tip at a place; empty where nothing is.
    QString WordsAt(const QPointF &where) const;

    /// What is shown, selection included, in this size and in light colours, onto the clipboard: picture and SVG.
    void Copy() const;
    /// Asks for a name and saves the same as PNG, SVG or PDF; an error becomes a message box.
    void SaveAs();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The person selected other records than before; read Selected().
    void SelectionChanged();
    /// The person selected this record alone.
    void Picked(qint64 record);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void Redraw();
    /// Pans until a value stands at a place.
    void MoveTo(const QPointF &value, const QPointF &where);
    void SetCurrent(int point);
    void Select(std::set<qint64> records);
    void ClickAt(const QPointF &where, bool add);
    /// The next point in the order of x or y; `toEnd` goes to the last one that way.
    void Step(bool across, bool forwards, bool toEnd);
    void StepToBar(bool forwards, bool toEnd);
    void Say(const QString &words, const QPointF &where);
    nuvo::FigureSheet Sheet() const;

    nuvo::Figure figure_;
    std::set<qint64> selected_;
    nuvo::FigureSection section_;
    int current_ = -1;
    mutable std::unique_ptr<nuvo::FigurePainter> painter_; ///< made when needed
    QPixmap layer_;                                        ///< all but selection and current point; null: to be drawn
    std::optional<QPointF> pressed_;
    QPointF pressedValue_; ///< that is to stay under the pointer
    bool dragging_ = false;
    bool doubleClicked_ = false;
};
