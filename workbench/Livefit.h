// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Scan.h"
#include "workbench/Modelstate.h"

#include <QObject>

#include <memory>
#include <optional>

class TMLRQuery;
class TMLRTable;

namespace nuvo {

/// A regression component that follows a state: the first 2500 records are fitted at once where they are soon found;
/// where they lie far back, and every record, in the background while the window lives on. What the components have
/// to say is collected instead of shown in boxes.
class LiveFit : public QObject
{
    Q_OBJECT

public:
    explicit LiveFit(QObject *parent = nullptr);
    ~LiveFit() override;

    /// Fits a state. One that is under way in the background is ended first. A state that cannot be fitted yet
    /// (ModelState::isFittable) leaves no fit.
    void Fit(const ModelState &state) { Fit(state, state, {}); }
    /// The same, with the records read from another place, where they are at hand.
    /// \param every where the thread reads every record that is not there; nothing where all are.
    void Fit(const ModelState &state, const ModelState &here, const std::optional<ScanSource> &every);
    /// The state is wanted, and its records are not here yet: there is no fit, and no component.
    void Await(const ModelState &state);
    /// Reads the records again.
    void FitAgain();
    /// Ends what is under way in the background; there is no fit then.
    void Stop();

    bool IsReading() const { return reading_; }
    /// Whether the last thing that came of a state is that the looking for its first records was ended.
    bool WasStopped() const { return stopped_; }
    const ModelState &State() const { return state_; }
    /// The state as another component opens it without waiting, and where that reads every record; nothing where all
    /// are there.
    const ModelState &Here() const { return here_; }
    const std::optional<ScanSource> &Every() const { return every_; }
    /// The component of the last state, with its fit where that came out; null before a state with data.
    TRegression *Regression() const;
    /// Whether the component holds the fit of the state.
    bool HasFit() const;
    /// Why there is no fit; empty where there is one, or nothing was asked for.
    const QString &Why() const { return why_; }

Q_SIGNALS:
    /// Reading in the background has begun.
    void Started();
    /// How much of it is done, in percent.
    void Progressed(int percentage);
    /// A fit came out, or none did: HasFit(), Why().
    void Ended();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    class Listening;
    struct Looking;

    template <class Component>
    void Make(std::unique_ptr<Component> &component);
    void Begin(bool anew);
    void Settle();
    void ReadingEnded();
    void Look();
    void Found(const std::shared_ptr<Looking> &looking);
    bool EndLooking();

    const std::unique_ptr<Listening> listening_;
    ModelState state_;
    ModelState here_; ///< state_ with the place that its records are read from
    std::optional<ScanSource> every_;
    std::unique_ptr<TMLRTable> table_;
    std::unique_ptr<TMLRQuery> query_;
    std::shared_ptr<Looking> looking_; ///< for first records that lie far back
    int timer_ = 0;                    ///< while that is under way
    bool reading_ = false;
    bool stopped_ = false;
    QString why_;
};

} // namespace nuvo
