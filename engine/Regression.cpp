// SPDX-License-Identifier: MIT
#include "engine/Regression.h"

#include "engine/Regressionprivate.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"

#include <QCoreApplication>
#include <QStringBuilder>

#include <algorithm>
#include <cmath>

int MlrMessageDlg(bool show, const QString &message, TMsgDlgType type, unsigned buttons, int helpContext)
{
    return show ? MessageDlg(message, type, buttons, helpContext) : int(mrNone);
}

TRegression::TRegression(TDataSet &dataset, Form form) : d(std::make_unique<Private>(*this, dataset, form)) {}

TRegression::~TRegression() = default;

void TRegression::RefuseWhileBusy() const
{
    if (d->busy)
        throw EDatabaseError(QCoreApplication::translate("TRegression",
                                                         "The %1 is being loaded or fitted; it cannot be "
                                                         "changed, loaded or fitted before that has ended.")
                                 .arg(d->dataset.Caption()));
}

// The model.

TDataSet &TRegression::DataSet()
{
    return d->dataset;
}

TRegression::Form TRegression::DataSetForm() const
{
    return d->form;
}

TIndepVar &TRegression::ControlVar(int k)
{
    return d->controls[std::size_t(k - 1)];
}

const TIndepVar &TRegression::ControlVar(int k) const
{
    return d->controls[std::size_t(k - 1)];
}

void TRegression::SetControl(int k, const TIndepVar &definition)
{
    RefuseWhileBusy();
    ControlVar(k).Assign(definition);
    d->forgetLoad();
}

TDependentVar &TRegression::ResponseVarY()
{
    return d->response;
}

const TDependentVar &TRegression::ResponseVarY() const
{
    return d->response;
}

void TRegression::SetResponse(const TDependentVar &definition)
{
    RefuseWhileBusy();
    d->response.Assign(definition);
    d->forgetLoad();
}

QStringList TRegression::ControlStrings(int k) const
{
    return ControlVar(k).ToQStringList();
}

void TRegression::SetControlStrings(int k, const QStringList &strings)
{
    TIndepVar definition;
    definition.AssignRepaired(strings);
    SetControl(k, definition);
}

QStringList TRegression::ResponseStrings() const
{
    return d->response.ToQStringList();
}

void TRegression::SetResponseStrings(const QStringList &strings)
{
    TDependentVar definition;
    definition.AssignRepaired(strings);
    SetResponse(definition);
}

const QString &TRegression::Description() const
{
    return d->description;
}

void TRegression::SetDescription(const QString &text)
{
    RefuseWhileBusy();
    d->description = text;
}

const QString &TRegression::ReportMessage() const
{
    return d->reportMessage;
}

void TRegression::SetReportMessage(const QString &text)
{
    RefuseWhileBusy();
    d->reportMessage = text;
}

bool TRegression::ShowLoadProgress() const
{
    return d->showLoadProgress;
}

void TRegression::SetShowLoadProgress(bool show)
{
    RefuseWhileBusy();
    d->showLoadProgress = show;
}

bool TRegression::ShowWarnings() const
{
    return d->showWarnings;
}

void TRegression::SetShowWarnings(bool show)
{
    RefuseWhileBusy();
    d->showWarnings = show;
}

// The run.

void TRegression::Private::forgetLoad()
{
    loaded = false;
    computed = false;
    resultsCurrent = false;
}

bool TRegression::ReLoad()
{
    RefuseWhileBusy();
    d->loaded = false;
    return d->load();
}

bool TRegression::LoadValues()
{
    if (d->loaded)
        return true;
    RefuseWhileBusy();
    return d->load();
}

void TRegression::Execute()
{
    RefuseWhileBusy();
    d->fit();
}

void TRegression::Private::fit()
{
    if (!loaded) {
        MlrMessageDlg(showWarnings,
                      form == Form::Table ? QStringLiteral("Table values NOT loaded.")
                                          : QStringLiteral("Query dataset values NOT loaded."),
                      TMsgDlgType::mtInformation, mbOK, 0);
        return;
    }
    // The extremes are there: the load has looked at them. Means, deviations, residuals and matrices wait until they
    // are asked for.
    const std::weak_ptr<bool> owner = alive;
    q.ComputebVector();
    // A message box can be the component's end.
    if (owner.expired())
        return;
    q.ComputeSSE();
    q.ComputeSSR();
    putOff();
    computed = true;
    resultsCurrent = true;
    q.NotifyComputed();
}

double TRegression::Predict(const double *values, int k) const
{
    double value = Getb(0);
    for (int j = 1; j <= k; ++j)
        value += Getb(j) * values[j];
    return value;
}

bool TRegression::Loaded() const
{
    return d->loaded;
}

bool TRegression::Computed() const
{
    return d->computed;
}

bool TRegression::ResultsCurrent() const
{
    return d->resultsCurrent;
}

std::shared_ptr<const nuvo::Fit> TRegression::CurrentFit() const
{
    return d->resultsCurrent ? d->lastFit : nullptr;
}

void TRegression::SetColumnCache(std::shared_ptr<nuvo::ColumnCache> cache)
{
    if (d->cache) {
        try {
            d->cache->standBehind();
        } catch (const EPlatformError &) {
            // The load has been made; where the records cannot be read any more, the next one will say so.
        }
    }
    d->cache = std::move(cache);
}

// Loading.

namespace {

bool isDefined(const TIndepVar &definition)
{
    static constexpr QStringView Undefined(u"Undefined"); // its length is known
    return definition.Count() > 1 && definition.Strings(1) != Undefined;
}

/// Loads follow each other by the thousand, most of their definitions the very same ones.
void take(const TVariableDefinition &from, TVariableDefinition &to)
{
    if (!to.ToQStringList().isSharedWith(from.ToQStringList()))
        to.Assign(from);
}

} // namespace

std::size_t TRegression::Private::chooseColumns()
{
    std::size_t count = 0;
    for (const TIndepVar &definition : controls) {
        if (isDefined(definition))
            take(definition, nextColumns[count++]);
    }
    return count;
}

bool TRegression::Private::load()
{
    if (use != nuvo::RecordUse::First)
        return loadEvery();
    const std::weak_ptr<bool> owner = alive;
    {
        const Busy guard(*this);
        resultsCurrent = false;
        loadStopped = false;
        // Nothing of the load before is touched until the records have been read: reading them can throw.
        const auto usesCache = [this] { return cache != nullptr && !showLoadProgress; };
        std::unique_ptr<nuvo::Progress> progress = usesCache() ? nullptr : q.MakeLoadProgress();
        const std::size_t count = chooseColumns();
        // Whatever shows a window runs events, and one of these can be the component's end.
        q.CheckDataCount();
        if (owner.expired())
            return false;
        const nuvo::ModelDefinitions definitions = nextDefinitions(count);
        std::optional<nuvo::LoadedRecords> found = usesCache() ? cache->load(definitions) : std::nullopt;
        if (!found) {
            if (cache)
                cache->forgetPlace();
            if (!progress)
                progress = q.MakeLoadProgress();
            found = records.load(definitions, {*progress, showLoadProgress, owner});
            if (owner.expired())
                return false;
        }
        settleLoad(std::move(*found), count);
        if (owner.expired())
            return false;
    }
    const bool result = loaded;
    q.NotifyLoaded();
    return result;
}

void TRegression::Private::settleLoad(nuvo::LoadedRecords &&found, std::size_t count)
{
    m = int(count);
    for (std::size_t j = 0; j < count; ++j)
        take(nextColumns[j], columns[j]);
    observed = std::move(found.observations);
    totals = std::move(found.totals);
    recordsRead = found.read;
    recordsTotal = found.total;
    moreRecords = found.more;
    take(response, loadedResponse);
    leftOut = std::move(found.leftOut);
    opening = dataset.Opening();
    loadStopped = found.stopped;
    if (loadStopped)
        return;
    // A message box can be the component's end.
    const std::weak_ptr<bool> owner = alive;
    setDegreesOfFreedom();
    if (owner.expired())
        return;
    const bool varies = this->count() > 0 && !q.InvariantCol();
    if (!owner.expired())
        loaded = varies;
}

void TRegression::SetcVarArrays(const TIndepVar &definition)
{
    if (definition.Transformation() != u"Undefined")
        d->columns[std::size_t(d->m++)].Assign(definition);
}

void TRegression::CheckDataCount()
{
    // Counting can be dear, so it is left alone where nobody would see the warning.
    if (!d->showWarnings)
        return;
    const qint64 records = d->dataset.RecordCount();
    if (records <= MaxObservations)
        return;
    const QString limit = QString::number(MaxObservations);
    const QString count = QString::number(records);
    // The words doubled across a line break belong to the messages.
    const QString message =
        d->form == Form::Table
            ? QString(u"Brevant analyzes a maximum of " % limit % u"\n\rrecords. There are " % count %
                      u" records in\n\rin your dataset. You can use table filters\n\r"
                      u"to limit the number of eligible records.\n\r\n\rLoading the first " %
                      limit % u" records...")
            : QString(
                  u"Brevant analyzes a maximum of " % limit % u"\n\rRecords. There are " % count %
                  u" records\n\rrecords in your dataset. You can make\n\ryour query more specific to limit the\n\r"
                  u"number of records returned.\n\r\n\rLoading the first " %
                  limit % u" records...");
    MlrMessageDlg(d->showWarnings, message, TMsgDlgType::mtWarning, mbOK, 0);
}

bool TRegression::ValidRecord(int m)
{
    return std::all_of(d->columns.begin(), d->columns.begin() + m,
                       [this](const TIndepVar &definition) { return definition.ValidTransformation(d->dataset); });
}

void TRegression::Private::setDegreesOfFreedom()
{
    if (degreesLeft() < 0) {
        degreesOfFreedom = 0;
        MessageDlg(QStringLiteral("There are 0 degrees of freedom."), TMsgDlgType::mtError);
    } else {
        degreesOfFreedom = degreesLeft();
    }
}

bool TRegression::InvariantCol()
{
    const auto invariant = [](const nuvo::ColumnRange &range) {
        return std::fabs(range.max - range.min) < ZeroTolerance;
    };
    ComputeMaxAndMinY();
    bool found = invariant(d->yRange);
    if (!found) {
        ComputeMaxAndMinX();
        found = std::any_of(d->xRange.begin() + 1, d->xRange.begin() + 1 + d->m, invariant);
    }
    if (found)
        MessageDlg(QStringLiteral("The dataset has an invariant\n\rcolumn. Matrix is singular!"),
                   TMsgDlgType::mtError);
    return found;
}

bool TRegression::LoadStopped() const
{
    return d->loadStopped;
}

qint64 TRegression::RecordsRead() const
{
    return d->recordsRead;
}

qint64 TRegression::RecordsUsed() const
{
    return d->count();
}

qint64 TRegression::RecordsSkipped() const
{
    // Where the database added up, only the sample's records were walked, but all of them were counted.
    const qint64 of = d->totals && d->recordsTotal ? *d->recordsTotal : d->recordsRead;
    return of - std::min(d->count(), of);
}

bool TRegression::MoreRecords() const
{
    return d->moreRecords;
}

std::optional<qint64> TRegression::RecordsTotal() const
{
    return d->recordsTotal;
}

std::vector<nuvo::LeftOut> TRegression::LeftOut()
{
    if (d->leftOut.empty() && d->recordsAreThere())
        RefuseWhileBusy();
    return d->namedLeftOut();
}

std::vector<nuvo::LeftOut> TRegression::Private::namedLeftOut()
{
    if (opening < 0)
        return {};
    if (leftOut.empty() && !countLeftOut())
        return {};
    std::vector<nuvo::LeftOut> counts = leftOut;
    counts[0].term = loadedResponse.OutputTerm();
    for (std::size_t j = 1; j < counts.size(); ++j)
        counts[j].term = columns[j - 1].OutputTerm();
    return counts;
}

/// Other records tell nothing of the last load.
bool TRegression::Private::recordsAreThere() const
{
    return opening >= 0 && dataset.Active() && dataset.Opening() == opening;
}

bool TRegression::Private::countLeftOut()
{
    if (!recordsAreThere())
        return false;
    const Busy guard(*this);
    const bool ended = dataset.Eof();
    const qint64 before = dataset.RecNo();
    leftOut = nuvo::countLeftOut(dataset, {{columns.data(), std::size_t(m)}, loadedResponse}, recordsRead);
    if (ended) {
        dataset.Last();
    } else {
        dataset.First();
        dataset.MoveBy(before - 1);
    }
    return true;
}
