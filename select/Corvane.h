// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Component.h"
#include "select/Cvtools.h"

#include <QPointer>
#include <QStringList>

#include <memory>

class TRegression;

namespace nuvo {
struct Choice;
class Progress;
class SelectionRun;
} // namespace nuvo

/// How a run ended: by its own rule; because the search came back to a model that it had already been at; because the
/// user stopped it, or an error or the end of a component did.
enum class TRunEnd { Converged, Repeats, Stopped };

/// The base of the components that choose a model. It is bound to a regression component on the same form, by name or
/// directly, and drives it: changes its control variables, loads, fits, reads the figures.
///
/// One run at a time works on a regression component. While it does, events of the application can run (the progress
/// dialog, message boxes, the component's signals): whoever then calls Run(), ReLoad(), Execute() or Close(), or
/// writes a property of the two components, gets an EDatabaseError. Destroying one of them ends the run.
///
/// A run that is stopped (Escape on the dialog), or that an error passes through, leaves the definitions as they were
/// before it, loaded and fitted again where that can be done, else not loaded.
class NUVO_EXPORT TCorvane : public TComponent
{
    Q_OBJECT
    Q_PROPERTY(QString Dataset READ Dataset WRITE SetDataset)
    Q_PROPERTY(TSelectionRule Rule READ Rule WRITE SetRule)

public:
    /// As this component always chose; or as textbooks do, all candidates on the records that all of them can use.
    enum TSelectionRule { Written, Textbook };
    Q_ENUM(TSelectionRule)

    explicit TCorvane(QWidget *owner = nullptr);
    ~TCorvane() override;

    /// The regression component's name as it was assigned.
    QString Dataset() const { return dataset_; }
    /// Binds to the regression component of that name. Names are searched from the nearest ancestor outwards. When
    /// there is none, a binding made before stays; and while there never was one, the name is looked up again when
    /// the component is needed, as a form may create it later.
    void SetDataset(const QString &name);
    /// Bind directly; the stored name stays.
    void SetTable(TMLRTable *table);
    /// The same for a query.
    void SetQuery(TMLRQuery *query);

    /// The bound component, at most one of the two; nullptr when it was destroyed, until the next assignment.
    TMLRTable *Table() const;
    /// The bound query; nullptr where a table or nothing is bound.
    TMLRQuery *Query() const;
    /// Whichever of the two is bound; nullptr for none.
    TRegression *Regression() const;

    /// Which candidates there are and how they are compared; Written unless set.
    TSelectionRule Rule() const { return rule_; }
    /// \throws EDatabaseError during a run.
    void SetRule(TSelectionRule rule);
    /// Whether Run() compares all candidates on one sample, after one load.
    virtual bool SharesSample() const { return rule_ == Textbook; }

    /// Chooses a model and leaves the regression component with it.
    /// \throws EDatabaseError when nothing is bound, when a run is under way, or when the database fails.
    virtual void Run() = 0;
    /// Whether a run is under way.
    bool Running() const { return running_; }

    // The last run.

    /// Its report, also where no box showed it; empty when an error ended it. Lines end in "\n\r".
    const QString &Report() const;
    /// What a box shows of it: all, or, under the rule Textbook, what is left of it, why, and what is worth a
    /// warning.
    QString Summary() const;
    /// Every text that the progress dialog was given, in order.
    const QStringList &Steps() const { return steps_; }
    /// How the last run ended.
    TRunEnd Ended() const { return ended_; }
    /// What there is to show of it under the rule Textbook; null under the other one, before a run, while one is
    /// under way, and after one that was stopped or that an error ended.
    std::shared_ptr<const nuvo::Choice> Choice() const { return choice_; }

    /// Leaves model `index` of the last choice on the component in the place of the chosen one, loaded and fitted
    /// over the sample that its candidates share: of a best subset that entry of the list, of a search by partial F
    /// the model after that step, from 1. Choice() says so afterwards, and with it the report. \throws EDatabaseError
    /// when there is no choice, when variables or records are not those of it any more, and as Run();
    /// EStringListError when it has no model of that number. The component is then as it was.
    virtual void SelectModel(int index);

    /// Shows Choice() in a window and returns when it is closed; without one a message says so. See nuvo::showChoice.
    Q_INVOKABLE void ShowChoice();

    /// Saves the bound component's model. \throws EDatabaseError when nothing is bound.
    void SaveModel(TMLRModel &model);

Q_SIGNALS:
    /// A run has ended without an error, stopped or not.
    void Finished();

protected:
    /// Who follows a run; a TGaugeDlg unless a derived class has something else. Where all candidates share a sample
    /// whose records are in memory, it shows itself only when the run has not ended in a fifth of a second.
    virtual std::unique_ptr<nuvo::Progress> MakeProgress();
    /// \throws EDatabaseError when nothing is bound, naming this component.
    void NeedBound() const;
    /// \throws EDatabaseError when a run cannot begin now: nothing is bound, or a run is under way.
    void NeedFree() const;
    /// \throws EDatabaseError during a run.
    void RefuseWhileRunning() const;
    /// Puts a model onto the bound component; does not load.
    void PutModel(const TMLRModel &model);

private:
    friend class nuvo::SelectionRun;

    void Bind(TMLRTable *table, TMLRQuery *query) const;
    void LookUp() const;

    QString dataset_;
    TSelectionRule rule_ = Written;
    std::shared_ptr<const nuvo::Choice> choice_;
    // Looking up a name again binds, also where a caller only asks.
    mutable QPointer<TMLRTable> table_;
    mutable QPointer<TMLRQuery> query_;
    mutable bool everBound_ = false;
    bool running_ = false;
    mutable QString report_; ///< that of a choice is made when it is first asked for
    QStringList steps_;
    TRunEnd ended_ = TRunEnd::Converged;
};

using TSelectionRule = TCorvane::TSelectionRule;
