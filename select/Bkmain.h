// SPDX-License-Identifier: MIT
#pragma once

#include "select/Partialf.h"

/// Backward elimination: takes out the variable whose removal leaves the smallest residual mean square while the
/// statistic of the pass is above the threshold.
///
/// The statistic is (MS - MS before) / (MS / DOF) with MS before 0 in the first pass, so that the first removal is
/// decided by the degrees of freedom. That, and the t2 that the steps print, are meant to be as they are.
class NUVO_EXPORT TBackElimMLR : public TPartialFSearch
{
    Q_OBJECT
    Q_PROPERTY(QString FDistTable READ FDistTableName WRITE SetFDistTableName)
    Q_PROPERTY(double FDefault READ FDefault WRITE SetFDefault)
    Q_PROPERTY(bool ShowReport READ ShowReport WRITE SetShowReport)
    Q_PROPERTY(bool ShowProgress READ ShowProgress WRITE SetShowProgress)
    Q_PROPERTY(double P READ P WRITE SetP)

public:
    /// Bound to nothing; the owner deletes it.
    explicit TBackElimMLR(QWidget *owner = nullptr);
    ~TBackElimMLR() override;

    /// The threshold where no table gives one ("95 Percent" of FDistTable) or the look-up fails.
    double FDefault() const { return fDefault_; }
    /// Stores the absolute value.
    void SetFDefault(double value);

    /// For the rule Textbook: the probability from which the threshold F(1, DOF) is worked out at each step; 0 when
    /// none is given, and FDistTable or FDefault has it. Run() refuses what is no probability, and one beside
    /// FDistTable.
    double P() const { return p_; }
    /// \throws EDatabaseError during a run.
    void SetP(double value);

    void Run() override;

private:
    double fDefault_ = 4.0;
    double p_ = 0;
};

/// The search on a table and on a query. \pre the selector is bound to the component.
NUVO_EXPORT void BackElimMLRTable(TMLRTable &component, TBackElimMLR &selector);
/// The same on a query.
NUVO_EXPORT void BackElimMLRQuery(TMLRQuery &component, TBackElimMLR &selector);
