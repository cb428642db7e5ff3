#include "app/Select.h"

#include "app/Console.h"
#include "app/Model.h"
#include "app/Regressionoutput.h"
#include "app/Selectionoutput.h"
#include "select/Bckmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

namespace nuvo {
namespace {

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
        writeOutput(textSelection(*method));
    }
    return component.Loaded();
}

} // namespace

bool select(const SelectOptions &options)
{
    return withModel(options, [&options](auto &component) { return selectOn(component, options); });
}

} // namespace nuvo
