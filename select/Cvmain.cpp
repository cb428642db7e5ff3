#include "select/Cvmain.h"

#include "platform/Errors.h"

#include <algorithm>

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

int TOptimizeMLR::Capacity() const
{
    return std::min(modelsToSave_, TMLRModels::Size);
}

TMLRModel TOptimizeMLR::GetModelList(int index) const
{
    return modelList_[index];
}

void TOptimizeMLR::SetModelList(int index, const TMLRModel &model)
{
    RefuseWhileRunning();
    modelList_[index] = model;
}

void TOptimizeMLR::SetModel(int index)
{
    PutModel(modelList_[index]);
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

void TOptimizeMLR::SortModelList()
{
    const auto better = [this](const TMLRModel &a, const TMLRModel &b) {
        switch (optCriteria_) {
        case MinSsquared:
            return a.SSquared < b.SSquared;
        case MaxFValue:
            return a.F > b.F;
        case Nondominated:
            break;
        }
        return a.RSquared > b.RSquared && a.SSquared < b.SSquared;
    };
    // An exchange sort, as the order of models that do not beat each other depends on it.
    for (int i = 1; i <= modelCount_; ++i) {
        for (int j = i + 1; j <= modelCount_; ++j) {
            if (better(modelList_[j], modelList_[i]))
                std::swap(modelList_[i], modelList_[j]);
        }
    }
}

void TOptimizeMLR::Run()
{
    throw EDatabaseError(QStringLiteral("The search is not built yet."));
}
