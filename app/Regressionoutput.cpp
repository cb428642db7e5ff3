#include "app/Regressionoutput.h"

#include "app/Console.h"
#include "present/Report.h"

namespace nuvo {
namespace {

Json jsonNumbers(const Figures::Numbers &numbers)
{
    Json array = Json::array();
    for (const double number : numbers)
        array.push_back(jsonNumber(number));
    return array;
}

Json jsonMatrix(const Figures::Matrix &matrix)
{
    Json rows = Json::array();
    for (const Figures::Numbers &row : matrix)
        rows.push_back(jsonNumbers(row));
    return rows;
}

/// One figure of each of them.
template <class Item>
Json jsonOfEach(const std::vector<Item> &items, double Item::*figure)
{
    Json array = Json::array();
    for (const Item &item : items)
        array.push_back(jsonNumber(item.*figure));
    return array;
}

const char *typeName(TMsgDlgType type)
{
    switch (type) {
    case TMsgDlgType::mtWarning:
        return "warning";
    case TMsgDlgType::mtError:
        return "error";
    case TMsgDlgType::mtInformation:
        return "information";
    case TMsgDlgType::mtConfirmation:
        break;
    }
    return "question";
}

Json jsonReport(const Figures &figures)
{
    const ReportBlocks blocks = reportBlocks(figures);
    const WindowTexts window = windowTexts(blocks);
    Json report = Json::object();
    report["DepVar"] = jsonText(blocks.DepVar);
    report["IndepVars"] = jsonText(blocks.IndepVars);
    report["DataCount"] = jsonText(blocks.DataCount);
    report["DOF"] = jsonText(blocks.DOF);
    report["Coeffs"] = jsonText(blocks.Coeffs);
    report["SSquared"] = jsonText(blocks.SSquared);
    report["SSE"] = jsonText(blocks.SSE);
    report["SSR"] = jsonText(blocks.SSR);
    report["Means"] = jsonText(blocks.Means);
    report["StdDevs"] = jsonText(blocks.StdDevs);
    report["StdErrs"] = jsonText(blocks.StdErrs);
    report["TValues"] = jsonText(blocks.TValues);
    report["FStat"] = jsonText(blocks.FStat);
    report["CovarianceLines"] = jsonTexts(blocks.CovarianceLines);
    report["CorrelationLines"] = jsonTexts(blocks.CorrelationLines);
    report["SST"] = jsonText(window.SST);
    report["RSquared"] = jsonText(window.RSquared);
    return report;
}

void putFigures(const Figures &figures, Json &output)
{
    using Coefficient = Figures::Coefficient;
    output["coefficients"] = jsonOfEach(figures.coefficients, &Coefficient::estimate);
    output["standardErrors"] = jsonOfEach(figures.coefficients, &Coefficient::standardError);
    output["tValues"] = jsonOfEach(figures.coefficients, &Coefficient::t);
    output["sse"] = jsonNumber(figures.sums.residual);
    output["ssr"] = jsonNumber(figures.sums.regression);
    output["sst"] = jsonNumber(figures.sums.total);
    output["mse"] = jsonNumber(figures.sums.mse);
    output["syx"] = jsonNumber(figures.sums.syx);
    output["rSquared"] = jsonNumber(figures.sums.rSquared);
    output["f"] = jsonNumber(figures.sums.f);
    using Variable = Figures::Variable;
    output["yBar"] = jsonNumber(figures.response.mean);
    output["yStdErr"] = jsonNumber(figures.response.standardDeviation);
    output["yMin"] = jsonNumber(figures.response.least);
    output["yMax"] = jsonNumber(figures.response.greatest);
    output["xBar"] = jsonOfEach(figures.columns, &Variable::mean);
    output["xStdErr"] = jsonOfEach(figures.columns, &Variable::standardDeviation);
    output["xMin"] = jsonOfEach(figures.columns, &Variable::least);
    output["xMax"] = jsonOfEach(figures.columns, &Variable::greatest);
    output["covariance"] = jsonMatrix(figures.covariance);
    output["correlation"] = jsonMatrix(figures.correlation);
    output["fitted"] = jsonNumbers(figures.fitted);
    output["residuals"] = jsonNumbers(figures.residuals);
    output["report"] = jsonReport(figures);
}

} // namespace

Json jsonTexts(const QStringList &texts)
{
    Json array = Json::array();
    for (const QString &text : texts)
        array.push_back(jsonText(text));
    return array;
}

Json jsonRegression(const Figures &figures)
{
    Json output = Json::object();
    output["component"] = figures.query ? "query" : "table";
    output["dataset"] = jsonText(figures.source);
    output["description"] = jsonText(figures.description);
    output["loaded"] = figures.loaded;
    output["computed"] = figures.current;
    output["observations"] = figures.observations;
    output["controls"] = figures.controls;
    output["degreesOfFreedom"] = figures.degreesOfFreedom;
    Json &records = output["records"];
    records["total"] = figures.records.total ? Json(*figures.records.total) : Json();
    records["read"] = figures.records.read;
    records["used"] = figures.records.used;
    records["skipped"] = figures.records.skipped;
    output["dependentTerms"] = jsonTexts(figures.dependentTerms);
    output["response"] = jsonText(figures.response.term);
    Json &terms = output["terms"] = Json::array();
    for (const Figures::Variable &column : figures.columns)
        terms.push_back(jsonText(column.term));
    if (figures.current)
        putFigures(figures, output);
    return output;
}

Json jsonMessages(const QList<Message> &messages)
{
    Json array = Json::array();
    for (const Message &message : messages) {
        Json one = Json::object();
        one["type"] = typeName(message.type);
        one["text"] = jsonText(message.text);
        array.push_back(std::move(one));
    }
    return array;
}

QString textRegression(const Figures &figures, Matrices matrices)
{
    if (!figures.current) {
        return QStringLiteral("Data: %1\nNo result. %2\n").arg(withoutControls(figures.source), leftOut(figures));
    }
    return reportPlainText(figures, matrices, outputWidth());
}

} // namespace nuvo
