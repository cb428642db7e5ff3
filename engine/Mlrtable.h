// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Regressionproperties.h"
#include "platform/Table.h"

#include <QPointer>

class TMLRPlotForm;

/// A table that fits a regression to its own records. See TRegression for the operations.
class NUVO_EXPORT TMLRTable : public TTable, public TRegression
{
    Q_OBJECT
    NUVO_REGRESSION_PROPERTIES

public:
    /// No table, no definitions; the owner deletes it.
    explicit TMLRTable(QWidget *owner = nullptr);
    ~TMLRTable() override;

    QString DataSourceName() const override { return TableName(); }

    /// Shows the report of what the component holds, a successful run or not, and returns when it is closed; see
    /// nuvo::showReport.
    void Output();
    /// Shows the diagnostic plots in a window and returns when it is closed; see nuvo::showPlots.
    Q_INVOKABLE void ShowPlots();
    /// The plot window while it is open, else null.
    QPointer<TMLRPlotForm> FPlotForm;
    /// Shows all that the fit tells in a window and returns when it is closed; see nuvo::showStatistics.
    Q_INVOKABLE void ShowStatistics();

Q_SIGNALS:
    /// A load has ended, with usable observations or without.
    void LoadEnded(bool loaded);
    /// Execute() has fitted.
    void Fitted();

protected:
    void CheckChange() const override { RefuseWhileBusy(); }
    std::unique_ptr<nuvo::Progress> MakeLoadProgress() override;
    void NotifyLoaded() override { Q_EMIT LoadEnded(Loaded()); }
    void NotifyComputed() override { Q_EMIT Fitted(); }
};
