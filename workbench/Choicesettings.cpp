// SPDX-License-Identifier: MIT
#include "workbench/Choicesettings.h"

#include "select/Bkmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

namespace nuvo {

namespace {

template <class Selector>
std::unique_ptr<Selector> quietSelector()
{
    auto selector = std::make_unique<Selector>();
    if constexpr (requires { selector->SetShowReport(false); })
        selector->SetShowReport(false);
    selector->SetRule(TCorvane::Textbook);
    return selector;
}

} // namespace

std::unique_ptr<TCorvane> selectorFor(const ChoiceSettings &settings)
{
    switch (settings.method) {
    case ChoiceSettings::Stepwise: {
        auto stepwise = quietSelector<TStepWiseMLR>();
        stepwise->SetPIn(settings.enter);
        stepwise->SetPOut(settings.remove);
        return stepwise;
    }
    case ChoiceSettings::Forward: {
        auto forward = quietSelector<TFwdSelectMLR>();
        forward->SetP(settings.enter);
        return forward;
    }
    case ChoiceSettings::Backward: {
        auto backward = quietSelector<TBackElimMLR>();
        backward->SetP(settings.remove);
        return backward;
    }
    case ChoiceSettings::Optimal:
        break;
    }
    auto optimal = quietSelector<TOptimizeMLR>();
    optimal->SetOptCriteria(settings.criterion);
    optimal->SetModelsPerSize(settings.perSize);
    return optimal;
}

ChoiceSettings settingsOf(const TCorvane &selector)
{
    ChoiceSettings settings;
    const auto take = [](double &into, double p) {
        if (p > 0 && p < 1)
            into = p;
    };
    if (const auto *const stepwise = dynamic_cast<const TStepWiseMLR *>(&selector)) {
        settings.method = ChoiceSettings::Stepwise;
        take(settings.enter, stepwise->PIn());
        take(settings.remove, stepwise->POut());
    } else if (const auto *const forward = dynamic_cast<const TFwdSelectMLR *>(&selector)) {
        settings.method = ChoiceSettings::Forward;
        take(settings.enter, forward->P());
    } else if (const auto *const backward = dynamic_cast<const TBackElimMLR *>(&selector)) {
        settings.method = ChoiceSettings::Backward;
        take(settings.remove, backward->P());
    } else if (const auto *const optimal = dynamic_cast<const TOptimizeMLR *>(&selector)) {
        settings.criterion = optimal->OptCriteria();
        settings.perSize = optimal->ModelsPerSize();
    }
    return settings;
}

} // namespace nuvo
