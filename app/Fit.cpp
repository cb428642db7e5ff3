#include "app/Fit.h"

#include "app/Console.h"
#include "app/Model.h"
#include "app/Regressionoutput.h"
#include "present/Mlroutpt.h"
#include "present/Plotfile.h"

namespace nuvo {
namespace {

QString output(TRegression &regression, const FitOptions &options, const MessageLog &log)
{
    if (options.format == OutputFormat::Text)
        return textRegression(regression, options.matrices ? Matrices::Shown : Matrices::Left);
    Json json = jsonRegression(regression);
    json["messages"] = jsonMessages(log.messages());
    return jsonLines(json);
}

/// An interrupt waits until the files are whole.
void saveFiles(TRegression &regression, const FitOptions &options)
{
    const InterruptHold hold;
    if (!options.saveReport.isEmpty())
        saveReport(regression, options.saveReport);
    hold.check();
    if (!options.savePlots.isEmpty())
        savePlots(regression, options.savePlots);
    hold.check();
}

template <class Component>
bool fitOn(Component &component, const FitOptions &options)
{
    component.SetReportMessage(options.message);
    component.SetShowWarnings(options.warnings);
    component.SetShowLoadProgress(options.progress);

    {
        const MessageLog log;
        component.Open();
        if (component.ReLoad())
            component.Execute();
        if (component.ResultsCurrent())
            saveFiles(component, options);
        writeOutput(output(component, options, log));
    }
    // Whoever sits at the window gets its messages there.
    const bool fitted = component.ResultsCurrent();
    if (fitted && options.show)
        component.Output();
    return fitted;
}

} // namespace

bool fit(const FitOptions &options)
{
    return withModel(options, [&options](auto &component) { return fitOn(component, options); });
}

} // namespace nuvo
