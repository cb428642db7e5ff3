// SPDX-License-Identifier: MIT
#include "engine/Blockterms.h"
#include "engine/Recordscan.h"
#include "engine/Regression.h"
#include "engine/Regressionprivate.h"
#include "engine/Serversums.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Messages.h"

#include <QApplication>
#include <QEventLoop>

#include <algorithm>
#include <atomic>

// A load of every record: by a reader in a thread of its own, which the component waits for or not.

namespace {

/// How often a progress dialog is told.
constexpr int pace = 50; // ms

/// A dialog that paints runs events, and one of them can be the end of the component, or of the load. False then, and
/// it is told no more.
bool tell(nuvo::Progress &progress, const nuvo::Reading &reading, const std::weak_ptr<bool> &owner)
{
    const double share = reading.reader().share();
    progress.SetGaugeProgress(share < 0 ? 0 : static_cast<unsigned short>(100 * std::min(share, 1.0)));
    if (owner.expired())
        return false;
    progress.SetGaugeText(QStringLiteral("Records Read: ") + QString::number(reading.reader().records()));
    return !owner.expired();
}

/// The server where there is one that can add up, else a scan. Which it is takes a connection to know.
class ServerOrScan : public nuvo::RecordReader
{
public:
    explicit ServerOrScan(const nuvo::RecordRequest &request)
        : databaseName_(request.source.databaseName), server_(request), scan_(request)
    {
    }

    std::optional<nuvo::RecordSums> read() override
    {
        reader_ = nuvo::addsUp(databaseName_) ? static_cast<nuvo::RecordReader *>(&server_) : &scan_;
        return reader_.load()->read();
    }
    void cancel() override
    {
        server_.cancel();
        scan_.cancel();
    }
    qint64 records() const override { return reader_.load()->records(); }
    double share() const override { return reader_.load()->share(); }

private:
    const QString databaseName_;
    nuvo::ServerReader server_;
    nuvo::RecordScan scan_;
    std::atomic<nuvo::RecordReader *> reader_{&scan_};
};

std::unique_ptr<nuvo::RecordReader> makeReader(nuvo::RecordUse use, nuvo::RecordRequest request)
{
    if (use == nuvo::RecordUse::Server)
        return std::make_unique<ServerOrScan>(request);
    return std::make_unique<nuvo::RecordScan>(std::move(request));
}

} // namespace

TRegression::Private::~Private()
{
    // Whoever waits in ReLoad() keeps the reading; the thread has to end before this goes, which it reports to.
    if (reading) {
        reading->cancel();
        reading->wait();
    }
}

nuvo::RecordUse TRegression::UseOfRecords() const
{
    return d->use;
}

void TRegression::SetUseOfRecords(nuvo::RecordUse use)
{
    RefuseWhileBusy();
    if (use == d->use)
        return;
    d->use = use;
    d->every.reset();
    d->forgetLoad();
}

/// What the last reading knows of the next load, in a series: there the rows stay those of its beginning.
std::shared_ptr<nuvo::EveryRecord> TRegression::Private::known(std::size_t count) const
{
    const bool serves = inSeries && every && every->use == use && every->opening == dataset.Opening() &&
                        every->records->knows(dataset.Source(), nextDefinitions(count));
    return serves ? every->records : nullptr;
}

/// A series asks for the terms that it began with, so that one reading serves all its loads.
nuvo::RecordRequest TRegression::Private::requestFor(std::size_t count)
{
    nuvo::RecordRequest request;
    request.source = dataset.Source();
    request.response = response;
    request.columns.assign(nextColumns.begin(), nextColumns.begin() + std::ptrdiff_t(count));
    request.onlyAllColumns = !inSeries;
    if (inSeries && nuvo::placesAmong(seriesTerms, request.columns))
        request.columns = seriesTerms;
    // A dataset that was never to be open, or has no such field, says so itself.
    static_cast<void>(dataset.Eof());
    const QStringList fields = nuvo::BlockTerms(request.columns, request.response).fields();
    for (const QString &field : fields)
        dataset.FieldByName(field);
    return request;
}

bool TRegression::Private::loadEvery()
{
    const std::weak_ptr<bool> owner = alive;
    {
        const Busy guard(*this);
        resultsCurrent = false;
        loadStopped = false;
        const std::size_t count = chooseColumns();
        if (!known(count)) {
            every.reset();
            nuvo::RecordRequest request = requestFor(count);
            std::optional<nuvo::RecordSums> sums = readNow(request);
            if (owner.expired())
                return false;
            loadStopped = !sums;
            if (sums)
                every = {use, dataset.Opening(),
                         std::make_shared<nuvo::EveryRecord>(std::move(request), std::move(*sums))};
        }
        if (every)
            settleEvery(count);
        if (owner.expired())
            return false;
    }
    const bool result = loaded;
    q.NotifyLoaded();
    return result;
}

void TRegression::Private::settleEvery(std::size_t count)
{
    settleLoad(every->records->load(nextDefinitions(count)), count);
}

std::optional<nuvo::RecordSums> TRegression::Private::readNow(nuvo::RecordRequest request)
{
    const std::weak_ptr<bool> owner = alive;
    if (QCoreApplication::instance() == nullptr) {
        nuvo::Reading alone(makeReader(use, std::move(request)), [] {});
        return alone.take();
    }
    const std::unique_ptr<nuvo::Progress> progress = showLoadProgress ? q.MakeLoadProgress() : nullptr;
    QObject here;
    QEventLoop loop;
    bool ended = false;
    const auto own = std::make_shared<nuvo::Reading>(makeReader(use, std::move(request)), [&] {
        QMetaObject::invokeMethod(
            &here,
            [&] {
                ended = true;
                loop.quit();
            },
            Qt::QueuedConnection);
    });
    reading = own;
    QTimer timer;
    if (progress) {
        if (tell(*progress, *own, owner))
            progress->Show();
        QObject::connect(&timer, &QTimer::timeout, &here, [&] {
            if (!owner.expired() && tell(*progress, *own, owner) && progress->Stopped())
                own->cancel();
        });
        timer.start(pace);
    }
    // Keys and clicks are for the dialog that is shown, this or another one.
    const bool dialog = qobject_cast<QApplication *>(qApp) != nullptr && QApplication::activeModalWidget() != nullptr;
    if (!owner.expired() && !ended)
        loop.exec(dialog ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    // The application ends, or the component did.
    if (!ended)
        own->cancel();
    own->wait();
    if (owner.expired())
        return {};
    reading.reset();
    return own->take();
}

void TRegression::StartReLoad()
{
    if (d->use == nuvo::RecordUse::First) {
        ReLoad();
        return;
    }
    RefuseWhileBusy();
    d->loaded = false;
    d->startReading();
}

void TRegression::Private::startReading()
{
    resultsCurrent = false;
    loadStopped = false;
    auto begun = std::make_unique<Started>();
    begun->columns = chooseColumns();
    begun->request = requestFor(begun->columns);
    every.reset();
    if (showLoadProgress) {
        begun->progress = q.MakeLoadProgress();
        begun->timer = new QTimer(&dataset);
        QObject::connect(begun->timer, &QTimer::timeout, &dataset, [this] {
            const std::weak_ptr<bool> owner = alive;
            const std::shared_ptr<nuvo::Reading> own = reading;
            const std::shared_ptr<nuvo::Progress> progress = started->progress;
            if (!tell(*progress, *own, owner) || reading != own)
                return;
            if (!std::exchange(started->shown, true))
                progress->Show();
            if (!owner.expired() && progress->Stopped())
                own->cancel();
        });
        begun->timer->start(pace);
    }
    const int number = ++readings;
    reading = std::make_shared<nuvo::Reading>(makeReader(use, begun->request), [this, number] {
        QMetaObject::invokeMethod(
            &dataset,
            [this, number] {
                if (started && number == readings)
                    endReading();
            },
            Qt::QueuedConnection);
    });
    started = std::move(begun);
    ++busy;
}

void TRegression::Private::endReading()
{
    const std::weak_ptr<bool> owner = alive;
    const std::unique_ptr<Started> begun = std::move(started);
    const std::shared_ptr<nuvo::Reading> own = std::exchange(reading, nullptr);
    if (begun->timer) {
        begun->timer->stop();
        begun->timer->deleteLater(); // this may be its own call
    }
    QString error;
    try {
        std::optional<nuvo::RecordSums> sums = own->take();
        loadStopped = !sums;
        if (sums) {
            every = {use, dataset.Opening(),
                     std::make_shared<nuvo::EveryRecord>(std::move(begun->request), std::move(*sums))};
            settleEvery(begun->columns);
        }
    } catch (const EPlatformError &failed) {
        error = failed.Message();
    }
    if (owner.expired())
        return;
    if (begun->progress)
        begun->progress->Close();
    if (!error.isEmpty())
        MessageDlg(error, TMsgDlgType::mtError);
    if (owner.expired())
        return;
    --busy;
    q.NotifyLoaded();
}

void TRegression::StopLoad()
{
    if (!d->reading)
        return;
    d->reading->cancel();
    if (d->started) {
        d->reading->wait();
        d->endReading();
    }
}
