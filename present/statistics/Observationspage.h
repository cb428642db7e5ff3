// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Figures.h"

#include <QString>
#include <QWidget>

#include <set>

class QCheckBox;
class QLabel;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace nuvo {
class ObservationsModel;
}

/// Every observation of a fit in a table that sorts by a click on a heading; what stands out is marked in colour and
/// in words. Ctrl+C copies the selected rows, or all when none is. Stands on any form.
class NUVO_EXPORT TObservationsPage : public QWidget
{
    Q_OBJECT

public:
    /// An empty table.
    explicit TObservationsPage(QWidget *parent = nullptr);

    /// The figures of a fit with their influence; without a current fit the table is empty.
    void SetFigures(const nuvo::Figures &figures);

    /// The table.
    QTableView &View() { return *view_; }
    /// Ordinals of the records that are selected.
    std::set<qint64> Selected() const;
    /// Sends no signal; shows the first of them. Records that the table does not show are left out.
    void SetSelected(const std::set<qint64> &records);

    /// The selected rows as they are sorted, or all rows, under their headings: separated by tabs, with all digits
    /// and the decimal sign of the locale. A figure that does not exist is empty.
    QString SelectionText() const;
    /// The same onto the clipboard, as text and as HTML.
    void Copy() const;
    /// All observations in the order of their records, with all digits: commas, decimal points, LF, UTF-8, and the
    /// names of columns that nuvostat has, whatever language the page speaks.
    /// \throws EPlatformError when the file cannot be written; no partial file is left.
    void SaveCsv(const QString &file) const;
    /// Asks for a name and saves; an error becomes a message box.
    void SaveAs();

Q_SIGNALS:
    /// The person selected other records than before; read Selected().
    void SelectionChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    nuvo::ObservationsModel *model_;
    QSortFilterProxyModel *order_;
    QTableView *view_;
    QCheckBox *onlyThose_;
    QLabel *count_;
    QPushButton *save_;
    bool quiet_ = false;
};
