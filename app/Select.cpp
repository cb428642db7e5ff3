// SPDX-License-Identifier: MIT
#include "app/Select.h"

#include "app/Console.h"
#include "app/Interruptible.h"
#include "app/Model.h"
#include "app/Regressionoutput.h"
#include "app/Selectionoutput.h"
#include "app/Usage.h"
#include "platform/Errors.h"
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
  nuvostat select METHOD FILE.csv [--separator CHAR] [--decimal .|,]
           [--encoding NAME] [--null TEXT]... VARIABLES [OPTIONS]
METHOD is optimal, stepwise, backward or forward.
VARIABLES is --response TERM [--control TERM]...
)";

constexpr char selectFooter[] = R"(
The methods start from a fit with all variables and leave the model that they
choose, which is printed after their steps and their report:
  optimal   fits every subset and keeps the best --models by --criterion,
            nondominated, min-s2 or max-f; one place always goes to the model
            with all variables, so ask for more than one
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

With --rule textbook the candidates share one sample, the records that all
controls can use, and partial F is (SSE before - SSE after) / (SSE after / DOF
after): forward adds the largest while it is above the threshold, backward
takes out the smallest while it is below, stepwise does both until nothing is
left to do. Instead of an F a threshold can be a probability, --p-in, --p-out
or --p. optimal compares all subsets on that sample with one of the criteria
cp, aic, bic, adj-r2 and press, with --sizes, and with --rule textbook; the
best one by the criterion (cp unless told) is left, or the one that --apply
names by its number in the list.

Examples:
  nuvostat select stepwise --database demo.db --table Longley --response y
           --control x2 --control x3 --control x4 --f-in 3.5 --f-out 3
  nuvostat select optimal --database demo.db --table Longley --response y
           --control x2 --control x3 --criterion min-s2 --models 5
  nuvostat select optimal --database demo.db --table Longley --response y
           --control x2 --control x3 --criterion bic --sizes 3
  nuvostat select stepwise --database demo.db --table Longley --response y
           --control x2 --control x3 --rule textbook --p-in 0.05 --p-out 0.1)";

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
        if (options.p)
            method->SetP(*options.p);
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
        if (options.pIn)
            stepwise->SetPIn(*options.pIn);
        if (options.pOut)
            stepwise->SetPOut(*options.pOut);
        return searching(std::move(stepwise));
    }
    auto optimal = std::make_unique<SearchOnTerminal<TOptimizeMLR>>();
    optimal->DrawProgress(options.progress); // it has no switch of its own
    if (options.criterion)
        optimal->SetOptCriteria(*options.criterion);
    if (options.models)
        optimal->SetModelsToSave(*options.models);
    if (options.sizes)
        optimal->SetModelsPerSize(*options.sizes);
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

/// Leaves another model of the list. A stopped run has none.
void apply(TCorvane &method, int number)
{
    if (method.Ended() == TRunEnd::Stopped)
        return;
    try {
        method.SelectModel(number);
    } catch (const EStringListError &error) {
        throw UsageError(QStringLiteral("--apply %1: %2").arg(QString::number(number), error.Message()));
    }
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
    method->SetRule(options.rule);
    bind(*method, component);

    const MessageLog log([&method](const Message &message) { return isOwnReport(*method, message); });
    component.Open();
    {
        const InterruptibleLoads interruptible(component);
        const bool loaded = component.ReLoad();
        interruptible.check();
        if (loaded)
            component.Execute();
        method->Run();
        interruptible.check();
    }
    if (options.apply)
        apply(*method, *options.apply);
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
    rule_ = addValue("--rule", "RULE", "written or textbook (written unless told)");
    criterion_ = addValue("--criterion", "NAME", "By what models are ranked; see below", "optimal");
    models_ = addValue("--models", "N", "How many models to keep, up to 20", "optimal");
    sizes_ = addValue("--sizes", "K", "List the K best of each size", "optimal");
    apply_ = addValue("--apply", "N", "Leave the N-th model of the list", "optimal");
    fIn_ = addValue("--f-in", "X", "The threshold to enter", "stepwise");
    fOut_ = addValue("--f-out", "X", "The threshold to stay", "stepwise");
    fPercent_ = addValue("--f-percent", "COLUMN", "\"1 Percent\", \"5 Percent\" or \"10 Percent\"", "stepwise");
    pIn_ = addValue("--p-in", "P", "The probability to enter", "stepwise");
    pOut_ = addValue("--p-out", "P", "The probability to stay", "stepwise");
    f_ = addValue("--f", "X", "The threshold", "backward and forward");
    p_ = addValue("--p", "P", "The probability of the threshold", "backward and forward");
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
    if (options.csv && options.csv->head)
        return options;
    if (options.csv && isGiven(fTable_))
        throw UsageError(QStringLiteral(
            "--f-table names a table of a database, which a CSV file has not; thresholds can be numbers."));
    refuseForeign({criterion_, models_, sizes_, apply_}, options.method == Method::Optimal);
    refuseForeign({fIn_, fOut_, fPercent_, pIn_, pOut_}, options.method == Method::Stepwise);
    refuseForeign({f_, p_}, options.method == Method::Backward || options.method == Method::Forward);
    refuseForeign({fTable_}, options.method != Method::Optimal);
    if (isGiven(criterion_))
        options.criterion = oneOf<TOptimizationType>(criterion_, {{"nondominated", TOptimizationType::Nondominated},
                                                                  {"min-s2", TOptimizationType::MinSsquared},
                                                                  {"max-f", TOptimizationType::MaxFValue},
                                                                  {"cp", TOptimizationType::Cp},
                                                                  {"aic", TOptimizationType::AIC},
                                                                  {"bic", TOptimizationType::BIC},
                                                                  {"adj-r2", TOptimizationType::AdjustedRSquared},
                                                                  {"press", TOptimizationType::PRESS}});
    if (isGiven(models_))
        options.models = wholeNumber(models_, INT_MIN, INT_MAX);
    options.f = optionalNumber(f_);
    options.fIn = optionalNumber(fIn_);
    options.fOut = optionalNumber(fOut_);
    options.fPercent = optionalText(fPercent_);
    options.fTable = optionalText(fTable_);
    readChoice(options);
    return options;
}

void SelectCommand::readChoice(SelectOptions &options) const
{
    constexpr int mostListed = 1023;
    if (isGiven(rule_))
        options.rule = oneOf<TSelectionRule>(
            rule_, {{"written", TSelectionRule::Written}, {"textbook", TSelectionRule::Textbook}});
    if (isGiven(sizes_))
        options.sizes = wholeNumber(sizes_, 1, INT_MAX);
    if (isGiven(apply_))
        options.apply = wholeNumber(apply_, 1, mostListed);
    const bool writes = options.rule == TSelectionRule::Written;
    const bool onOneSample = options.criterion && *options.criterion >= TOptimizationType::Cp;
    if (isGiven(rule_) && writes && (options.sizes || onOneSample))
        throw UsageError(QStringLiteral("%1 compares all models on one sample, which --rule written does not.")
                             .arg(options.sizes ? QStringLiteral("--sizes")
                                                : QStringLiteral("--criterion ") + optionText(criterion_)));
    if (options.criterion == TOptimizationType::Nondominated && (options.sizes || !writes))
        throw UsageError(QStringLiteral("--criterion nondominated names no best model, which %1 asks for.")
                             .arg(options.sizes ? QStringLiteral("--sizes") : QStringLiteral("--rule textbook")));
    options.p = probability(p_, {f_, fTable_});
    options.pIn = probability(pIn_, {fIn_, fPercent_, fTable_});
    options.pOut = probability(pOut_, {fOut_, fTable_});
    if (options.pIn && !options.pOut && isGiven(fOut_))
        throw UsageError(
            QStringLiteral("--p-in without --p-out is the threshold to stay too, and --f-out is another."));
}

std::optional<double> SelectCommand::probability(const CLI::Option *option,
                                                 std::initializer_list<const CLI::Option *> replaced) const
{
    const std::optional<double> value = optionalNumber(option);
    if (!value)
        return value;
    if (!(*value > 0 && *value < 1))
        throw UsageError(QStringLiteral("%1 is a probability, more than 0 and less than 1, not %2.")
                             .arg(optionName(option), optionText(option)));
    if (!isGiven(rule_) || optionText(rule_) != u"textbook")
        throw UsageError(QStringLiteral("%1 belongs to --rule textbook.").arg(optionName(option)));
    for (const CLI::Option *other : replaced) {
        if (isGiven(other))
            throw UsageError(
                QStringLiteral("%1 and %2 exclude each other.").arg(optionName(option), optionName(other)));
    }
    return value;
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
