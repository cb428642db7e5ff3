// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Regressionproperties.h"
#include "platform/Query.h"

#include <QPointer>

class TMLRPlotForm;

/// A query that fits a regression to its own records. See TRegression for the operations.
class NUVO_EXPORT TMLRQuery : public TQuery, public TRegression
{
    Q_OBJECT
    NUVO_REGRESSION_PROPERTIES

public:
    /// No statement, no definitions; the owner deletes it.
    explicit TMLRQuery(QWidget *owner = nullptr);
    ~TMLRQuery() override;

    QString DataSourceName() const override { return SQLLines().value(0); }

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
