#pragma once

#include "select/Corvane.h"

namespace nuvo {
class OptimalRun;
}

/// Fits every subset of the active control variables and keeps the best models by a criterion.
///
/// A candidate that is not accepted overwrites the last entry of the list all the same, and with one model to save
/// (the default) the single entry ends as the subset fitted last, the full model. Both are meant to be so.
class NUVO_EXPORT TOptimizeMLR : public TCorvane
{
    Q_OBJECT
    Q_PROPERTY(TOptimizationType OptCriteria READ OptCriteria WRITE SetOptCriteria)
    Q_PROPERTY(int ModelsToSave READ ModelsToSave WRITE SetModelsToSave)

public:
    /// Ranks by dominance (larger R2 and smaller s2), by the smallest s2, by the largest F.
    enum TOptimizationType { Nondominated, MinSsquared, MaxFValue };
    Q_ENUM(TOptimizationType)

    explicit TOptimizeMLR(QWidget *owner = nullptr);
    ~TOptimizeMLR() override;

    TOptimizationType OptCriteria() const { return optCriteria_; }
    void SetOptCriteria(TOptimizationType criterion);
    /// How many models the list keeps, 0..65535: more than 20 count as 20.
    int ModelsToSave() const { return modelsToSave_; }
    /// 0 is ignored; a number outside 0..65535 counts as the nearer end.
    void SetModelsToSave(int value);

    void Run() override;

    // The list, best model first; it stays until the next run.

    int ModelCount() const { return modelCount_; }
    /// \throws EStringListError for an index outside 1..20.
    TMLRModel GetModelList(int index) const;
    /// \throws EStringListError for an index outside 1..20.
    void SetModelList(int index, const TMLRModel &model);
    /// Puts an entry onto the bound component. Does not load. \throws EStringListError for an index outside 1..20.
    void SetModel(int index);
    /// Puts a model onto the bound component. Does not load.
    void AssignModel(const TMLRModel &model) { PutModel(model); }

    // Whether a candidate beats one model of the list at least; always while the list is not full.

    bool Dominates(double rSquared, double sSquared) const;
    bool BetterF(double f) const;
    bool BetterS(double sSquared) const;
    /// Orders the entries in use by OptCriteria. Two models of which neither dominates the other keep their places.
    void SortModelList();

private:
    friend class nuvo::OptimalRun;

    int Capacity() const;

    TOptimizationType optCriteria_ = Nondominated;
    TMLRModels modelList_;
    int modelCount_ = 0;
    int modelsToSave_ = 1;
};

using TOptimizationType = TOptimizeMLR::TOptimizationType;

/// The search on a table and on a query. \pre the selector is bound to the component.
NUVO_EXPORT void OptMLRTable(TMLRTable &component, TOptimizeMLR &selector);
NUVO_EXPORT void OptMLRQuery(TMLRQuery &component, TOptimizeMLR &selector);
