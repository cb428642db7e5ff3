// SPDX-License-Identifier: MIT
#include "workbench/Livefit.h"

#include "engine/Columncache.h"
#include "engine/Firstrecords.h"
#include "engine/Leftout.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "workbench/Background.h"
#include "workbench/Elsewhere.h"
#include "workbench/Language.h"

#include <QApplication>
#include <QFileInfo>
#include <QLocale>
#include <QPointer>

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

/// A component that tells how far it is through the fit that it belongs to.
template <class Component>
class Live : public Elsewhere<Component>
{
public:
    Live(std::function<void(int)> tell, const std::optional<ScanSource> &every)
        : Elsewhere<Component>(every), tell_(std::move(tell))
    {
    }

protected:
    std::unique_ptr<Progress> MakeLoadProgress() override { return std::make_unique<QuietProgress>(tell_); }

private:
    const std::function<void(int)> tell_;
};

constexpr qint64 kLargeFile = 512 * 1024; // bytes: of a smaller one nobody notices that all of it is read
constexpr qint64 kAtOnce = 8192;          // records: likewise
constexpr int kPace = 50;                 // milliseconds

RecordRequest requestOf(TRegression &regression)
{
    RecordRequest request;
    request.source = regression.DataSet().Source();
    request.response = regression.ResponseVarY();
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (regression.ControlVar(place).Transformation() != u"Undefined")
            request.columns.push_back(regression.ControlVar(place));
    }
    return request;
}

/// Whether the first records that can be used lie so far back that looking for them keeps a window waiting.
bool areFarBack(const RecordRequest &request)
{
    if (request.source.table.isEmpty() || QFileInfo(request.source.databaseName).size() < kLargeFile)
        return false;
    try {
        return !FirstRecords(request).load(kAtOnce);
    } catch (const EPlatformError &) {
        return false; // the load says so itself
    }
}

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

/// The first records, looked for in a thread.
struct LiveFit::Looking
{
    explicit Looking(const RecordRequest &request) : records(request) {}

    FirstRecords records;
    std::optional<LoadedRecords> loaded;
    QString error;
};

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
    EndLooking();
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
    stopped_ = false;
    why_.clear();
    Q_EMIT Ended();
}

void LiveFit::Fit(const ModelState &state, const ModelState &here, const std::optional<ScanSource> &every)
{
    Stop();
    state_ = state;
    here_ = here;
    every_ = every;
    stopped_ = false;
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
    stopped_ = false;
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
            } else if (areFarBack(requestOf(regression))) {
                Look();
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

void LiveFit::Look()
{
    looking_ = std::make_shared<Looking>(requestOf(*Regression()));
    reading_ = true;
    timer_ = startTimer(kPace);
    inBackground([looking = looking_, here = QPointer(this)] {
        try {
            looking->loaded = looking->records.load();
        } catch (const std::exception &failed) {
            looking->error = QString::fromUtf8(failed.what());
        }
        sayLater([looking, here] {
            if (here)
                here->Found(looking);
        });
    });
}

void LiveFit::timerEvent(QTimerEvent *)
{
    if (looking_ && looking_->records.share() > 0)
        Q_EMIT Progressed(int(100 * looking_->records.share()));
}

void LiveFit::Found(const std::shared_ptr<Looking> &looking)
{
    if (looking != looking_)
        return; // it was stopped
    EndLooking();
    ++listening_->calls;
    try {
        if (looking->loaded) {
            TRegression &regression = *Regression();
            const auto cache = std::make_shared<ColumnCache>(regression.DataSet(), std::span<const TIndepVar>());
            cache->put(*std::move(looking->loaded));
            regression.SetColumnCache(cache);
            regression.ReLoad();
            regression.SetColumnCache(nullptr);
            Settle();
        } else {
            why_ = looking->error;
        }
    } catch (const EPlatformError &error) {
        why_ = error.Message();
    }
    --listening_->calls;
    Q_EMIT Ended();
}

bool LiveFit::EndLooking()
{
    if (!looking_)
        return false;
    looking_->records.cancel();
    looking_.reset();
    killTimer(timer_);
    reading_ = false;
    return true;
}

void LiveFit::Stop()
{
    if (EndLooking()) {
        stopped_ = true;
        why_ = tr("The reading was stopped.");
        Q_EMIT Ended();
    } else if (reading_) {
        Regression()->StopLoad();
    }
}

} // namespace nuvo
