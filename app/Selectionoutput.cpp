// SPDX-License-Identifier: MIT
#include "app/Selectionoutput.h"

#include "app/Console.h"
#include "app/Regressionoutput.h"
#include "select/Bkmain.h"
#include "select/Choice.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

namespace nuvo {
namespace {

const char *methodName(const TCorvane &selection)
{
    if (qobject_cast<const TStepWiseMLR *>(&selection) != nullptr)
        return "stepwise";
    if (qobject_cast<const TBackElimMLR *>(&selection) != nullptr)
        return "backward";
    if (qobject_cast<const TFwdSelectMLR *>(&selection) != nullptr)
        return "forward";
    return "optimal";
}

const char *endName(TRunEnd end)
{
    switch (end) {
    case TRunEnd::Converged:
        return "converged";
    case TRunEnd::Repeats:
        return "repeats";
    case TRunEnd::Stopped:
        break;
    }
    return "stopped";
}

void putModels(const TOptimizeMLR &optimal, Json &output)
{
    output["modelCount"] = optimal.ModelCount();
    Json &models = output["models"] = Json::array();
    for (int i = 1; i <= optimal.ModelCount(); ++i) {
        const TMLRModel model = optimal.GetModelList(i);
        Json one = Json::object();
        Json &transformations = one["transformations"] = Json::array();
        for (const QString &transformation : model.Transformations)
            transformations.push_back(jsonText(transformation));
        one["f"] = jsonNumber(model.F);
        one["rSquared"] = jsonNumber(model.RSquared);
        one["sSquared"] = jsonNumber(model.SSquared);
        models.push_back(std::move(one));
    }
}

Json jsonTerms(const Choice &choice, ControlSet set)
{
    return jsonTexts(choice.terms(set));
}

void putPath(const Choice &choice, Json &output)
{
    static constexpr const char *actions[] = {"add", "remove", "end"};
    Json &path = output["path"] = Json::array();
    for (const SearchStep &step : choice.search.path) {
        Json one = Json::object();
        one["action"] = actions[int(step.action)];
        if (step.action != SearchStep::Action::End) {
            one["term"] = jsonText(choice.term(step.control));
            one["f"] = jsonNumber(step.f);
            one["pValue"] = jsonNumber(step.pValue);
            one["sse"] = jsonNumber(step.sse);
        }
        Json &candidates = one["candidates"] = Json::array();
        for (const StepCandidate &candidate : step.candidates) {
            Json other = Json::object();
            other["term"] = jsonText(choice.term(candidate.control));
            other["f"] = jsonNumber(candidate.f);
            other["pValue"] = jsonNumber(candidate.pValue);
            candidates.push_back(std::move(other));
        }
        path.push_back(std::move(one));
    }
}

void putBySize(const Choice &choice, Json &output)
{
    Json &models = output["bySize"] = Json::array();
    for (const SubsetFigures &model : choice.subsets.bySize) {
        Json one = Json::object();
        one["size"] = model.size;
        one["terms"] = jsonTerms(choice, model.controls);
        one["sse"] = jsonNumber(model.sse);
        one["rSquared"] = jsonNumber(model.rSquared);
        one["adjustedRSquared"] = jsonNumber(model.adjustedRSquared);
        one["sSquared"] = jsonNumber(model.sSquared);
        one["f"] = jsonNumber(model.f);
        one["cp"] = jsonNumber(model.cp);
        one["aic"] = jsonNumber(model.aic);
        one["bic"] = jsonNumber(model.bic);
        one["press"] = jsonNumber(model.press);
        if (model.dependent)
            one["dependent"] = true;
        models.push_back(std::move(one));
    }
}

} // namespace

Json jsonSelection(TCorvane &selection)
{
    Json output = Json::object();
    output["method"] = methodName(selection);
    output["report"] = jsonText(selection.Report());
    output["steps"] = jsonTexts(selection.Steps());
    output["ended"] = endName(selection.Ended());
    if (const auto *optimal = qobject_cast<const TOptimizeMLR *>(&selection))
        putModels(*optimal, output);
    if (const std::shared_ptr<const Choice> choice = selection.Choice()) {
        if (choice->isOptimal())
            putBySize(*choice, output);
        else
            putPath(*choice, output);
    }
    output["selected"] = jsonRegression(figures(*selection.Regression(), Asked()));
    return output;
}

QString textSelection(TCorvane &selection, OutputFormat format)
{
    QString text;
    for (const QString &step : selection.Steps())
        text += withoutControls(DisplayLines(step)) + u'\n';
    if (!text.isEmpty())
        text += u'\n';
    for (const QString &line : DisplayLines(selection.Report()).split(u'\n'))
        text += withoutControls(line) + u'\n';
    return text + u'\n' + textRegression(figures(*selection.Regression(), Asked()), format);
}

bool isOwnReport(const TCorvane &selection, const Message &message)
{
    return message.type == TMsgDlgType::mtInformation && message.text == selection.Summary();
}

} // namespace nuvo
