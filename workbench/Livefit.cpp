// SPDX-License-Identifier: MIT
#include "workbench/Livefit.h"

#include "engine/Leftout.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "workbench/Language.h"

#include <QApplication>
#include <QLocale>

#include <functional>

namespace nuvo {

namespace {

/// How far a read of every record is, without a dialog.
class QuietProgress : public Progress
{
public:
    explicit QuietProgress(std::function<void(int)> tell) : tell_(std::move(tell)) {}

    void Show() override {}
    void SetGaugeProgress(unsigned short progress) override { tell_(progress); }
    void SetGaugeText(const QString &) override {}
    bool Stopped() const override { return false; }

private:
    const std::function<void(int)> tell_;
};

/// A component that tells how far it is through the fit that it belongs to. Its dataset, which the window waits for,
/// may have the first records alone; the thread that reads every record goes to where they are.
template <class Component>
class Live : public Component
{
public:
    Live(std::function<void(int)> tell, const std::optional<ScanSource> &every)
        : tell_(std::move(tell)), every_(every)
    {
    }

    ScanSource Source() const override { return every_ ? *every_ : Component::Source(); }

protected:
    std::unique_ptr<Progress> MakeLoadProgress() override { return std::make_unique<QuietProgress>(tell_); }

private:
    const std::function<void(int)> tell_;
    const std::optional<ScanSource> &every_;
};

/// Why no record of a load could be used.
QString whyNothing(TRegression &regression)
{
    QStringList reasons;
    for (const LeftOut &left : regression.LeftOut()) {
        if (left.null > 0)
            reasons.append(
                LiveFit::tr("%1 is null in %2", "a term and a number of records").arg(left.term).arg(left.null));
        if (left.invalid > 0)
            reasons.append(LiveFit::tr("%1 cannot be worked out in %2", "a term and a number of records")
                               .arg(left.term)
                               .arg(left.invalid));
    }
    const qint64 read = regression.RecordsRead();
    if (read == 0)
        return LiveFit::tr("There are no records.");
    const QString number = QLocale().toString(read);
    return reasons.isEmpty() ? LiveFit::tr("None of the %1 records can be used.", nullptr, numerus(read)).arg(number)
                             : LiveFit::tr("None of the %1 records can be used: %2.", nullptr, numerus(read))
                                   .arg(number, reasons.join(QLatin1String(", ")));
}

} // namespace

/// Collects what the components say instead of showing it. While records are read in the background it hears what
/// comes when no dialog is open, which is theirs.
class LiveFit::Listening
{
public:
    explicit Listening(LiveFit &fit) : fit_(fit)
    {
        before_ = SetMessageHandler([this](const QString &text, TMsgDlgType type, unsigned buttons, int help) {
            if (!(calls > 0 || (fit_.reading_ && QApplication::activeModalWidget() == nullptr)))
                return before_ ? before_(text, type, buttons, help) : showMessageBox(text, type, buttons);
            said.append(DisplayLines(text).simplified());
            return int(mrOk);
        });
    }
    Listening(const Listening &) = delete;
    Listening &operator=(const Listening &) = delete;
    ~Listening() { SetMessageHandler(before_); }

    int calls = 0;
    QStringList said;

private:
    LiveFit &fit_;
    TMessageHandler before_;
};

LiveFit::LiveFit(QObject *parent) : QObject(parent), listening_(std::make_unique<Listening>(*this)) {}

LiveFit::~LiveFit()
{
    table_.reset();
    query_.reset();
}

TRegression *LiveFit::Regression() const
{
    if (!here_.hasData())
        return nullptr;
    return here_.isQuery() ? static_cast<TRegression *>(query_.get()) : table_.get();
}

bool LiveFit::HasFit() const
{
    const TRegression *const regression = Regression();
    return !reading_ && why_.isEmpty() && regression != nullptr && regression->ResultsCurrent();
}

template <class Component>
void LiveFit::Make(std::unique_ptr<Component> &component)
{
    if (component)
        return;
    component = std::make_unique<Live<Component>>([this](int percentage) { Q_EMIT Progressed(percentage); }, every_);
    component->SetShowWarnings(false);
    connect(component.get(), &Component::LoadEnded, this, [this] {
        if (reading_)
            ReadingEnded();
    });
}

void LiveFit::Await(const ModelState &state)
{
    Stop();
    state_ = state;
    here_ = {};
    every_.reset();
    why_.clear();
    Q_EMIT Ended();
}

void LiveFit::Fit(const ModelState &state, const ModelState &here, const std::optional<ScanSource> &every)
{
    Stop();
    state_ = state;
    here_ = here;
    every_ = every;
    why_.clear();
    if (!here_.hasData()) {
        Q_EMIT Ended();
        return;
    }
    if (here_.isQuery())
        Make(query_);
    else
        Make(table_);
    Begin(false);
}

void LiveFit::FitAgain()
{
    Stop();
    why_.clear();
    if (here_.hasData())
        Begin(true);
}

void LiveFit::Begin(bool anew)
{
    ++listening_->calls;
    listening_->said.clear();
    try {
        TRegression &regression = *Regression();
        apply(here_, regression);
        TDataSet &dataset = regression.DataSet();
        if (anew && dataset.Active())
            dataset.Refresh();
        else
            dataset.Open();
        if (here_.isFittable()) {
            const bool background = here_.records != RecordUse::First;
            regression.SetShowLoadProgress(background);
            if (background) {
                regression.StartReLoad();
                reading_ = true;
            } else {
                regression.ReLoad();
                Settle();
            }
        }
    } catch (const EPlatformError &error) {
        why_ = error.Message();
    }
    --listening_->calls;
    if (reading_)
        Q_EMIT Started();
    else
        Q_EMIT Ended();
}

void LiveFit::Settle()
{
    TRegression &regression = *Regression();
    if (regression.Loaded())
        regression.Execute();
    if (regression.ResultsCurrent())
        return;
    if (regression.LoadStopped())
        why_ = tr("The reading was stopped.");
    else if (!listening_->said.isEmpty() && regression.RecordsRead() > 0)
        why_ = listening_->said.join(u' ');
    else
        why_ = whyNothing(regression);
}

void LiveFit::ReadingEnded()
{
    reading_ = false;
    ++listening_->calls;
    try {
        Settle();
    } catch (const EPlatformError &error) {
        why_ = error.Message();
    }
    --listening_->calls;
    Q_EMIT Ended();
}

void LiveFit::Stop()
{
    if (reading_)
        Regression()->StopLoad();
}

} // namespace nuvo
