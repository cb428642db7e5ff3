// SPDX-License-Identifier: MIT
#pragma once

#include "select/Partialf.h"

/// Forward selection: adds the variable whose entry gives the smallest residual mean square while the statistic of
/// the pass is above the threshold.
///
/// The statistic is the overall F of a model with one variable, else (MS before - MS) / (MS / DOF).
class NUVO_EXPORT TFwdSelectMLR : public TPartialFSearch
{
    Q_OBJECT
    Q_PROPERTY(double FDefault READ FDefault WRITE SetFDefault)
    Q_PROPERTY(QString FDistTable READ FDistTableName WRITE SetFDistTableName)
    Q_PROPERTY(bool ShowReport READ ShowReport WRITE SetShowReport)
    Q_PROPERTY(bool ShowProgress READ ShowProgress WRITE SetShowProgress)
    Q_PROPERTY(double P READ P WRITE SetP)

public:
    /// Bound to nothing; the owner deletes it.
    explicit TFwdSelectMLR(QWidget *owner = nullptr);
    ~TFwdSelectMLR() override;

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
NUVO_EXPORT void FwdSelectMLRTable(TMLRTable &component, TFwdSelectMLR &selector);
/// The same on a query.
NUVO_EXPORT void FwdSelectMLRQuery(TMLRQuery &component, TFwdSelectMLR &selector);
