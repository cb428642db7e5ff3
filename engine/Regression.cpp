#include "engine/Regression.h"

#include "engine/Termreader.h"
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
          showWarnings(std::exchange(regression.showWarnings_, false))
    {
    }

    TRegression &q;
    Busy busy;
    const std::array<TIndepVar, MaxControls> controls;
    const bool showLoadProgress;
    const bool showWarnings;
};

TRegression::TRegression(TDataSet &dataset, Form form)
    : dataset_(dataset), form_(form), data_(std::make_unique<Data>())
{
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
    ComputeMaxAndMinY();
    ComputeMaxAndMinX();
    ComputexBar();
    ComputexStdErr();
    ComputeyBar();
    ComputeyStdErr();
    // A message box can be the component's end.
    const std::weak_ptr<bool> alive = alive_;
    ComputebVector();
    if (alive.expired())
        return;
    ComputeResiduals();
    ComputeSSE();
    ComputeSSR();
    ComputeCovarMatrix();
    ComputeCorrMatrix();
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
        const std::unique_ptr<LoadProgress> progress = MakeLoadProgress();
        columns_ = 0;
        for (const TIndepVar &definition : controls_)
            SetcVarArrays(definition);
        // Whatever shows a window runs events, and one of these can be the component's end.
        CheckDataCount();
        if (alive.expired() || !ReadRecords(*progress, alive))
            return false;
        if (!loadStopped_) {
            SetDegreesOfFreedom();
            if (alive.expired())
                return false;
            const bool varies = observations_ > 0 && !InvariantCol();
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
        columnDefinitions_[++columns_].Assign(definition);
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
    observations_ = 0;
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
    terms.reserve(columns_);
    for (int j = 1; j <= columns_; ++j)
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
            data_->y[n] = response.Value();
            for (int j = 1; j <= columns_; ++j)
                data_->x[j][n] = terms[j - 1].Value();
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
    observations_ = n;
    recordsRead_ = read;
    return true;
}

void TRegression::SetDegreesOfFreedom()
{
    if (observations_ < columns_ + 1) {
        degreesOfFreedom_ = 0;
        MessageDlg(QStringLiteral("There are 0 degrees of freedom."), TMsgDlgType::mtError);
    } else {
        degreesOfFreedom_ = short(observations_ - (columns_ + 1));
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
        found = std::any_of(xRange_.begin() + 1, xRange_.begin() + 1 + columns_, invariant);
    }
    if (found)
        MessageDlg(QStringLiteral("The dataset has an invariant\n\rcolumn. Matrix is singular!"),
                   TMsgDlgType::mtError);
    return found;
}

void TRegression::ComputeMaxAndMinY()
{
    yRange_ = nuvo::minMax(data_->y, std::max(1, observations_));
}

void TRegression::ComputeMaxAndMinX()
{
    for (int j = 1; j <= columns_; ++j)
        xRange_[j] = nuvo::minMax(data_->x[j], std::max(1, observations_));
}

// Statistics.

namespace {

using ColumnPointers = std::array<const double *, MaxParameters>;

} // namespace

void TRegression::ComputexBar()
{
    if (!loaded_) {
        const std::weak_ptr<bool> alive = alive_;
        LoadValues();
        if (alive.expired())
            return;
    }
    ColumnPointers columns{};
    for (int j = 1; j <= columns_; ++j)
        columns[j] = data_->x[j];
    nuvo::means({columns.data() + 1, size_t(columns_)}, observations_, xBar_.data() + 1);
}

void TRegression::ComputexStdErr()
{
    ColumnPointers columns{};
    for (int j = 1; j <= columns_; ++j)
        columns[j] = data_->x[j];
    nuvo::standardDeviations({columns.data() + 1, size_t(columns_)}, xBar_.data() + 1, observations_,
                             xStdErr_.data() + 1);
}

void TRegression::ComputeyBar()
{
    const double *const column = data_->y;
    nuvo::means({&column, 1}, observations_, &yBar_);
}

void TRegression::ComputeyStdErr()
{
    const double *const column = data_->y;
    nuvo::standardDeviations({&column, 1}, &yBar_, observations_, &yStdErr_);
}

void TRegression::ComputebVector()
{
    std::array<nuvo::Column, MaxParameters> columns;
    for (int j = 1; j <= columns_; ++j)
        columns[j - 1] = {data_->x[j], xRange_[j].largest()};
    columns[columns_] = {data_->y, yRange_.largest()};
    nuvo::crossProducts({columns.data(), size_t(columns_) + 1}, observations_, products_);
    fittedColumns_ = columns_;
    fit_ = nuvo::solveNormalEquations(products_, columns_);
    for (int rows = fit_.zeroRows; rows > 0; --rows)
        MessageDlg(QStringLiteral("Your matrix is singular"), TMsgDlgType::mtError);
}

void TRegression::ComputeyHat()
{
    // Predict of every observation, a column at a time: the same operations in the same order.
    double *const yHat = data_->yHat;
    std::fill_n(yHat, observations_, fit_.b[0]);
    for (int j = 1; j <= columns_; ++j) {
        const double b = fit_.b[j];
        const double *const x = data_->x[j];
        for (int i = 0; i < observations_; ++i)
            yHat[i] += b * x[i];
    }
}

void TRegression::ComputeResiduals()
{
    ComputeyHat();
    for (int i = 0; i < observations_; ++i)
        data_->e[i] = data_->y[i] - data_->yHat[i];
}

void TRegression::ComputeSSE()
{
    sse_ = fit_.sse;
    mse_ = sse_ / (observations_ - (columns_ + 1));
}

void TRegression::ComputeSSR()
{
    ssr_ = fit_.ssr;
}

void TRegression::ComputeCovarMatrix()
{
    for (int i = 0; i <= columns_; ++i) {
        for (int j = 0; j <= columns_; ++j)
            covariance_[i][j] = fit_.inverse[i][j] * mse_;
    }
}

void TRegression::ComputeCorrMatrix()
{
    for (int i = 0; i <= columns_; ++i) {
        for (int j = 0; j <= columns_; ++j)
            correlation_[i][j] = covariance_[i][j] / std::sqrt(covariance_[i][i] * covariance_[j][j]);
    }
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
    f_ = (GetSSR() / columns_) / (GetSSE() / (observations_ - (columns_ + 1)));
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
    return nuvo::dependentColumns(products_, fittedColumns_);
}
