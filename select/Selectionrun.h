// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Progress.h"
#include "engine/Regression.h"
#include "select/Corvane.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QPointer>

#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace nuvo {

/// Traces of selection runs: one line an event, "key=value" parted by blanks, numbers with 17 digits.
Q_DECLARE_LOGGING_CATEGORY(selectionLog)

inline QString traced(double value)
{
    return QString::number(value, 'g', 17);
}

/// How every report begins and ends.
QString reportHead(const QString &description);
QString processingTimeLine(double days);

/// The frame of a run, the same for all searches: it keeps the regression to itself, shows the progress, collects the
/// report, and puts everything back, however the run ends.
///
/// Everything here that can run events of the application ends the search when one of the two components is gone
/// afterwards: it throws past the search to perform().
class SelectionRun
{
public:
    struct Options
    {
        const char *method; ///< what a trace calls it
        bool showProgress;  ///< else the cursor is an hourglass
        bool showReport;
    };
    using Search = std::function<void(SelectionRun &)>;

    /// Calls the search, which leaves the component with the chosen model, closes the progress and completes the
    /// report but for the processing time.
    static void perform(TCorvane &selector, TRegression &regression, const Options &options, const Search &search);

    SelectionRun(const SelectionRun &) = delete;
    SelectionRun &operator=(const SelectionRun &) = delete;

    TRegression &regression() { return regression_; }

    void start(int variables);
    /// Ends the search here when the user has asked for it.
    void beginCandidate();
    bool reload();
    /// Fits where the load came out.
    bool reloadAndExecute();
    void execute();
    /// What the last load found, its sums, and what it left out.
    const Observations &observed() const { return series_.Observed(); }
    Sums sums() const;
    std::vector<LeftOut> leftOut();
    /// Leaves these of the columns that were loaded, over the same records; whether they can be fitted.
    bool keepColumns(std::span<const int> columns);
    /// Gives back the definitions of the beginning.
    void restoreDefinitions() { series_.RestoreDefinitions(); }

    /// The head of the report. Until a candidate was fitted the report is empty.
    void writeHead();
    void write(const QString &text) { report_ += text; }

    /// A step: it is shown and kept.
    void step(const QString &text);
    /// Percentage; 100 stands for one that is no number.
    void progress(double percentage);
    void closeProgress() { progress_->Close(); }
    /// Days, as the progress dialog has it, and since the very beginning.
    double processedTime() const { return progress_->ProcessedTime(); }
    double timeSinceStart() const { return double(clock_.elapsed()) / 86400e3; }

    /// Ends the search when a component is gone. Called after whatever runs events.
    void check() const;

    // What the search says at its end.
    int passes = 0;
    TRunEnd ended = TRunEnd::Converged;
    double elapsed = 0;                   ///< days
    std::shared_ptr<const Choice> choice; ///< under the rule Textbook

    /// While it lives, a second progress in front of the first takes steps and percentages, shown where that one is.
    class Inner
    {
    public:
        explicit Inner(SelectionRun &run);
        Inner(const Inner &) = delete;
        Inner &operator=(const Inner &) = delete;
        ~Inner();

    private:
        SelectionRun &run_;
        std::unique_ptr<Progress> outer_;
    };

private:
    class Hourglass;
    class Running;
    struct Stopped
    {
    };
    struct Gone
    {
    };

    SelectionRun(TCorvane &selector, TRegression &regression, const Options &options);
    void run(const Search &search);
    void show();
    void undo();
    void conclude();

    const Options options_;
    QPointer<TCorvane> selector_;
    TRegression &regression_;
    std::unique_ptr<Running> running_;
    TRegression::Series series_;
    std::unique_ptr<Progress> progress_;
    std::unique_ptr<Hourglass> hourglass_;
    QElapsedTimer clock_;
    QString head_;
    QString report_;
    bool stopAsked_ = false; ///< on a progress that is gone
};

} // namespace nuvo
