// SPDX-License-Identifier: MIT
#include "app/Fit.h"

#include "app/Console.h"
#include "app/Interruptible.h"
#include "app/Model.h"
#include "app/Observationsfile.h"
#include "app/Regressionoutput.h"
#include "app/Usage.h"
#include "platform/Errors.h"
#include "present/Mlroutpt.h"
#include "present/Page.h"
#include "present/Plotfile.h"
#include "present/Reportdocument.h"
#include "present/figures/Fitdata.h"

namespace nuvo {
namespace {

constexpr char fitUsage[] = R"(Usage:
  nuvostat fit --database DB --table NAME [--filter EXPRESSION]
           [--order FIELD[,FIELD...]] VARIABLES [OPTIONS]
  nuvostat fit --database DB --sql TEXT VARIABLES [OPTIONS]
  nuvostat fit FILE.csv [--separator CHAR] [--decimal .|,] [--encoding NAME]
           [--null TEXT]... [--filter EXPRESSION] [--order FIELD[,FIELD...]]
           VARIABLES [OPTIONS]
  nuvostat fit FILE.csv --head N
VARIABLES is --response TERM [--control TERM]...
)";

constexpr char fitFooter[] = R"(
Files are written when a fit came out, each whole or not at all, before
anything is printed; that needs no display. A report's .png is a picture of the
report window, its other files are the page of statistics, .pdf and .html with
the plots below it. The plots have axes:
response-x1.png, residual-fitted.png, residual-order.png, residual-x1.png,
normal-quantiles.png, scale-location.png, residual-leverage.png, added-x1.png,
observed-fitted.png and residual-distribution.png. The canvases are those of the
plot window, 327 x 185 pixels: scatter-x1.png, residual-order.png, ecdf.png and
so on.
A line of --save-observations has the record, the response, each term, fitted
value, residual, leverage, both kinds of scaled residuals, Cook's distance and
DFFITS; what does not exist is empty.
--at takes a value for each field of the control variables and predicts the
response's term, the logarithm of a response Ln(price).
A CSV file is read as "nuvostat import" reads it, into a temporary database that
is removed at the end; --head shows what is understood of it.

Examples:
  nuvostat fit sales.csv --response 'Ln(price)' --control size
  nuvostat fit --database demo.db --table Longley --response y
           --control x2 --control 'Ln(x3)' --matrices
  nuvostat fit --database postgresql://ann@localhost/shop --format json
           --sql 'SELECT price, size, age FROM houses WHERE price > 0'
           --response 'Ln(price)' --control size --control 'age^2'
  nuvostat fit --database demo.db --table Longley --response y --control x2
           --save-report longley.pdf --save-plots plots)";

/// The figures that are asked for, and those that a file of the observations has.
Figures takeFigures(TRegression &regression, const FitOptions &options)
{
    Asked asked{options.level, options.influence || !options.saveObservations.isEmpty(), options.robust};
    Figures taken = figures(regression, asked);
    if (!taken.current)
        return taken;
    for (const FieldValues &values : options.at)
        taken.predictions.push_back({values, regression.PredictAt(values, options.level)});
    return taken;
}

PageStyle pageStyle(const FitOptions &options)
{
    PageStyle style;
    style.influence = options.influence;
    style.matrices = options.matrices;
    return style;
}

QString output(const Figures &figures, const FitOptions &options, const MessageLog &log)
{
    if (options.format != OutputFormat::Json)
        return textRegression(figures, options.format, pageStyle(options));
    Json json = jsonRegression(figures);
    json["messages"] = jsonMessages(log.messages());
    return jsonLines(json);
}

/// What follows files that are written: an error says that these are there.
template <class Action>
void withFiles(const QStringList &written, const Action &action)
{
    try {
        action();
    } catch (const EPlatformError &error) {
        if (written.isEmpty())
            throw;
        throw EPlatformError(
            QStringLiteral("%1 Written: %2.").arg(error.Message(), written.join(QStringLiteral(" and "))));
    }
}

/// An interrupt waits until the files are whole. \return what was written
QStringList saveFiles(TRegression &regression, const Figures &figures, const FitOptions &options)
{
    const InterruptHold hold;
    QStringList written;
    const auto save = [&](const QString &path, const QString &what, const auto &write) {
        if (path.isEmpty())
            return;
        withFiles(written, write);
        written.append(what.arg(path));
        hold.check();
    };
    std::vector<Figure> drawn;
    if (!options.savePlots.isEmpty() || isFigurePageFile(options.saveReport))
        drawn = fitFigures(figureData(regression, options.level));
    save(options.saveReport, QStringLiteral("the report \"%1\""), [&] {
        if (isPageFile(options.saveReport))
            savePage(statisticsPage(figures, pageStyle(options)), options.saveReport, drawn);
        else
            saveReport(regression, options.saveReport);
    });
    save(options.saveObservations, QStringLiteral("the observations \"%1\""),
         [&] { saveObservations(figures, options.saveObservations); });
    save(options.savePlots, QStringLiteral("the plots in \"%1\""),
         [&] { saveFigures(drawn, options.savePlots, options.plotFormat, options.plotSize); });
    save(options.saveCanvases, QStringLiteral("the canvases in \"%1\""),
         [&] { savePlots(regression, options.saveCanvases); });
    return written;
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
        {
            const InterruptibleLoads interruptible(component);
            const bool loaded = component.ReLoad();
            interruptible.check();
            if (loaded)
                component.Execute();
        }
        Figures figures = takeFigures(component, options);
        QStringList written;
        if (figures.current)
            written = saveFiles(component, figures, options);
        if (!options.influence)
            figures.influence.reset(); // it was for the file
        withFiles(written, [&] { writeOutput(output(figures, options, log)); });
    }
    // Whoever sits at the window gets its messages there.
    const bool fitted = component.ResultsCurrent();
    if (fitted && options.show)
        component.Output();
    return fitted;
}

/// "800x600"
QSize plotSize(const CLI::Option *option)
{
    const QStringList sides = optionText(option).split(u'x', Qt::KeepEmptyParts, Qt::CaseInsensitive);
    bool wide = false;
    bool high = false;
    const QSize size(sides.value(0).toInt(&wide), sides.value(1).toInt(&high));
    const auto fits = [](int side) { return side >= LeastPlotSide && side <= MostPlotSide; };
    if (sides.size() != 2 || !wide || !high || !fits(size.width()) || !fits(size.height()))
        throw UsageError(QStringLiteral("%1 is WIDTHxHEIGHT, each a whole number from %2 to %3, not \"%4\".")
                             .arg(optionName(option), QString::number(LeastPlotSide), QString::number(MostPlotSide),
                                  optionText(option)));
    return size;
}

/// A file or directory that is given, or nothing. \param kind "directory" or "file"
QString pathText(const CLI::Option *option, const QString &kind)
{
    if (isGiven(option) && optionText(option).isEmpty())
        throw UsageError(
            QStringLiteral("%1 takes the name of a %2, not an empty text.").arg(optionName(option), kind));
    return optionText(option);
}

} // namespace

FitCommand::FitCommand(CLI::App &program)
    : ModelSyntax(program, "fit", "Fit a regression and print its report", fitUsage, fitFooter)
{
    addModel();
    message_ = addValue("--message", "TEXT", "A message for the report's foot");
    warnings_ = addFlag("--warnings", "Warn when records are too many to be used");
    matrices_ = addFlag("--matrices", "Print the coefficients' covariances and correlations");
    saveReport_ = addValue("--save-report", "FILE", "Write the page: .pdf, .html, .txt, .md or .png");
    savePlots_ = addValue("--save-plots", "DIR", "Write all figures with axes; makes DIR if need be");
    plotFormat_ = addValue("--plot-format", "png|svg|pdf", "What the plots are written as; png unless told");
    plotSize_ = addValue("--plot-size", "WxH", "The plots' pixels; 800x600 unless told");
    saveCanvases_ = addValue("--save-canvases", "DIR", "Write the plot window's canvases as PNG");
    saveObservations_ = addValue("--save-observations", "FILE", "Write a line for each observation as CSV");
    level_ = addValue("--level", "P", "The level of intervals; 0.95 unless told");
    influence_ = addFlag("--influence", "Tell what each observation does to the fit");
    robust_ = addValue("--robust", "KIND", "Robust standard errors: hc0, hc1, hc2, hc3 or hac");
    at_ = addValues("--at", "FIELD=VALUE,...", "Predict for these values; can be repeated");
    show_ = addFlag("--show", "Show the report in a window, until it is closed");
}

FitOptions FitCommand::read() const
{
    FitOptions options;
    readModel(options);
    if (options.csv && options.csv->head)
        return options;
    options.message = optionText(message_);
    options.warnings = isGiven(warnings_);
    options.matrices = isGiven(matrices_);
    options.saveReport = optionText(saveReport_);
    if (isGiven(saveReport_) && !isPageFile(options.saveReport) && !isReportFile(options.saveReport))
        throw UsageError(
            QStringLiteral("--save-report takes a name that ends in .pdf, .html, .txt, .md or .png, not \"%1\".")
                .arg(options.saveReport));
    options.savePlots = pathText(savePlots_, QStringLiteral("directory"));
    if (isGiven(plotFormat_))
        options.plotFormat = oneOf<FigureFormat>(
            plotFormat_, {{"png", FigureFormat::Png}, {"svg", FigureFormat::Svg}, {"pdf", FigureFormat::Pdf}});
    if (isGiven(plotSize_))
        options.plotSize = plotSize(plotSize_);
    options.saveCanvases = pathText(saveCanvases_, QStringLiteral("directory"));
    options.saveObservations = pathText(saveObservations_, QStringLiteral("file"));
    options.level = optionalNumber(level_).value_or(options.level);
    if (!(options.level > 0 && options.level < 1))
        throw UsageError(
            QStringLiteral("--level is more than 0 and less than 1, not \"%1\".").arg(optionText(level_)));
    options.influence = isGiven(influence_);
    if (isGiven(robust_))
        options.robust = oneOf<RobustKind>(robust_, {{"hc0", RobustKind::Hc0},
                                                     {"hc1", RobustKind::Hc1},
                                                     {"hc2", RobustKind::Hc2},
                                                     {"hc3", RobustKind::Hc3},
                                                     {"hac", RobustKind::Hac}});
    for (const QString &values : optionTexts(at_))
        options.at.append(parseFieldValues(values, options.controls));
    for (const FieldValues &values : options.at)
        checkFieldValues(options.controls, values); // before the database is asked
    options.show = isGiven(show_);
    return options;
}

bool fit(const FitOptions &options)
{
    return withModel(options, [&options](auto &component) { return fitOn(component, options); });
}

} // namespace nuvo
