// SPDX-License-Identifier: MIT
#include "select/Selectionrun.h"

#include "engine/Leftout.h"
#include "engine/Sums.h"
#include "platform/Formats.h"
#include "platform/Messages.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuvo {

Q_LOGGING_CATEGORY(selectionLog, "nuvo.select", QtInfoMsg)

class SelectionRun::Hourglass
{
public:
    Hourglass() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    Hourglass(const Hourglass &) = delete;
    Hourglass &operator=(const Hourglass &) = delete;
    ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
};

/// Marks the selection component as running, for as long as there is one.
class SelectionRun::Running
{
public:
    explicit Running(TCorvane &selector) : selector_(&selector)
    {
        selector.RefuseWhileRunning();
        selector.running_ = true;
    }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;
    ~Running()
    {
        if (selector_)
            selector_->running_ = false;
    }

private:
    QPointer<TCorvane> selector_;
};

void SelectionRun::perform(TCorvane &selector, TRegression &regression, const Options &options, const Search &search)
{
    const QPointer<TCorvane> alive = &selector;
    SelectionRun(selector, regression, options).run(search);
    if (alive)
        Q_EMIT selector.Finished();
}

SelectionRun::SelectionRun(TCorvane &selector, TRegression &regression, const Options &options)
    : options_(options), selector_(&selector), regression_(regression), running_(std::make_unique<Running>(selector)),
      series_(regression)
{
    clock_.start();
    selector.report_.clear();
    selector.steps_.clear();
    selector.choice_ = nullptr;
    selector.ended_ = TRunEnd::Stopped;
}

void SelectionRun::run(const Search &search)
{
    try {
        try {
            progress_ = selector_->MakeProgress();
            if (options_.showProgress)
                show();
            else
                hourglass_ = std::make_unique<Hourglass>();
            search(*this);
            write(processingTimeLine(elapsed));
        } catch (const Stopped &) {
            undo();
            check();
            ended = TRunEnd::Stopped;
            writeHead();
            write(QStringLiteral("Stopped by the user."));
        } catch (...) {
            undo();
            throw;
        }
        conclude();
    } catch (const Gone &) {
        return; // no component is left to report to
    }
}

void SelectionRun::show()
{
    progress_->Show();
    check();
    progress_->Repaint();
    check();
}

SelectionRun::Inner::Inner(SelectionRun &run)
    : run_(run), outer_(std::exchange(run.progress_, run.selector_->MakeProgress()))
{
    if (!run_.options_.showProgress)
        return;
    try {
        run_.show();
    } catch (...) {
        run_.progress_ = std::move(outer_);
        throw;
    }
}

SelectionRun::Inner::~Inner()
{
    run_.progress_->Close();
    run_.stopAsked_ = run_.stopAsked_ || run_.progress_->Stopped();
    run_.progress_ = std::move(outer_);
}

void SelectionRun::undo()
{
    if (progress_)
        progress_->Close();
    series_.Restore();
}

void SelectionRun::conclude()
{
    static constexpr const char *Reasons[] = {"converged", "repeats", "stopped"};
    qCDebug(selectionLog).noquote() << QStringLiteral("end reason=%1 passes=%2 controls=%3")
                                           .arg(QLatin1String(Reasons[int(ended)]))
                                           .arg(passes)
                                           .arg(regression_.GetNumVars());
    selector_->report_ = choice ? QString() : report_; // that of a choice is made when somebody asks
    selector_->ended_ = ended;
    selector_->choice_ = ended == TRunEnd::Stopped ? nullptr : choice;
    series_.EnableControls();
    check();
    if (ended == TRunEnd::Repeats) {
        MessageDlg(QStringLiteral("The search came back to a model that it had already been at and was ended."),
                   TMsgDlgType::mtWarning);
        check();
    }
    if (options_.showReport)
        MessageDlg(selector_->Summary(), TMsgDlgType::mtInformation);
}

void SelectionRun::check() const
{
    if (selector_.isNull() || !series_.Alive())
        throw Gone();
}

void SelectionRun::start(int variables)
{
    qCDebug(selectionLog).noquote()
        << QStringLiteral("start method=%1 variables=%2").arg(QLatin1String(options_.method)).arg(variables);
}

void SelectionRun::beginCandidate()
{
    if (stopAsked_ || progress_->Stopped())
        throw Stopped();
}

bool SelectionRun::reload()
{
    const bool loaded = series_.ReLoad();
    check();
    if (regression_.LoadStopped())
        throw Stopped();
    return loaded;
}

bool SelectionRun::reloadAndExecute()
{
    if (!reload())
        return false;
    execute();
    return true;
}

void SelectionRun::execute()
{
    series_.Execute();
    check();
}

Sums SelectionRun::sums() const
{
    return series_.Sums();
}

std::vector<LeftOut> SelectionRun::leftOut()
{
    std::vector<LeftOut> counts = series_.LeftOut();
    check();
    return counts;
}

bool SelectionRun::keepColumns(std::span<const int> columns)
{
    const bool loaded = series_.KeepColumns(columns);
    check();
    return loaded;
}

QString reportHead(const QString &description)
{
    return QStringLiteral("CORVANE OUTPUT REPORT\n\r") + description + QStringLiteral("\n\r\n\r");
}

QString processingTimeLine(double days)
{
    return QStringLiteral("\n\r\n\rProcessing Time: ") + FormatTime(days);
}

void SelectionRun::writeHead()
{
    // It stays the same throughout: while a run is under way nobody can write the description.
    if (head_.isEmpty())
        head_ = reportHead(regression_.Description());
    report_ = head_;
}

void SelectionRun::step(const QString &text)
{
    selector_->steps_.append(text);
    progress_->SetGaugeText(text);
    check();
}

void SelectionRun::progress(double percentage)
{
    const double shown = std::isfinite(percentage) ? std::clamp(percentage, 0.0, 100.0) : 100.0;
    progress_->SetGaugeProgress(static_cast<unsigned short>(shown));
    check();
}

} // namespace nuvo
