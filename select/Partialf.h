// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Table.h"
#include "select/Corvane.h"

namespace nuvo {
class PartialFRun;
struct SelectionTestAccess;
} // namespace nuvo

/// What the three searches by partial F tests have in common: the table of critical values, and whether they show
/// their report and their progress.
class NUVO_EXPORT TPartialFSearch : public TCorvane
{
    Q_OBJECT

public:
    explicit TPartialFSearch(QWidget *owner = nullptr);
    ~TPartialFSearch() override;

    /// The table of critical values of F, keyed on numerator and denominator degrees of freedom, one column per
    /// level; nullptr when none is assigned or it was destroyed.
    ///
    /// A look-up searches (1, degrees of freedom of the fit). Whether that is found is not asked: when it is not, the
    /// value of whatever record is current counts, and a null counts as 0. A table that is closed, has no key or no
    /// such column, or a text in it, makes the look-up fail, and a default stands in.
    TTable *FDistTable() const;
    /// Also takes over its name; null for none. \throws EDatabaseError during a run.
    void SetFDistTable(TTable *table);
    /// The same by name, as a form stores it. A name that finds nothing yet is looked up again when the table is
    /// needed.
    QString FDistTableName() const;
    /// \throws EDatabaseError during a run.
    void SetFDistTableName(const QString &name);

    /// Whether a message box shows the report at the end.
    bool ShowReport() const { return showReport_; }
    /// \throws EDatabaseError during a run.
    void SetShowReport(bool show);
    /// Whether the dialog shows the progress; else the cursor is an hourglass meanwhile.
    bool ShowProgress() const { return showProgress_; }
    /// \throws EDatabaseError during a run.
    void SetShowProgress(bool show);

    /// Puts a model onto the bound component. Does not load.
    void SetModel(const TMLRModel &model) { PutModel(model); }
    /// As SetTableControls, on the bound component.
    bool SetControls(TTermTable table, int row, int count);

private:
    friend class nuvo::PartialFRun;
    friend struct nuvo::SelectionTestAccess;

    bool endsRepeating_ = true; ///< tests let a search go round to see what would come of it
    QString fDistTableName_;
    mutable QPointer<TTable> fDistTable_;
    mutable bool fDistTableBound_ = false;
    bool showReport_ = false;
    bool showProgress_ = false;
};
