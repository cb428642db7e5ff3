#include "app/Fit.h"

#include "app/Model.h"
#include "app/Regressionoutput.h"

namespace nuvo {
namespace {

FitResult fitOn(TDataSet &dataset, TRegression &regression, const FitOptions &options)
{
    regression.SetReportMessage(options.message);
    regression.SetShowWarnings(options.warnings);
    regression.SetShowLoadProgress(options.progress);

    const MessageLog log;
    dataset.Open();
    if (regression.ReLoad())
        regression.Execute();
    FitResult result;
    result.fitted = regression.ResultsCurrent();
    if (options.format == OutputFormat::Json) {
        Json output = jsonRegression(regression);
        output["messages"] = jsonMessages(log.messages());
        result.output = jsonLines(output);
    } else {
        result.output = textRegression(regression, options.matrices);
    }
    return result;
}

} // namespace

FitResult fit(const FitOptions &options)
{
    return withModel(options, [&options](auto &component) { return fitOn(component, component, options); });
}

} // namespace nuvo
