// SPDX-License-Identifier: MIT
#pragma once

#include "select/Corvane.h"

#include <vector>

namespace nuvo {
class OptimalRun;
enum class SubsetCriterion;
} // namespace nuvo

/// Fits every subset of the active control variables and keeps the best models by a criterion.
///
/// A candidate that is not accepted overwrites the last entry of the list all the same, and with one model to save
/// (the default) the single entry ends as the subset fitted last, the full model. Both are meant to be so.
///
/// Under the rule Textbook, and always with one of the criteria from Cp on or with ModelsPerSize, all subsets are
/// compared on one sample, the records that all controls can use; the best by the criterion is the model that is
/// left, fitted to that sample, and the list holds the best of each size. See nuvo::chooseSubsets for figures and
/// order.
class NUVO_EXPORT TOptimizeMLR : public TCorvane
{
    Q_OBJECT
    Q_PROPERTY(TOptimizationType OptCriteria READ OptCriteria WRITE SetOptCriteria)
    Q_PROPERTY(int ModelsToSave READ ModelsToSave WRITE SetModelsToSave)
    Q_PROPERTY(int ModelsPerSize READ ModelsPerSize WRITE SetModelsPerSize)

public:
    /// Ranks by dominance (larger R2 and smaller s2), by the smallest s2, by the largest F. Those after them, of
    /// which all but AdjustedRSquared are best when smallest, compare all subsets on one sample.
    ///
    /// On one sample Nondominated, which names no best model, counts as Cp.
    enum TOptimizationType { Nondominated, MinSsquared, MaxFValue, Cp, AIC, BIC, AdjustedRSquared, PRESS };
    Q_ENUM(TOptimizationType)

    /// Bound to nothing; the owner deletes it.
    explicit TOptimizeMLR(QWidget *owner = nullptr);
    ~TOptimizeMLR() override;

    /// By what models are compared; Nondominated unless set.
    TOptimizationType OptCriteria() const { return optCriteria_; }
    /// \throws EDatabaseError during a run.
    void SetOptCriteria(TOptimizationType criterion);
    /// How many models the list keeps, 0..65535: more than 20 count as 20.
    int ModelsToSave() const { return modelsToSave_; }
    /// 0 is ignored; a number outside 0..65535 counts as the nearer end.
    void SetModelsToSave(int value);
    /// How many models of each size are listed when all subsets are compared on one sample, up to 252, all there can
    /// be of a size; 0: not given, which is 1 there. What is outside counts as the nearer end.
    int ModelsPerSize() const { return modelsPerSize_; }
    /// \throws EDatabaseError during a run.
    void SetModelsPerSize(int value);
    bool SharesSample() const override;

    void Run() override;

    // The list; it stays until the next run. Best model first; of a run on one sample ordered by size, then SSE, and
    // then it can be longer than 20 (of dependent sets and without degrees of freedom figures are NaNs).

    /// The number of models in the list.
    int ModelCount() const { return modelCount_; }
    /// \throws EStringListError for an index outside 1..20 that is not within ModelCount() either.
    TMLRModel GetModelList(int index) const;
    /// \throws EStringListError as GetModelList().
    void SetModelList(int index, const TMLRModel &model);
    /// Puts an entry onto the bound component. Does not load. \throws EStringListError as GetModelList().
    void SetModel(int index);
    /// Leaves an entry of the list, 1 to ModelCount(), on the bound component, loaded and fitted: after a run on one
    /// sample over that, else over its own records.
    void SelectModel(int index) override;
    /// Puts a model onto the bound component. Does not load.
    void AssignModel(const TMLRModel &model) { PutModel(model); }

    // Whether a candidate beats one model of the list at least; always while the list is not full.

    /// By a larger R2 and a smaller s2.
    bool Dominates(double rSquared, double sSquared) const;
    /// By a larger F.
    bool BetterF(double f) const;
    /// By a smaller s2.
    bool BetterS(double sSquared) const;
    /// Orders the entries in use by OptCriteria. Two models of which neither dominates the other keep their places.
    /// Models of a run on one sample, and any by criteria whose figure they do not have, keep the order of the list.
    void SortModelList();

private:
    friend class nuvo::OptimalRun;

    int Capacity() const;
    nuvo::SubsetCriterion Criterion() const;
    TMLRModel &Entry(int index);

    TOptimizationType optCriteria_ = Nondominated;
    TMLRModels modelList_;
    int modelCount_ = 0;
    int modelsToSave_ = 1;
    int modelsPerSize_ = 0;
    std::vector<TMLRModel> further_; ///< entries 21 and following
};

using TOptimizationType = TOptimizeMLR::TOptimizationType;

/// The search on a table and on a query, by the selector's rule. \pre the selector is bound to the component.
NUVO_EXPORT void OptMLRTable(TMLRTable &component, TOptimizeMLR &selector);
/// The same on a query.
NUVO_EXPORT void OptMLRQuery(TMLRQuery &component, TOptimizeMLR &selector);
