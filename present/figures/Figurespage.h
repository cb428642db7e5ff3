// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/figures/Figure.h"
#include "present/figures/Figureview.h"

#include <QWidget>

#include <set>
#include <vector>

class QComboBox;
class QPushButton;
class QToolButton;

/// A set of figures, one at a time: a list to choose from, buttons and keys (Page Up, Page Down) for the one before
/// and the next, a button that saves all of them into a folder, and the figure itself. Stands on any form.
class NUVO_EXPORT TFiguresPage : public QWidget
{
    Q_OBJECT

public:
    /// Without figures.
    explicit TFiguresPage(QWidget *parent = nullptr);

    /// Other figures; a figure of the kind and term that was shown is shown again, else the first.
    void SetFigures(std::vector<nuvo::Figure> figures);
    /// As they were set.
    const std::vector<nuvo::Figure> &Figures() const { return figures_; }

    /// Which figure is shown, from 0; -1 when there is none.
    int Index() const;
    /// Shows another; an index that does not exist changes nothing.
    void SetIndex(int index);

    /// What shows the figure.
    TFigureView &View() { return *view_; }
    /// Ordinals of the records that are selected.
    const std::set<qint64> &Selected() const { return view_->Selected(); }
    /// Sends no signal.
    void SetSelected(const std::set<qint64> &records) { view_->SetSelected(records); }

    /// Asks for a folder and saves all figures in the usual size; an error becomes a message box.
    void SaveAll(nuvo::FigureFormat format);

Q_SIGNALS:
    /// The person selected other records than before; read Selected().
    void SelectionChanged();

private:
    void ShowChosen();

    std::vector<nuvo::Figure> figures_;
    QComboBox *chooser_;
    QToolButton *previous_;
    QToolButton *next_;
    QPushButton *saveAll_;
    TFigureView *view_;
};
