// SPDX-License-Identifier: MIT
#include "select/Cvmain.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "platform/Formats.h"
#include "select/Modeltools.h"
#include "select/Selectionrun.h"
#include "select/Subsetrun.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

TOptimizeMLR::TOptimizeMLR(QWidget *owner) : TCorvane(owner)
{
    ClearModelList(modelList_);
}

TOptimizeMLR::~TOptimizeMLR() = default;

void TOptimizeMLR::SetOptCriteria(TOptimizationType criterion)
{
    RefuseWhileRunning();
    optCriteria_ = criterion;
}

void TOptimizeMLR::SetModelsToSave(int value)
{
    RefuseWhileRunning();
    const int saved = std::clamp(value, 0, 65535);
    if (saved != 0)
        modelsToSave_ = saved;
}

void TOptimizeMLR::SetModelsPerSize(int value)
{
    RefuseWhileRunning();
    modelsPerSize_ = std::clamp(value, 0, 252);
}

bool TOptimizeMLR::SharesSample() const
{
    return Rule() == Textbook || optCriteria_ >= Cp || modelsPerSize_ > 0;
}

nuvo::SubsetCriterion TOptimizeMLR::Criterion() const
{
    switch (optCriteria_) {
    case MinSsquared: // the same order
    case AdjustedRSquared:
        return nuvo::SubsetCriterion::AdjustedRSquared;
    case MaxFValue:
        return nuvo::SubsetCriterion::F;
    case AIC:
        return nuvo::SubsetCriterion::Aic;
    case BIC:
        return nuvo::SubsetCriterion::Bic;
    case PRESS:
        return nuvo::SubsetCriterion::Press;
    case Nondominated:
    case Cp:
        break;
    }
    return nuvo::SubsetCriterion::Cp;
}

int TOptimizeMLR::Capacity() const
{
    return std::min(modelsToSave_, TMLRModels::Size);
}

TMLRModel &TOptimizeMLR::Entry(int index)
{
    if (index > TMLRModels::Size && index <= modelCount_)
        return further_[std::size_t(index - TMLRModels::Size) - 1];
    return modelList_[index];
}

TMLRModel TOptimizeMLR::GetModelList(int index) const
{
    return const_cast<TOptimizeMLR *>(this)->Entry(index);
}

void TOptimizeMLR::SetModelList(int index, const TMLRModel &model)
{
    RefuseWhileRunning();
    Entry(index) = model;
}

void TOptimizeMLR::SetModel(int index)
{
    PutModel(Entry(index));
}

void TOptimizeMLR::SelectModel(int index)
{
    if (Choice())
        return TCorvane::SelectModel(index);
    NeedFree();
    if (index < 1 || index > modelCount_)
        throw EStringListError(
            QStringLiteral("There is no model %1 in the list: it has %2.").arg(index).arg(modelCount_));
    TRegression &regression = *Regression();
    SetModel(index);
    if (regression.ReLoad())
        regression.Execute();
}

bool TOptimizeMLR::Dominates(double rSquared, double sSquared) const
{
    if (modelCount_ < Capacity())
        return true;
    for (int i = 1; i <= modelCount_; ++i) {
        if (rSquared > modelList_[i].RSquared && sSquared < modelList_[i].SSquared)
            return true;
    }
    return false;
}

bool TOptimizeMLR::BetterS(double sSquared) const
{
    if (modelCount_ < Capacity())
        return true;
    for (int i = 1; i <= modelCount_; ++i) {
        if (sSquared < modelList_[i].SSquared)
            return true;
    }
    return false;
}

bool TOptimizeMLR::BetterF(double f) const
{
    if (modelCount_ < Capacity())
        return true;
    for (int i = 1; i <= modelCount_; ++i) {
        if (f > modelList_[i].F)
            return true;
    }
    return false;
}

namespace {

/// A model's figures and where it stands in the list.
struct Ranked
{
    double f, rSquared, sSquared;
    int from;
};

/// An exchange sort, as the order of models that do not beat each other depends on it.
template <class Better>
void exchangeSort(std::span<Ranked> models, Better better)
{
    for (std::size_t i = 0; i < models.size(); ++i) {
        for (std::size_t j = i + 1; j < models.size(); ++j) {
            if (better(models[j], models[i])) [[unlikely]]
                std::swap(models[i], models[j]);
        }
    }
}

} // namespace

void TOptimizeMLR::SortModelList()
{
    if (Choice())
        return;
    // The figures alone are sorted: the models, with ten texts each, move once.
    std::array<Ranked, TMLRModels::Size> places;
    const std::span<Ranked> models(places.data(), std::size_t(modelCount_));
    for (int i = 0; i < modelCount_; ++i) {
        const TMLRModel &model = std::as_const(modelList_)[i + 1];
        models[std::size_t(i)] = {model.F, model.RSquared, model.SSquared, i};
    }
    switch (optCriteria_) {
    case Cp:
    case AIC:
    case BIC:
    case AdjustedRSquared:
    case PRESS:
        return;
    case MinSsquared:
        exchangeSort(models, [](const Ranked &a, const Ranked &b) { return a.sSquared < b.sSquared; });
        break;
    case MaxFValue:
        exchangeSort(models, [](const Ranked &a, const Ranked &b) { return a.f > b.f; });
        break;
    case Nondominated:
        exchangeSort(models, [](const Ranked &a, const Ranked &b) {
            return a.rSquared > b.rSquared && a.sSquared < b.sSquared;
        });
        break;
    }
    // Along each ring of places, one model is held while the others move up.
    for (int first = 0; first < modelCount_; ++first) {
        int to = first;
        while (places[std::size_t(to)].from != first) {
            const int from = std::exchange(places[std::size_t(to)].from, to);
            std::swap(modelList_[to + 1], modelList_[from + 1]);
            to = from;
        }
        places[std::size_t(to)].from = to;
    }
}

void TOptimizeMLR::Run()
{
    NeedFree();
    ClearModelList(modelList_);
    if (TMLRQuery *query = Query())
        OptMLRQuery(*query, *this);
    else
        OptMLRTable(*Table(), *this);
}

namespace nuvo {

class OptimalRun
{
public:
    OptimalRun(SelectionRun &run, TOptimizeMLR &selector) : run_(run), selector_(selector) {}

    void search();
    /// All subsets on one sample.
    static void searchShared(SelectionRun &run, TOptimizeMLR &selector);

private:
    enum Row { Out, In, Terms, Accepted };

    void subset(int number);
    void write(int k, Row row);
    bool accepts(double f, double rSquared, double sSquared) const;
    bool improves(double f, double rSquared, double sSquared) const;
    void accept(bool improved);
    void save();
    void writeResult();
    TRegression &regression() { return run_.regression(); }

    SelectionRun &run_;
    TOptimizeMLR &selector_;
    int variables_ = 0; ///< in use when the run began
    std::array<TTermRow, 4> rows_;
    /// Of each control variable as it was last written In, and what taking it Out made of that; empty: not known.
    std::array<std::array<QStringList, 2>, MaxControls> written_;
    TSubsetTable subsets_{};
    TMLRModel best_{.Transformations = {}, .F = 0, .RSquared = 0, .SSquared = 1.0e40};
    TMLRModel current_;
    QString eliminated_;
};

void OptimalRun::searchShared(SelectionRun &run, TOptimizeMLR &selector)
{
    selector.modelCount_ = 0;
    selector.further_.clear();
    SubsetRun(run, selector.Criterion(), std::max(1, selector.modelsPerSize_)).search();
    for (TMLRModel &model : listedModels(*run.choice)) {
        if (++selector.modelCount_ <= TMLRModels::Size)
            selector.modelList_[selector.modelCount_] = std::move(model);
        else
            selector.further_.push_back(std::move(model));
    }
}

void OptimalRun::search()
{
    selector_.modelCount_ = 0;
    selector_.further_.clear();
    variables_ = regression().GetNumVars();
    run_.start(variables_);
    run_.passes = 1;
    for (int k = 1; k <= MaxControls; ++k) {
        const TIndepVar &variable = regression().ControlVar(k);
        rows_[Out][k - 1] = QStringLiteral("Undefined");
        rows_[In][k - 1] = variable.Transformation();
        rows_[Terms][k - 1] = variable.OutputTerm();
    }
    const int rows = nearestInt(std::exp(std::log(2.0) * variables_));
    BinaryTable(subsets_, rows, variables_);
    for (int number = 1; number < rows; ++number) {
        run_.beginCandidate();
        subset(number);
        run_.progress(double(number + 1) / rows * 100);
    }
    // An empty list holds no model: its texts would define ten control variables that were never defined.
    if (selector_.modelCount_ == 0)
        run_.restoreDefinitions();
    else
        writeModel(selector_.modelList_[1], regression());
    run_.reloadAndExecute();
    run_.closeProgress();
    run_.elapsed = run_.processedTime();
    writeResult();
}

/// Gives a control variable the transformation of a row. Two lists of strings go to and fro for as long as nobody
/// else writes the definition: lists that are the same are told by where they are.
void OptimalRun::write(int k, Row row)
{
    TIndepVar &control = regression().ControlVar(k);
    std::array<QStringList, 2> &written = written_[std::size_t(k - 1)];
    const QStringList &present = control.ToQStringList();
    const bool isIn = !written[In].isEmpty() && present.isSharedWith(written[In]);
    const bool isOut = !written[Out].isEmpty() && present.isSharedWith(written[Out]);
    if (row == In ? isIn : isOut)
        return;
    if (row == Out && isIn && !written[Out].isEmpty())
        return control.Assign(written[Out]);
    if (row == In && isOut)
        return control.Assign(written[In]);
    control.SetTransformation(rows_[row][k - 1]);
    if (row == In)
        written = {QStringList(), control.ToQStringList()};
    else
        written[Out] = isIn ? control.ToQStringList() : QStringList();
}

void OptimalRun::subset(int number)
{
    for (int k = 1; k <= variables_; ++k)
        write(k, Row(subsets_[number][k - 1]));
    const bool loaded = run_.reloadAndExecute();
    QString figures;
    if (loaded) {
        const double f = regression().GetF();
        const double rSquared = regression().GetRSquared();
        const double sSquared = regression().GetMSE();
        const bool accepted = accepts(f, rSquared, sSquared);
        const bool improved = improves(f, rSquared, sSquared);
        if (accepted)
            accept(improved);
        // Accepted or not: a candidate that was not accepted overwrites the last entry. Deliberate.
        save();
        run_.writeHead();
        if (selectionLog().isDebugEnabled())
            figures = QStringLiteral(" ms=%1 r2=%2 f=%3 accepted=%4 improved=%5 count=%6")
                          .arg(traced(sSquared), traced(rSquared), traced(f), QString::number(int(accepted)),
                               QString::number(int(improved)), QString::number(selector_.modelCount_));
    }
    qCDebug(selectionLog).noquote() << QStringLiteral("subset number=%1 loaded=%2 controls=%3")
                                               .arg(number)
                                               .arg(int(loaded))
                                               .arg(regression().GetNumVars()) +
                                           figures;
}

bool OptimalRun::accepts(double f, double rSquared, double sSquared) const
{
    switch (selector_.optCriteria_) {
    case TOptimizeMLR::MinSsquared:
        return selector_.BetterS(sSquared);
    case TOptimizeMLR::MaxFValue:
        return selector_.BetterF(f);
    default:
        break;
    }
    return selector_.Dominates(rSquared, sSquared);
}

bool OptimalRun::improves(double f, double rSquared, double sSquared) const
{
    switch (selector_.optCriteria_) {
    case TOptimizeMLR::MinSsquared:
        return sSquared < best_.SSquared;
    case TOptimizeMLR::MaxFValue:
        return f > best_.F;
    default:
        break;
    }
    return rSquared > best_.RSquared && sSquared < best_.SSquared;
}

void OptimalRun::accept(bool improved)
{
    ++selector_.modelCount_;
    run_.step(u"(R)^2 = " % FloatToStrFixed(regression().GetRSquared(), 8, 4) % u",  (s)^2 = " %
              FloatToStrFixed(regression().GetMSE(), 8, 4) % u'.');
    for (int k = 1; k <= MaxControls; ++k)
        rows_[Accepted][k - 1] = regression().ControlVar(k).Transformation();
    if (!improved)
        return;
    saveModel(best_, regression());
    eliminated_.clear();
    for (int k = 1; k <= variables_; ++k) {
        if (rows_[Accepted][k - 1] == u"Undefined" && rows_[Terms][k - 1] != u"Disabled")
            eliminated_ += QStringLiteral("   ") + rows_[Terms][k - 1] + QStringLiteral("\n\r");
    }
}

void OptimalRun::save()
{
    saveModel(current_, regression());
    selector_.modelCount_ = std::min(selector_.modelCount_, selector_.Capacity());
    selector_.modelList_[selector_.modelCount_] = current_;
    selector_.SortModelList();
}

void OptimalRun::writeResult()
{
    if (regression().GetNumVars() >= variables_)
        run_.write(QStringLiteral("Full (Current) Model is Optimal.\n\rNo variables removed."));
    else
        run_.write(QStringLiteral("Optimal Model Eliminates Variable(s):\n\r\n\r") + eliminated_);
    if (selector_.modelCount_ > 1)
        run_.write(QStringLiteral("\n\r\n\rThe %1 top models were saved.").arg(selector_.modelCount_));
}

} // namespace nuvo

namespace {

/// Both forms of the search.
void select(TRegression &component, TOptimizeMLR &selector)
{
    nuvo::SelectionRun::perform(selector, component, {"optimal", true, true}, [&selector](nuvo::SelectionRun &run) {
        if (selector.SharesSample())
            nuvo::OptimalRun::searchShared(run, selector);
        else
            nuvo::OptimalRun(run, selector).search();
    });
}

} // namespace

void OptMLRTable(TMLRTable &component, TOptimizeMLR &selector)
{
    select(component, selector);
}

void OptMLRQuery(TMLRQuery &component, TOptimizeMLR &selector)
{
    select(component, selector);
}
