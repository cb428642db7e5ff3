#include "engine/Regression.h"

#include "engine/Columncache.h"
#include "engine/Termreader.h"
#include "engine/kernel/Usablerecords.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"

#include <QCoreApplication>
#include <QStringBuilder>

#include <algorithm>
#include <cmath>
#include <utility>

int MlrMessageDlg(bool show, const QString &message, TMsgDlgType type, unsigned buttons, int helpContext)
{
    return show ? MessageDlg(message, type, buttons, helpContext) : int(mrNone);
}

/// Marks the component as busy, for as long as there is a component.
class TRegression::Busy
{
public:
    explicit Busy(TRegression &regression) : regression_(regression), alive_(regression.alive_)
    {
        ++regression_.busy_;
        regression_.dataset_.DisableControls();
    }
    Busy(const Busy &) = delete;
    Busy &operator=(const Busy &) = delete;
    ~Busy()
    {
        EnableControls();
        if (Alive())
            --regression_.busy_;
    }

    bool Alive() const { return !alive_.expired(); }
    void EnableControls()
    {
        if (Alive() && std::exchange(disabled_, false))
            regression_.dataset_.EnableControls();
    }

private:
    TRegression &regression_;
    std::weak_ptr<bool> alive_;
    bool disabled_ = true;
};

class TRegression::Series::Private
{
public:
    explicit Private(TRegression &regression)
        : q(regression), busy(regression), controls(regression.controls_),
          showLoadProgress(std::exchange(regression.showLoadProgress_, false)),
          showWarnings(std::exchange(regression.showWarnings_, false)),
          cache(std::make_unique<nuvo::ColumnCache>(regression))
    {
    }

    TRegression &q;
    Busy busy;
    const std::array<TIndepVar, MaxControls> controls;
    const bool showLoadProgress;
    const bool showWarnings;
    std::unique_ptr<nuvo::ColumnCache> cache;
};

TRegression::TRegression(TDataSet &dataset, Form form)
    : dataset_(dataset), form_(form), buffer_(std::make_unique<Buffer>()), results_(std::make_unique<Results>())
{
    ObserveBuffer();
}

TRegression::~TRegression() = default;

void TRegression::RefuseWhileBusy() const
{
    if (busy_)
        throw EDatabaseError(QCoreApplication::translate("TRegression",
                                                         "The %1 is being loaded or fitted; it cannot be "
                                                         "changed, loaded or fitted before that has ended.")
                                 .arg(dataset_.Caption()));
}

TRegression::Series::Series(TRegression &regression)
{
    regression.RefuseWhileBusy();
    d_ = std::make_unique<Private>(regression);
}

TRegression::Series::~Series()
{
    if (!Alive())
        return;
    d_->q.showLoadProgress_ = d_->showLoadProgress;
    d_->q.showWarnings_ = d_->showWarnings;
}

bool TRegression::Series::Alive() const
{
    return d_->busy.Alive();
}

bool TRegression::Series::ReLoad()
{
    d_->q.loaded_ = false;
    return d_->q.Load();
}

void TRegression::Series::Execute()
{
    d_->q.Fit();
}

void TRegression::Series::RestoreDefinitions()
{
    d_->q.controls_ = d_->controls;
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
        d_->q.ForgetLoad();
}

void TRegression::Series::EnableControls()
{
    d_->cache.reset(); // puts the dataset where the controls are to follow
    d_->busy.EnableControls();
}

void TRegression::ForgetLoad()
{
    loaded_ = false;
    computed_ = false;
    resultsCurrent_ = false;
}

void TRegression::SetControl(int k, const TIndepVar &definition)
{
    RefuseWhileBusy();
    controls_[k - 1].Assign(definition);
    ForgetLoad();
}

void TRegression::SetResponse(const TDependentVar &definition)
{
    RefuseWhileBusy();
    response_.Assign(definition);
    ForgetLoad();
}

void TRegression::SetShowLoadProgress(bool show)
{
    RefuseWhileBusy();
    showLoadProgress_ = show;
}

void TRegression::SetShowWarnings(bool show)
{
    RefuseWhileBusy();
    showWarnings_ = show;
}

void TRegression::SetControlStrings(int k, const QStringList &strings)
{
    TIndepVar definition;
    definition.AssignRepaired(strings);
    SetControl(k, definition);
}

void TRegression::SetResponseStrings(const QStringList &strings)
{
    TDependentVar definition;
    definition.AssignRepaired(strings);
    SetResponse(definition);
}

bool TRegression::ReLoad()
{
    RefuseWhileBusy();
    loaded_ = false;
    return Load();
}

void TRegression::Execute()
{
    RefuseWhileBusy();
    Fit();
}

void TRegression::Fit()
{
    if (!loaded_) {
        MlrMessageDlg(showWarnings_,
                      form_ == Form::Table ? QStringLiteral("Table values NOT loaded.")
                                           : QStringLiteral("Query dataset values NOT loaded."),
                      TMsgDlgType::mtInformation, mbOK, 0);
        return;
    }
    // The extremes are there: the load has looked at them. Means, deviations, residuals and matrices wait until they
    // are asked for.
    const std::weak_ptr<bool> alive = alive_;
    ComputebVector();
    // A message box can be the component's end.
    if (alive.expired())
        return;
    ComputeSSE();
    ComputeSSR();
    PutOff();
    computed_ = true;
    resultsCurrent_ = true;
    NotifyComputed();
}

double TRegression::Predict(const double *values, int k) const
{
    double value = fit_.b[0];
    for (int j = 1; j <= k; ++j)
        value += fit_.b[j] * values[j];
    return value;
}

// Loading.

bool TRegression::LoadValues()
{
    if (loaded_)
        return true;
    RefuseWhileBusy();
    return Load();
}

bool TRegression::Load()
{
    const std::weak_ptr<bool> alive = alive_;
    {
        const Busy busy(*this);
        resultsCurrent_ = false;
        loadStopped_ = false;
        const auto usesCache = [this] { return cache_ != nullptr && !showLoadProgress_; };
        std::unique_ptr<LoadProgress> progress = usesCache() ? nullptr : MakeLoadProgress();
        observed_.m = 0;
        for (const TIndepVar &definition : controls_)
            SetcVarArrays(definition);
        // Whatever shows a window runs events, and one of these can be the component's end.
        CheckDataCount();
        if (alive.expired())
            return false;
        if (!usesCache() || !cache_->Load()) {
            if (!progress)
                progress = MakeLoadProgress();
            if (!ReadRecords(*progress, alive))
                return false;
        }
        if (!loadStopped_) {
            SetDegreesOfFreedom();
            if (alive.expired())
                return false;
            const bool varies = observed_.n > 0 && !InvariantCol();
            if (alive.expired())
                return false;
            loaded_ = varies;
        }
    }
    const bool loaded = loaded_;
    NotifyLoaded();
    return loaded;
}

void TRegression::SetcVarArrays(const TIndepVar &definition)
{
    if (definition.Transformation() != u"Undefined")
        columnDefinitions_[++observed_.m].Assign(definition);
}

void TRegression::CheckDataCount()
{
    // Counting can be dear, so it is left alone where nobody would see the warning.
    if (!showWarnings_)
        return;
    const qint64 records = dataset_.RecordCount();
    if (records <= MaxObservations)
        return;
    const QString limit = QString::number(MaxObservations);
    const QString count = QString::number(records);
    // The words doubled across a line break belong to the messages.
    const QString message =
        form_ == Form::Table
            ? QString(u"Brevant analyzes a maximum of " % limit % u"\n\rrecords. There are " % count %
                      u" records in\n\rin your dataset. You can use table filters\n\r"
                      u"to limit the number of eligible records.\n\r\n\rLoading the first " %
                      limit % u" records...")
            : QString(
                  u"Brevant analyzes a maximum of " % limit % u"\n\rRecords. There are " % count %
                  u" records\n\rrecords in your dataset. You can make\n\ryour query more specific to limit the\n\r"
                  u"number of records returned.\n\r\n\rLoading the first " %
                  limit % u" records...");
    MlrMessageDlg(showWarnings_, message, TMsgDlgType::mtWarning, mbOK, 0);
}

bool TRegression::ValidRecord(int m)
{
    return std::all_of(columnDefinitions_.begin() + 1, columnDefinitions_.begin() + 1 + m,
                       [this](const TIndepVar &definition) { return definition.ValidTransformation(dataset_); });
}

bool TRegression::ReadRecords(LoadProgress &progress, const std::weak_ptr<bool> &alive)
{
    // What is still due from fits to the observations that are about to go.
    Settle(Spread);
    Settle(Residuals);
    ObserveBuffer();
    observed_.n = 0;
    recordsRead_ = 0;
    dataset_.First();
    progress.SetGaugeProgress(0);
    progress.SetGaugeText(QStringLiteral("Records Loaded: 0"));
    // What the events have left: whether the component is still there. Asked whenever some may have run.
    const auto goesOn = [&] {
        if (alive.expired())
            return false;
        loadStopped_ = progress.Stopped();
        return true;
    };
    const bool shown = showLoadProgress_;
    qint64 records = 0;
    if (shown) {
        records = dataset_.RecordCount();
        progress.Show();
        if (!goesOn())
            return false;
    }

    std::vector<nuvo::TermReader> terms;
    const int m = observed_.m;
    terms.reserve(m);
    for (int j = 1; j <= m; ++j)
        terms.emplace_back(columnDefinitions_[j], dataset_);
    nuvo::TermReader response(response_, dataset_);

    int n = 0;
    int read = 0;
    while (!loadStopped_ && !dataset_.Eof() && n < MaxObservations) {
        ++read;
        const bool valid =
            std::all_of(terms.begin(), terms.end(), [](nuvo::TermReader &term) { return term.Valid(); }) &&
            response.Valid();
        if (valid) {
            buffer_->y[n] = response.Value();
            for (int j = 1; j <= m; ++j)
                buffer_->x[j][n] = terms[j - 1].Value();
            ++n;
            if (shown) {
                const double percentage = double(n) * 100 / double(records);
                progress.SetGaugeProgress(static_cast<unsigned short>(std::clamp(percentage, 0.0, 100.0)));
                progress.SetGaugeText(QStringLiteral("Records Loaded: ") + QString::number(n));
                if (!goesOn())
                    return false;
            }
        }
        dataset_.Next();
    }
    observed_.n = n;
    recordsRead_ = read;
    return true;
}

void TRegression::SetDegreesOfFreedom()
{
    if (observed_.n < observed_.m + 1) {
        degreesOfFreedom_ = 0;
        MessageDlg(QStringLiteral("There are 0 degrees of freedom."), TMsgDlgType::mtError);
    } else {
        degreesOfFreedom_ = short(observed_.n - (observed_.m + 1));
    }
}

bool TRegression::InvariantCol()
{
    const auto invariant = [](const nuvo::ColumnRange &range) {
        return std::fabs(range.max - range.min) < ZeroTolerance;
    };
    ComputeMaxAndMinY();
    bool found = invariant(yRange_);
    if (!found) {
        ComputeMaxAndMinX();
        found = std::any_of(xRange_.begin() + 1, xRange_.begin() + 1 + observed_.m, invariant);
    }
    if (found)
        MessageDlg(QStringLiteral("The dataset has an invariant\n\rcolumn. Matrix is singular!"),
                   TMsgDlgType::mtError);
    return found;
}

void TRegression::ComputeMaxAndMinY()
{
    yRange_ = observed_.y.range ? *observed_.y.range : nuvo::minMax(observed_.y.values, std::max(1, observed_.n));
}

void TRegression::ComputeMaxAndMinX()
{
    for (int j = 1; j <= observed_.m; ++j) {
        const ObservedColumn &column = observed_.x[j];
        xRange_[j] = column.range ? *column.range : nuvo::minMax(column.values, std::max(1, observed_.n));
    }
}

namespace {

template <class Observed>
auto pointersTo(const Observed &columns)
{
    std::array<const double *, MaxParameters> pointers{};
    for (size_t j = 1; j < pointers.size(); ++j)
        pointers[j] = columns[j].values;
    return pointers;
}

template <class Fit>
bool isSettled(const Fit &fit)
{
    return std::none_of(fit.due.begin(), fit.due.end(), [](bool due) { return due; });
}

} // namespace

void TRegression::ObserveBuffer()
{
    for (int j = 0; j < MaxParameters; ++j)
        observed_.x[j] = {buffer_->x[j]};
    observed_.y = {buffer_->y};
    observed_.records.reset();
}

// Statistics.

void TRegression::Results::meansOfColumns(const Observations &observed)
{
    const auto columns = pointersTo(observed.x);
    nuvo::means({columns.data() + 1, size_t(observed.m)}, observed.n, xBar.data() + 1);
}

void TRegression::Results::deviationsOfColumns(const Observations &observed)
{
    const auto columns = pointersTo(observed.x);
    nuvo::standardDeviations({columns.data() + 1, size_t(observed.m)}, xBar.data() + 1, observed.n,
                             xStdErr.data() + 1);
}

void TRegression::Results::meanOfResponse(const Observations &observed)
{
    nuvo::means({&observed.y.values, 1}, observed.n, &yBar);
}

void TRegression::Results::deviationOfResponse(const Observations &observed)
{
    nuvo::standardDeviations({&observed.y.values, 1}, &yBar, observed.n, &yStdErr);
}

void TRegression::Results::fittedValues(const Observations &observed, const std::array<double, MaxParameters> &b)
{
    // Predict of every observation, a column at a time: the same operations in the same order.
    std::fill_n(yHat, observed.n, b[0]);
    for (int j = 1; j <= observed.m; ++j) {
        const double *const x = observed.x[j].values;
        for (int i = 0; i < observed.n; ++i)
            yHat[i] += b[j] * x[i];
    }
}

void TRegression::Results::residuals(const Observations &observed)
{
    for (int i = 0; i < observed.n; ++i)
        e[i] = observed.y.values[i] - yHat[i];
}

void TRegression::Results::covariances(const ParameterMatrix &inverse, double mse, int m)
{
    for (int i = 0; i <= m; ++i) {
        for (int j = 0; j <= m; ++j)
            covariance[i][j] = inverse[i][j] * mse;
    }
}

void TRegression::Results::correlations(int m)
{
    for (int i = 0; i <= m; ++i) {
        for (int j = 0; j <= m; ++j)
            correlation[i][j] = covariance[i][j] / std::sqrt(covariance[i][i] * covariance[j][j]);
    }
}

void TRegression::PutOff()
{
    for (Unsettled &fit : unsettled_) {
        fit.due[Spread] = fit.due[Spread] && fit.observed.m > observed_.m;
        fit.due[Matrices] = fit.due[Matrices] && fit.observed.m > observed_.m;
        fit.due[Residuals] = fit.due[Residuals] && fit.observed.n > observed_.n;
    }
    std::erase_if(unsettled_, isSettled<Unsettled>);
    constexpr size_t kMost = 2 * MaxParameters;
    if (unsettled_.size() == kMost) {
        for (const Part part : {Spread, Residuals, Matrices})
            Settle(part);
    }
    due_.fill(true);
    unsettled_.push_back({due_, observed_, fit_.b, products_, mse_});
}

void TRegression::Settle(Part part) const
{
    due_[part] = false;
    for (Unsettled &fit : unsettled_) {
        if (!std::exchange(fit.due[part], false))
            continue;
        switch (part) {
        case Spread:
            results_->meansOfColumns(fit.observed);
            results_->deviationsOfColumns(fit.observed);
            results_->meanOfResponse(fit.observed);
            results_->deviationOfResponse(fit.observed);
            break;
        case Residuals:
            results_->fittedValues(fit.observed, fit.b);
            results_->residuals(fit.observed);
            break;
        case Matrices:
            results_->covariances(nuvo::solveNormalEquations(fit.products, fit.observed.m).inverse, fit.mse,
                                  fit.observed.m);
            results_->correlations(fit.observed.m);
            break;
        case PartCount:
            break;
        }
    }
    std::erase_if(unsettled_, isSettled<Unsettled>);
}

void TRegression::ComputexBar()
{
    if (!loaded_) {
        const std::weak_ptr<bool> alive = alive_;
        LoadValues();
        if (alive.expired())
            return;
    }
    Settled(Spread).results_->meansOfColumns(observed_);
}

void TRegression::ComputexStdErr()
{
    Settled(Spread).results_->deviationsOfColumns(observed_);
}

void TRegression::ComputeyBar()
{
    Settled(Spread).results_->meanOfResponse(observed_);
}

void TRegression::ComputeyStdErr()
{
    Settled(Spread).results_->deviationOfResponse(observed_);
}

void TRegression::ComputebVector()
{
    const int m = observed_.m;
    if (observed_.records) {
        observed_.records->crossProducts({observed_.numbers.data(), size_t(m) + 1}, products_);
    } else {
        std::array<nuvo::DataColumn, MaxParameters> columns;
        for (int j = 1; j <= m; ++j)
            columns[j - 1] = {observed_.x[j].values, xRange_[j].largest()};
        columns[m] = {observed_.y.values, yRange_.largest()};
        nuvo::crossProducts({columns.data(), size_t(m) + 1}, observed_.n, products_);
    }
    fittedColumns_ = m;
    fit_ = nuvo::solveCoefficients(products_, m);
    for (int rows = fit_.zeroRows; rows > 0; --rows)
        MessageDlg(QStringLiteral("Your matrix is singular"), TMsgDlgType::mtError);
}

void TRegression::ComputeyHat()
{
    Settled(Residuals).results_->fittedValues(observed_, fit_.b);
}

void TRegression::ComputeResiduals()
{
    ComputeyHat();
    results_->residuals(observed_);
}

void TRegression::ComputeSSE()
{
    sse_ = fit_.sse;
    mse_ = sse_ / (observed_.n - (observed_.m + 1));
}

void TRegression::ComputeSSR()
{
    ssr_ = fit_.ssr;
}

void TRegression::ComputeCovarMatrix()
{
    const ParameterMatrix inverse =
        fittedColumns_ < 0 ? ParameterMatrix() : nuvo::solveNormalEquations(products_, fittedColumns_).inverse;
    Settled(Matrices).results_->covariances(inverse, mse_, observed_.m);
}

void TRegression::ComputeCorrMatrix()
{
    Settled(Matrices).results_->correlations(observed_.m);
}

void TRegression::ComputeSST()
{
    sst_ = GetSSE() + GetSSR();
}

void TRegression::ComputeRSquared()
{
    const double sst = GetSST();
    if (sst > 0)
        rSquared_ = GetSSR() / sst;
}

void TRegression::ComputeSyx()
{
    syx_ = std::sqrt(mse_);
}

void TRegression::ComputeF()
{
    f_ = (GetSSR() / observed_.m) / (GetSSE() / (observed_.n - (observed_.m + 1)));
}

double TRegression::GetSSR()
{
    ComputeSSR();
    return ssr_;
}

double TRegression::GetSSE()
{
    ComputeSSE();
    return sse_;
}

double TRegression::GetSST()
{
    ComputeSST();
    return sst_;
}

double TRegression::GetSyx()
{
    ComputeSyx();
    return syx_;
}

double TRegression::GetRSquared()
{
    ComputeRSquared();
    return rSquared_;
}

double TRegression::GetF()
{
    ComputeF();
    return f_;
}

std::vector<int> TRegression::DependentColumns() const
{
    return nuvo::dependentColumns(products_, std::max(0, fittedColumns_));
}
