// SPDX-License-Identifier: MIT
#pragma once

#include "select/Partialf.h"
#include "select/Selectionrun.h"

#include <array>
#include <set>
#include <tuple>

namespace nuvo {

/// A search by partial F, as far as the three of them are the same. Per pass each candidate in turn gets row 0 of the
/// term table for its own control variable and row 1 for the others; the candidate with the smallest residual mean
/// square is taken when the statistic of the pass is above the critical value.
///
/// Columns of the term table are read from the active variables and written to ControlVar01 and following by the same
/// number, also where these part.
class PartialFRun
{
public:
    PartialFRun(const PartialFRun &) = delete;
    PartialFRun &operator=(const PartialFRun &) = delete;
    virtual ~PartialFRun();

    /// Runs the search to its end.
    void search();

protected:
    struct Rules
    {
        const char *takes;   ///< "add" or "remove" in a trace
        QString column;      ///< of the table of F values
        double critical;     ///< at the start of a pass
        double lookUpFailed; ///< where the table gives none
    };

    PartialFRun(SelectionRun &run, const TPartialFSearch &selector, Rules rules);

    /// Fills the rows of the term table from active variable i.
    virtual void enter(int i, const TIndepVar &variable) = 0;
    /// Before candidate i is set: what a trace says of it.
    virtual QString examine(int i);
    /// The statistic of the model just fitted, which is the best of its pass so far.
    virtual double statistic(double meanSquare) = 0;
    virtual double percentage(int i) const;
    virtual void beginPass() {}
    /// All candidates are done, nothing is decided yet.
    virtual void endPass() {}
    /// The best candidate goes in or out.
    virtual void take(int) {}
    virtual QString stepText(int best) const = 0;
    /// The step was told.
    virtual void taken() {}
    /// How many variables are in use when there is nothing left to search.
    virtual int last() const = 0;
    /// The first control variable whose definition at the start of a pass has a say in what the pass comes to: those
    /// of the term table are written anew for each candidate.
    virtual int firstOwnDefinition() const { return variables_ + 1; }
    virtual void writeResult() = 0;

    TRegression &regression() { return run_.regression(); }
    /// The drop of the residual mean square from `before` to `after`, in units of MS / DOF of the model just fitted;
    /// 0 where that cannot be divided.
    double partialF(double before, double after);
    /// The overall F of a model with one variable (infinite for an exact fit), else the partial F.
    double statisticOfEntry(double meanSquare);
    /// The squared t-ratio of coefficient j; 0 where that cannot be worked out.
    double squaredT(int j);
    /// The critical value for the model just fitted, if there is a table.
    void lookUp(const QString &column, double &critical, double failed);
    void writeAdded(const QString &title);

    SelectionRun &run_;
    int variables_ = 0; ///< in use when the run began
    int pass_ = 0;
    std::array<TTermRow, 3> rows_; ///< what a candidate gets; the current model; the names
    double previous_ = 0;          ///< residual mean square of the current model
    double critical_ = 0;
    double statistic_ = 0;

private:
    using State = std::tuple<TTermRow, TTermRow, quint64, qint64>;

    State state() const;
    bool cameBack();
    void pass();
    void candidate(int i);
    void decide();
    void traceCandidate(int i, const QString &examined, double meanSquare, bool loaded, bool best);

    const Rules rules_;
    QPointer<TTable> table_;
    const bool hasTable_;
    const bool endsRepeating_;
    std::set<State> states_;
    double minimum_ = 0;
    int best_ = 0; ///< 0 while no candidate of the pass was fitted
};

} // namespace nuvo
