#include "app/Select.h"

#include "app/Console.h"
#include "app/Model.h"
#include "app/Regressionoutput.h"
#include "app/Selectionoutput.h"
#include "app/Usage.h"
#include "select/Bkmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

#include <climits>

namespace nuvo {
namespace {

constexpr char selectUsage[] = R"(Usage:
  nuvostat select METHOD --database DB --table NAME [--filter EXPRESSION]
           [--order FIELD[,FIELD...]] VARIABLES [OPTIONS]
  nuvostat select METHOD --database DB --sql TEXT VARIABLES [OPTIONS]
METHOD is optimal, stepwise, backward or forward.
VARIABLES is --response TERM [--control TERM]...
)";

constexpr char selectFooter[] = R"(
The methods start from a fit with all variables and leave the model that they
choose, which is printed after their steps and their report:
  optimal   fits every subset and keeps the best --models by --criterion; one
            place always goes to the model with all variables, so ask for more
            than one
  stepwise  adds the variable with the smallest residual mean square while its
            partial F is above --f-in, and takes out those whose squared t is
            below --f-out
  backward  takes out one variable after the other while F is above --f
  forward   adds one variable after the other while F is above --f
The thresholds come from an F table (--f-table, made by nuvostat ftable) where
one is given: from its column "95 Percent", and for the variables that stepwise
adds from the column --f-percent; where that column is missing or not named,
--f-out stands in. What is not given is the component's default: nondominated,
one model, and 4 for each threshold.

Examples:
  nuvostat select stepwise --database demo.db --table Longley --response y
           --control x2 --control x3 --control x4 --f-in 3.5 --f-out 3
  nuvostat select optimal --database demo.db --table Longley --response y
           --control x2 --control x3 --criterion min-s2 --models 5)";

/// One of the four methods with its options, not bound yet.
std::unique_ptr<TCorvane> makeMethod(const SelectOptions &options, TTable *fTable)
{
    using Method = SelectOptions::Method;
    const auto searching = [&](auto method) -> std::unique_ptr<TCorvane> {
        method->SetFDistTable(fTable);
        method->SetShowReport(true);
        method->SetShowProgress(options.progress);
        return method;
    };
    const auto withF = [&](auto method) {
        if (options.f)
            method->SetFDefault(*options.f);
        return searching(std::move(method));
    };
    if (options.method == Method::Backward)
        return withF(std::make_unique<SearchOnTerminal<TBackElimMLR>>());
    if (options.method == Method::Forward)
        return withF(std::make_unique<SearchOnTerminal<TFwdSelectMLR>>());
    if (options.method == Method::Stepwise) {
        auto stepwise = std::make_unique<SearchOnTerminal<TStepWiseMLR>>();
        if (options.fIn)
            stepwise->SetFInDefault(*options.fIn);
        if (options.fOut)
            stepwise->SetFOutDefault(*options.fOut);
        if (options.fPercent)
            stepwise->SetFPercent(*options.fPercent);
        return searching(std::move(stepwise));
    }
    auto optimal = std::make_unique<SearchOnTerminal<TOptimizeMLR>>();
    optimal->DrawProgress(options.progress); // it has no switch of its own
    if (options.criterion)
        optimal->SetOptCriteria(*options.criterion);
    if (options.models)
        optimal->SetModelsToSave(*options.models);
    return optimal;
}

void bind(TCorvane &selection, TMLRTable &table)
{
    selection.SetTable(&table);
}

void bind(TCorvane &selection, TMLRQuery &query)
{
    selection.SetQuery(&query);
}

template <class Component>
bool selectOn(Component &component, const SelectOptions &options)
{
    TTable fTable;
    if (options.fTable) {
        fTable.SetDatabaseName(options.database);
        fTable.SetTableName(*options.fTable);
        fTable.Open();
    }
    const std::unique_ptr<TCorvane> method = makeMethod(options, options.fTable ? &fTable : nullptr);
    bind(*method, component);

    const MessageLog log([&method](const Message &message) { return isOwnReport(*method, message); });
    component.Open();
    if (component.ReLoad())
        component.Execute();
    method->Run();
    if (options.format == OutputFormat::Json) {
        Json json = jsonSelection(*method);
        json["messages"] = jsonMessages(log.messages());
        writeOutput(jsonLines(json));
    } else {
        writeOutput(textSelection(*method, options.format));
    }
    return component.Loaded();
}

} // namespace

SelectCommand::SelectCommand(CLI::App &program)
    : ModelSyntax(program, "select", "Choose a regression's variables", selectUsage, selectFooter)
{
    method_ = addRequired("METHOD", "", "optimal, stepwise, backward or forward", "Method");
    addModel();
    criterion_ = addValue("--criterion", "NAME", "nondominated, min-s2 or max-f", "optimal");
    models_ = addValue("--models", "N", "How many models to keep, up to 20", "optimal");
    fIn_ = addValue("--f-in", "X", "The threshold to enter", "stepwise");
    fOut_ = addValue("--f-out", "X", "The threshold to stay", "stepwise");
    fPercent_ = addValue("--f-percent", "COLUMN", "\"1 Percent\", \"5 Percent\" or \"10 Percent\"", "stepwise");
    f_ = addValue("--f", "X", "The threshold", "backward and forward");
    fTable_ = addValue("--f-table", "NAME", "A table of F quantiles in the same database",
                       "stepwise, backward and forward");
}

SelectOptions SelectCommand::read() const
{
    using Method = SelectOptions::Method;
    SelectOptions options;
    options.method = oneOf<Method>(method_, {{"optimal", Method::Optimal},
                                             {"stepwise", Method::Stepwise},
                                             {"backward", Method::Backward},
                                             {"forward", Method::Forward}});
    readModel(options);
    refuseForeign({criterion_, models_}, options.method == Method::Optimal);
    refuseForeign({fIn_, fOut_, fPercent_}, options.method == Method::Stepwise);
    refuseForeign({f_}, options.method == Method::Backward || options.method == Method::Forward);
    refuseForeign({fTable_}, options.method != Method::Optimal);
    if (isGiven(criterion_))
        options.criterion = oneOf<TOptimizationType>(criterion_, {{"nondominated", TOptimizationType::Nondominated},
                                                                  {"min-s2", TOptimizationType::MinSsquared},
                                                                  {"max-f", TOptimizationType::MaxFValue}});
    if (isGiven(models_))
        options.models = wholeNumber(models_, INT_MIN, INT_MAX);
    options.f = optionalNumber(f_);
    options.fIn = optionalNumber(fIn_);
    options.fOut = optionalNumber(fOut_);
    options.fPercent = optionalText(fPercent_);
    options.fTable = optionalText(fTable_);
    return options;
}

void SelectCommand::refuseForeign(std::initializer_list<const CLI::Option *> options, bool belong) const
{
    for (const CLI::Option *option : options) {
        if (!belong && isGiven(option))
            throw UsageError(QStringLiteral("%1 belongs to %2, not to %3.")
                                 .arg(optionName(option), optionGroup(option), optionText(method_)));
    }
}

bool select(const SelectOptions &options)
{
    return withModel(options, [&options](auto &component) { return selectOn(component, options); });
}

} // namespace nuvo
