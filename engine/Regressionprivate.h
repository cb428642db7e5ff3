// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Columncache.h"
#include "engine/Everyrecord.h"
#include "engine/Fit.h"
#include "engine/Fitfigures.h"
#include "engine/Reading.h"
#include "engine/Recordload.h"
#include "engine/Regression.h"

#include <QTimer>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

/// What a regression component holds: its definitions and flags, the observations of the last load, the last fit, and
/// the figures that its accessors show.
class TRegression::Private
{
public:
    class Busy;

    /// The parts of a fit that wait until somebody asks.
    enum Part { MeansAndDeviations, FittedAndResiduals, Matrices, PartCount };
    /// A fit of which parts are still to be shown.
    struct Unsettled
    {
        std::array<bool, PartCount> due;
        std::shared_ptr<const nuvo::Fit> fit;
    };
    /// The figures as accessors show them. A fit overwrites what it has and leaves the rest of those before: rows of
    /// a larger matrix, residuals of further observations. The steps that a client can take one by one work on these
    /// as well.
    struct Shown
    {
        double e[MaxObservations];
        double yHat[MaxObservations];
        nuvo::Spread spread;
        nuvo::Fit::Matrix covariance;
        nuvo::Fit::Matrix correlation;
    };

    Private(TRegression &regression, TDataSet &source, Form kind) : q(regression), dataset(source), form(kind) {}

    ~Private();

    void forgetLoad();
    bool load();
    void fit();
    /// Makes of the definitions the columns of a load; returns how many these are.
    std::size_t chooseColumns();
    nuvo::ModelDefinitions nextDefinitions(std::size_t count) const
    {
        return {{nextColumns.data(), count}, response};
    }
    /// What was found becomes the component's, with its messages.
    void settleLoad(nuvo::LoadedRecords &&found, std::size_t count);

    // Every record, Everyload.cpp.
    bool loadEvery();
    std::shared_ptr<nuvo::EveryRecord> known(std::size_t count) const;
    nuvo::RecordRequest requestFor(std::size_t count);
    /// Waits with the application's events; empty after a stop, and when the component is gone.
    std::optional<nuvo::RecordSums> readNow(nuvo::RecordRequest request);
    void startReading();
    void endReading();
    void settleEvery(std::size_t count);

    /// False where the records are not there any more. Leaves the dataset where it is.
    bool countLeftOut();
    bool recordsAreThere() const;
    std::vector<nuvo::LeftOut> namedLeftOut();
    void keepColumns(std::span<const int> numbers);
    void setDegreesOfFreedom();
    /// Records that the fit is of.
    qint64 count() const { return totals ? totals->sums.n : observed.n(); }
    qint64 degreesLeft() const { return count() - (m + 1); }
    /// Of the response's multiple that sums of squares are of.
    int exponent() const { return lastFit ? lastFit->responseExponent() : 0; }

    /// Puts off the parts of the fit just made. What it will not overwrite of those before is kept.
    void putOff();
    void settle(Part part);
    const Shown &shownAfter(Part part)
    {
        if (due[part])
            settle(part);
        return *shown;
    }
    void findMeans(nuvo::Spread &found) const;
    void findDeviations(nuvo::Spread &found) const;
    Shown &settled(Part part) { return const_cast<Shown &>(shownAfter(part)); }

    TRegression &q;
    TDataSet &dataset;
    const Form form;
    std::array<TIndepVar, MaxControls> controls;
    TDependentVar response;
    QString description;
    QString reportMessage;
    bool showLoadProgress = false;
    bool showWarnings = false;
    nuvo::RecordUse use = nuvo::RecordUse::First;

    bool loaded = false;
    bool computed = false;
    bool loadStopped = false;
    bool resultsCurrent = false;

    // By the last load.
    int m = 0;
    std::array<TIndepVar, MaxControls> columns; ///< column j at j - 1
    nuvo::Observations observed;
    std::shared_ptr<const nuvo::RecordTotals> totals; ///< of all records, where those observed are a sample
    qint64 recordsRead = 0;
    bool moreRecords = false;           ///< behind those read
    std::optional<qint64> recordsTotal; ///< where every record was read
    TDependentVar loadedResponse;
    qint64 opening = -1;                ///< of the dataset
    std::vector<nuvo::LeftOut> leftOut; ///< empty where it is still to be counted
    qint64 degreesOfFreedom = 0;
    std::array<nuvo::ColumnRange, MaxParameters> xRange{};
    nuvo::ColumnRange yRange;

    nuvo::RecordLoad records{dataset};
    std::array<TIndepVar, MaxControls> nextColumns; ///< of the load under way
    std::shared_ptr<nuvo::ColumnCache> cache;

    /// What the last read of every record left; a series loads from it.
    struct Every
    {
        nuvo::RecordUse use;
        qint64 opening; ///< of the dataset
        std::shared_ptr<nuvo::EveryRecord> records;
    };
    std::optional<Every> every;
    bool inSeries = false;
    std::vector<TIndepVar> seriesTerms;     ///< defined at its beginning
    std::shared_ptr<nuvo::Reading> reading; ///< under way
    /// What StartReLoad() has begun.
    struct Started
    {
        nuvo::RecordRequest request;
        std::size_t columns;
        std::shared_ptr<nuvo::Progress> progress; ///< null where none is shown
        QTimer *timer = nullptr;                  ///< the dataset's
        bool shown = false;
    };
    std::unique_ptr<Started> started;
    int readings = 0; ///< that were started

    std::shared_ptr<const nuvo::Fit> lastFit;
    std::shared_ptr<const nuvo::FitFigures> figures; ///< of the last fit that they were asked of
    // Sums of squares are kept as the fit has them: times 2^(-2 exponent()).
    double sse = 0;
    double ssr = 0;
    double sst = 0;
    double mse = 0;
    int mseExponent = 0;
    double syx = 0;
    double rSquared = 0;
    double f = 0;
    std::unique_ptr<Shown> shown = std::make_unique<Shown>();
    std::vector<Unsettled> unsettled; ///< the oldest first
    std::array<bool, PartCount> due{};

    int busy = 0; ///< loads and series under way
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
};

/// Marks the component as busy, for as long as there is a component.
class TRegression::Private::Busy
{
public:
    explicit Busy(Private &regression);
    Busy(const Busy &) = delete;
    Busy &operator=(const Busy &) = delete;
    ~Busy();

    bool Alive() const { return !alive_.expired(); }
    void EnableControls();

private:
    Private &regression_;
    std::weak_ptr<bool> alive_;
    bool disabled_ = true;
};
