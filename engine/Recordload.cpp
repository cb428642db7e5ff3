// SPDX-License-Identifier: MIT
#include "engine/Recordload.h"

#include "engine/Termreader.h"
#include "platform/Dataset.h"

#include <QString>

#include <algorithm>
#include <utility>

namespace nuvo {

namespace {

/// No window.
class NoProgress : public Progress
{
public:
    void Show() override {}
    bool Shown() const override { return false; }
    void SetGaugeProgress(unsigned short) override {}
    void SetGaugeText(const QString &) override {}
    bool Stopped() const override { return false; }
};

/// Of observation n, counted from 0, of those that have some.
void addLowParts(std::vector<TermReader> &terms, TermReader &response, ObservationBuffer &buffer, int n)
{
    if (response.HasLowPart())
        buffer.yLow.push_back(response.LowPart(buffer.y[n]));
    for (std::size_t j = 0; j < terms.size(); ++j) {
        if (terms[j].HasLowPart())
            buffer.xLow[j].push_back(terms[j].LowPart(buffer.x[j][n]));
    }
}

} // namespace

std::shared_ptr<ObservationBuffer> RecordLoad::freeBuffer()
{
    // One with the observations of the moment, one with those that the last fit is of, one to load into.
    constexpr std::size_t kept = 3;
    for (const std::shared_ptr<ObservationBuffer> &buffer : buffers_) {
        if (buffer.use_count() == 1)
            return buffer;
    }
    if (buffers_.size() == kept)
        buffers_.erase(buffers_.begin());
    return buffers_.emplace_back(std::make_shared<ObservationBuffer>());
}

std::optional<LoadedRecords> RecordLoad::load(const ModelDefinitions &definitions, const LoadWatch &watch)
{
    Progress &progress = watch.progress;
    TDataSet &dataset = dataset_;
    LoadedRecords loaded;
    dataset.First();
    progress.SetGaugeProgress(0);
    if (watch.owner.expired())
        return {};
    progress.SetGaugeText(QStringLiteral("Records Loaded: 0"));
    if (watch.owner.expired())
        return {};
    // Asked whenever events may have run.
    const auto goesOn = [&] {
        if (watch.owner.expired())
            return false;
        loaded.stopped = progress.Stopped();
        return true;
    };
    qint64 records = 0;
    if (watch.show) {
        records = dataset.RecordCount();
        progress.Show();
        if (!goesOn())
            return {};
    }

    const std::shared_ptr<ObservationBuffer> buffer = freeBuffer();
    std::vector<TermReader> terms;
    terms.reserve(definitions.columns.size());
    for (const TIndepVar &column : definitions.columns)
        terms.emplace_back(column, dataset);
    TermReader response(definitions.response, dataset);

    buffer->yLow.clear();
    for (std::vector<double> &low : buffer->xLow)
        low.clear();
    const bool lowParts =
        response.HasLowPart() ||
        std::any_of(terms.begin(), terms.end(), [](const TermReader &term) { return term.HasLowPart(); });
    LeftOutCount leftOut(terms.size());
    int n = 0;
    qint64 read = 0;
    while (!loaded.stopped && !dataset.Eof() && n < MaxObservations) {
        ++read;
        const bool valid = std::all_of(terms.begin(), terms.end(), [](TermReader &term) { return term.Valid(); }) &&
                           response.Valid();
        if (valid) {
            buffer->y[n] = response.Value();
            for (std::size_t j = 0; j < terms.size(); ++j)
                buffer->x[j][n] = terms[j].Value();
            if (lowParts)
                addLowParts(terms, response, *buffer, n);
            buffer->record[n] = read;
            ++n;
            if (watch.show) {
                const double percentage = double(n) * 100 / double(records);
                progress.SetGaugeProgress(static_cast<unsigned short>(std::clamp(percentage, 0.0, 100.0)));
                if (watch.owner.expired())
                    return {};
                progress.SetGaugeText(QStringLiteral("Records Loaded: ") + QString::number(n));
                if (!goesOn())
                    return {};
            }
        } else {
            leftOut.add(terms, response, read);
        }
        dataset.Next();
    }
    loaded.observations = Observations(buffer, n, int(terms.size()));
    loaded.read = read;
    loaded.more = !dataset.Eof();
    loaded.leftOut = leftOut.counts();
    return loaded;
}

LoadedRecords RecordLoad::load(const ModelDefinitions &definitions)
{
    NoProgress progress;
    const auto owner = std::make_shared<bool>();
    return *load(definitions, {progress, false, owner});
}

} // namespace nuvo
