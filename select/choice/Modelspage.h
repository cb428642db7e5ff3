// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QWidget>

class QPushButton;
class QTableView;

namespace nuvo {
struct Choice;
class ChoiceTable;
} // namespace nuvo

/// The models of a search of all subsets in a table that sorts by a click on a heading: the best of each size with
/// all their figures; the one that is left is marked, dependent ones are told. Stands on any form. Keys: Ctrl+C
/// copies the selected row, or all; Enter is a wish to use the selected model, as a double click is.
class NUVO_EXPORT TModelsPage : public QWidget
{
    Q_OBJECT

public:
    /// An empty table.
    explicit TModelsPage(QWidget *parent = nullptr);

    /// The models of a choice; none where its method is not Optimal. What is left is selected.
    void SetChoice(const nuvo::Choice &choice);

    /// The table.
    QTableView &View();
    /// The number of the selected model in the list, from 1; 0 when none is selected.
    int Selected() const;
    /// 0: none. Sends no signal.
    void SetSelected(int model);

    /// The selected row, or all as they are sorted, under their headings: separated by tabs, with all digits.
    QString SelectionText() const;
    /// SelectionText() onto the clipboard.
    void Copy() const;
    /// All models in their order, with all digits: commas, decimal points, LF, UTF-8.
    /// \throws EPlatformError when the file cannot be written; no partial file is left.
    void SaveCsv(const QString &file) const;

Q_SIGNALS:
    /// The person selected another model; read Selected().
    void SelectionChanged();
    /// The person wants this model, a number from 1, on the component: TCorvane::SelectModel() does it.
    void UseModel(int model);

private:
    void ShowState();

    nuvo::ChoiceTable *table_;
    QPushButton *use_;
    int left_ = 0; ///< number of the model that is left; 0 when it is not in the list
};
