// SPDX-License-Identifier: MIT
#pragma once

#include "select/Partialf.h"

/// Stepwise regression: adds the variable whose entry gives the smallest residual mean square while its partial F is
/// above the entry threshold, and after each addition takes out those whose t2 is below the removal threshold.
class NUVO_EXPORT TStepWiseMLR : public TPartialFSearch
{
    Q_OBJECT
    Q_PROPERTY(QString FDistTable READ FDistTableName WRITE SetFDistTableName)
    Q_PROPERTY(double FInDefault READ FInDefault WRITE SetFInDefault)
    Q_PROPERTY(double FOutDefault READ FOutDefault WRITE SetFOutDefault)
    Q_PROPERTY(QString FPercent READ FPercent WRITE SetFPercent)
    Q_PROPERTY(bool ShowReport READ ShowReport WRITE SetShowReport)
    Q_PROPERTY(bool ShowProgress READ ShowProgress WRITE SetShowProgress)
    Q_PROPERTY(double PIn READ PIn WRITE SetPIn)
    Q_PROPERTY(double POut READ POut WRITE SetPOut)

public:
    /// Bound to nothing; the owner deletes it.
    explicit TStepWiseMLR(QWidget *owner = nullptr);
    ~TStepWiseMLR() override;

    /// The threshold to enter where no table gives one. When the look-up in a table fails it is FOutDefault, though.
    double FInDefault() const { return fInDefault_; }
    /// Stores the absolute value.
    void SetFInDefault(double value);
    /// The threshold to stay where no table gives one.
    double FOutDefault() const { return fOutDefault_; }
    /// Stores the absolute value.
    void SetFOutDefault(double value);
    /// The column of FDistTable that holds the thresholds to enter: "1 Percent", "5 Percent", "10 Percent". Those to
    /// stay are always in "95 Percent". Under the rule Textbook none counts as "5 Percent".
    QString FPercent() const { return fPercent_; }
    /// \throws EDatabaseError during a run. A column that is not there makes the look-up fail.
    void SetFPercent(const QString &column);

    /// For the rule Textbook: the probabilities from which the thresholds F(1, DOF) to enter and to stay are worked
    /// out at each step; 0 when none is given, and FDistTable or the defaults have them. A POut below PIn counts as
    /// PIn, also one that is not given. Run() refuses what is no probability, and one beside FDistTable.
    double PIn() const { return pIn_; }
    /// \throws EDatabaseError during a run.
    void SetPIn(double value);
    /// The probability to stay.
    double POut() const { return pOut_; }
    /// \throws EDatabaseError during a run.
    void SetPOut(double value);

    void Run() override;

    /// As SetTableControl and SetTableControlByIndex, on the bound component.
    bool SetControl(TTermTable table, int which, int row);
    /// The same by the control variable's number.
    void SetControlByIndex(int index, const QString &transformation);

private:
    double fInDefault_ = 4.0;
    double fOutDefault_ = 4.0;
    double pIn_ = 0;
    double pOut_ = 0;
    QString fPercent_;
};

/// The search on a table and on a query. \pre the selector is bound to the component.
NUVO_EXPORT void ForwardTable(TMLRTable &component, TStepWiseMLR &selector);
/// The same on a query.
NUVO_EXPORT void ForwardQuery(TMLRQuery &component, TStepWiseMLR &selector);
