#include "app/Regressionoutput.h"

#include "app/Console.h"
#include "engine/Regression.h"
#include "platform/Dataset.h"
#include "present/Report.h"
#include "present/Reportdocument.h"

#include <QDateTime>

#include <cmath>
#include <utility>

namespace nuvo {
namespace {

QStringList terms(const TRegression &regression)
{
    QStringList list;
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        list.append(regression.GetcVar(j).OutputTerm());
    return list;
}

/// The numbers that `at` gives for first to last.
template <class Function>
Json jsonNumbers(int first, int last, Function at)
{
    Json array = Json::array();
    for (int i = first; i <= last; ++i)
        array.push_back(jsonNumber(at(i)));
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

Json jsonReport(TRegression &regression)
{
    const ReportBlocks blocks = reportBlocks(regression);
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

Json jsonFigures(TRegression &regression)
{
    Json figures = Json::object();
    const int n = regression.GetNumObs();
    const int m = regression.GetNumVars();
    const auto coefficient = [&](int j) { return regression.Getb(j); };
    const auto standardError = [&](int j) { return std::sqrt(regression.GetCovar(j, j)); };
    figures["coefficients"] = jsonNumbers(0, m, coefficient);
    figures["standardErrors"] = jsonNumbers(0, m, standardError);
    figures["tValues"] = jsonNumbers(0, m, [&](int j) { return coefficient(j) / standardError(j); });
    figures["sse"] = jsonNumber(regression.GetSSE());
    figures["ssr"] = jsonNumber(regression.GetSSR());
    figures["sst"] = jsonNumber(regression.GetSST());
    figures["mse"] = jsonNumber(regression.GetMSE());
    figures["syx"] = jsonNumber(regression.GetSyx());
    figures["rSquared"] = jsonNumber(regression.GetRSquared());
    figures["f"] = jsonNumber(regression.GetF());
    figures["yBar"] = jsonNumber(regression.GetyBar());
    figures["yStdErr"] = jsonNumber(regression.GetyStdErr());
    figures["yMin"] = jsonNumber(regression.GetyMin());
    figures["yMax"] = jsonNumber(regression.GetyMax());
    figures["xBar"] = jsonNumbers(1, m, [&](int j) { return regression.GetxBar(j); });
    figures["xStdErr"] = jsonNumbers(1, m, [&](int j) { return regression.GetxStdErr(j); });
    figures["xMin"] = jsonNumbers(1, m, [&](int j) { return regression.GetxMin(j); });
    figures["xMax"] = jsonNumbers(1, m, [&](int j) { return regression.GetxMax(j); });
    for (const bool covariance : {true, false}) {
        Json rows = Json::array();
        for (int i = 0; i <= m; ++i) {
            rows.push_back(jsonNumbers(
                0, m, [&](int j) { return covariance ? regression.GetCovar(i, j) : regression.GetCorr(i, j); }));
        }
        figures[covariance ? "covariance" : "correlation"] = std::move(rows);
    }
    figures["fitted"] = jsonNumbers(1, n, [&](int i) { return regression.GetyHat(i); });
    figures["residuals"] = jsonNumbers(1, n, [&](int i) { return regression.Gete(i); });
    figures["report"] = jsonReport(regression);
    return figures;
}

} // namespace

Json jsonTexts(const QStringList &texts)
{
    Json array = Json::array();
    for (const QString &text : texts)
        array.push_back(jsonText(text));
    return array;
}

Json jsonRegression(TRegression &regression)
{
    Json output = Json::object();
    output["component"] = regression.DataSetForm() == TRegression::Form::Query ? "query" : "table";
    output["dataset"] = jsonText(regression.DataSourceName());
    output["description"] = jsonText(regression.Description());
    output["loaded"] = regression.Loaded();
    output["computed"] = regression.ResultsCurrent();
    output["observations"] = regression.GetNumObs();
    output["controls"] = regression.GetNumVars();
    output["degreesOfFreedom"] = regression.GetDOF();
    Json &records = output["records"];
    records["total"] = regression.DataSet().RecordCount();
    records["read"] = regression.RecordsRead();
    records["used"] = regression.RecordsUsed();
    records["skipped"] = regression.RecordsSkipped();
    output["dependentTerms"] = jsonTexts(dependentTerms(regression));
    output["response"] = jsonText(regression.ResponseVarY().OutputTerm());
    output["terms"] = jsonTexts(terms(regression));
    if (regression.ResultsCurrent())
        output.update(jsonFigures(regression));
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

QString textRegression(TRegression &regression, Matrices matrices)
{
    if (!regression.ResultsCurrent()) {
        return QStringLiteral("Data: %1\nNo result. %2\n")
            .arg(withoutControls(regression.DataSourceName()), leftOut(regression));
    }
    return reportPlainText(reportDocument(regression, QDateTime::currentDateTime()), matrices, outputWidth());
}

} // namespace nuvo
