// SPDX-License-Identifier: MIT
#include "engine/Regressionprivate.h"
#include "platform/Dataset.h"

TRegression::Private::Busy::Busy(Private &regression) : regression_(regression), alive_(regression.alive)
{
    ++regression_.busy;
    regression_.dataset.DisableControls();
}

TRegression::Private::Busy::~Busy()
{
    EnableControls();
    if (Alive())
        --regression_.busy;
}

void TRegression::Private::Busy::EnableControls()
{
    if (Alive() && std::exchange(disabled_, false))
        regression_.dataset.EnableControls();
}

class TRegression::Series::Private
{
public:
    explicit Private(TRegression &component)
        : q(component), regression(*component.d), busy(regression), controls(regression.controls),
          showLoadProgress(std::exchange(regression.showLoadProgress, false)),
          showWarnings(std::exchange(regression.showWarnings, false)), cacheBefore(regression.cache)
    {
        if (!cacheBefore)
            q.SetColumnCache(std::make_shared<nuvo::ColumnCache>(regression.dataset, regression.controls));
        const std::size_t count = regression.chooseColumns();
        regression.seriesTerms.assign(regression.nextColumns.begin(),
                                      regression.nextColumns.begin() + std::ptrdiff_t(count));
        regression.inSeries = true;
    }

    void dropCache()
    {
        if (busy.Alive() && !cacheBefore)
            q.SetColumnCache(nullptr);
    }

    TRegression &q;
    TRegression::Private &regression;
    TRegression::Private::Busy busy;
    const std::array<TIndepVar, MaxControls> controls;
    const bool showLoadProgress;
    const bool showWarnings;
    const std::shared_ptr<nuvo::ColumnCache> cacheBefore;
};

TRegression::Series::Series(TRegression &regression)
{
    regression.RefuseWhileBusy();
    d_ = std::make_unique<Private>(regression);
}

TRegression::Series::~Series()
{
    if (!Alive())
        return;
    d_->regression.showLoadProgress = d_->showLoadProgress;
    d_->regression.showWarnings = d_->showWarnings;
    d_->regression.inSeries = false;
    d_->dropCache();
}

bool TRegression::Series::Alive() const
{
    return d_->busy.Alive();
}

bool TRegression::Series::ReLoad()
{
    d_->regression.loaded = false;
    return d_->regression.load();
}

void TRegression::Series::Execute()
{
    d_->regression.fit();
}

const nuvo::Observations &TRegression::Series::Observed() const
{
    return d_->regression.observed;
}

nuvo::Sums TRegression::Series::Sums() const
{
    const TRegression::Private &regression = d_->regression;
    return regression.totals ? regression.totals->sums : nuvo::sumsOf(regression.observed);
}

std::vector<nuvo::LeftOut> TRegression::Series::LeftOut()
{
    return d_->regression.namedLeftOut();
}

bool TRegression::Series::KeepColumns(std::span<const int> columns)
{
    TRegression::Private &regression = d_->regression;
    regression.keepColumns(columns);
    const bool observed = Alive() && regression.observed.n() > 0;
    const bool varies = observed && !regression.q.InvariantCol();
    if (Alive())
        regression.loaded = varies;
    return varies && Alive();
}

void TRegression::Private::keepColumns(std::span<const int> numbers)
{
    observed = observed.only(numbers);
    if (totals)
        totals = std::make_shared<const nuvo::RecordTotals>(totals->ofColumns(numbers));
    m = int(numbers.size());
    // Ascending, so that nothing is overwritten that is still needed.
    for (std::size_t j = 0; j < numbers.size(); ++j) {
        const std::size_t from = std::size_t(numbers[j]);
        columns[j].Assign(columns[from - 1]);
        if (!leftOut.empty())
            leftOut[j + 1] = leftOut[from];
    }
    if (!leftOut.empty())
        leftOut.resize(numbers.size() + 1);
    setDegreesOfFreedom();
}

void TRegression::Series::RestoreDefinitions()
{
    d_->regression.controls = d_->controls;
}

void TRegression::Series::Restore()
{
    if (!Alive())
        return;
    RestoreDefinitions();
    bool fitted = false;
    try {
        if (ReLoad() && Alive()) {
            Execute();
            fitted = true;
        }
    } catch (...) {
        // Whatever made the restoring necessary can stand in its way as well.
        fitted = false;
    }
    if (!fitted && Alive())
        d_->regression.forgetLoad();
}

void TRegression::Series::EnableControls()
{
    d_->dropCache(); // puts the dataset where the controls are to follow
    d_->busy.EnableControls();
}
