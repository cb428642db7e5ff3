// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;
class QTableView;

namespace nuvo {
struct Choice;
class ChoiceTable;
} // namespace nuvo

/// The way of a search by partial F: a table of the steps, what is left and why at its end, and of the selected step
/// a table of every candidate with its F and p. Both sort by a click on a heading. Stands on any form. Keys: Ctrl+C
/// copies the selected row of a table, or all; Enter in the steps is a wish to use the model after that step, as a
/// double click is.
class NUVO_EXPORT TStepsPage : public QWidget
{
    Q_OBJECT

public:
    /// Empty tables.
    explicit TStepsPage(QWidget *parent = nullptr);
    ~TStepsPage() override;

    /// The steps of a choice; none where its method is Optimal. The first step is selected.
    void SetChoice(const nuvo::Choice &choice);

    /// The table of the steps.
    QTableView &Steps();
    /// The table of the selected step's candidates.
    QTableView &Candidates();
    /// The number of the selected step, from 1, the end included; 0 when none is selected.
    int Selected() const;
    /// 0: none. Sends no signal.
    void SetSelected(int step);

    /// What is selected in the table that has the focus, else the steps; separated by tabs, with all digits.
    QString SelectionText() const;
    /// SelectionText() onto the clipboard.
    void Copy() const;
    /// A line for every candidate of every step, with all digits: commas, decimal points, LF, UTF-8.
    /// \throws EPlatformError when the file cannot be written; no partial file is left.
    void SaveCsv(const QString &file) const;

Q_SIGNALS:
    /// The person selected another step; read Selected().
    void SelectionChanged();
    /// The person wants the model after this step, from 1, on the component: TCorvane::SelectModel() does it.
    void UseModel(int step);

private:
    void ShowStep();
    const nuvo::ChoiceTable &Reading() const;

    std::unique_ptr<const nuvo::Choice> choice_;
    nuvo::ChoiceTable *steps_;
    QLabel *title_;
    nuvo::ChoiceTable *candidates_;
    QPushButton *use_;
};
