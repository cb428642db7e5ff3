// SPDX-License-Identifier: MIT
#include "app/Regressionoutput.h"

#include "app/Console.h"
#include "present/Report.h"
#include "present/Textreport.h"

#include <cmath>
#include <utility>

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

Json jsonInterval(const Interval &interval)
{
    return Json::array({jsonNumber(interval[0]), jsonNumber(interval[1])});
}

Json jsonInference(const Inference &inference)
{
    Json output = Json::object();
    output["level"] = jsonNumber(inference.level);
    output["pValues"] = jsonNumbers(inference.pValues);
    Json &confidence = output["confidence"] = Json::array();
    for (const Interval &interval : inference.confidence)
        confidence.push_back(jsonInterval(interval));
    output["fPValue"] = jsonNumber(inference.fPValue);
    output["adjustedRSquared"] = jsonNumber(inference.adjustedRSquared);
    output["logLikelihood"] = jsonNumber(inference.logLikelihood);
    output["aic"] = jsonNumber(inference.aic);
    output["aicc"] = jsonNumber(inference.aicc);
    output["bic"] = jsonNumber(inference.bic);
    output["hqc"] = jsonNumber(inference.hqc);
    output["standardized"] = jsonNumbers(inference.standardized);
    output["tolerance"] = jsonNumbers(inference.tolerance);
    output["vif"] = jsonNumbers(inference.vif);
    output["partialCorrelations"] = jsonNumbers(inference.partialCorrelations);
    output["semipartialCorrelations"] = jsonNumbers(inference.semipartialCorrelations);
    output["sequentialSumsOfSquares"] = jsonNumbers(inference.sequentialSumsOfSquares);
    output["partialSumsOfSquares"] = jsonNumbers(inference.partialSumsOfSquares);
    output["conditionIndices"] = jsonNumbers(inference.conditionIndices);
    return output;
}

/// null for a test that does not exist; `df` is null for one without degrees of freedom.
Json jsonTest(const TestResult &test, const Json &df)
{
    if (!std::isfinite(test.statistic))
        return {};
    Json output = Json::object();
    output["statistic"] = jsonNumber(test.statistic);
    if (!df.is_null())
        output["df"] = df;
    output["pValue"] = jsonNumber(test.pValue);
    return output;
}

Json jsonDiagnostics(const Diagnostics &diagnostics)
{
    // Of a test that does not exist they may be no numbers.
    const auto whole = [](double degrees) { return std::isfinite(degrees) ? Json((long long)(degrees)) : Json(0); };
    Json output = Json::object();
    output["durbinWatson"] = jsonNumber(diagnostics.durbinWatson);
    output["press"] = jsonNumber(diagnostics.press);
    output["predictedRSquared"] = jsonNumber(diagnostics.predictedRSquared);
    output["breuschPagan"] = jsonTest(diagnostics.breuschPagan, whole(diagnostics.breuschPagan.degrees));
    output["white"] = jsonTest(diagnostics.white, whole(diagnostics.white.degrees));
    output["jarqueBera"] = jsonTest(diagnostics.jarqueBera, whole(diagnostics.jarqueBera.degrees));
    output["shapiroWilk"] = jsonTest(diagnostics.shapiroWilk, {});
    output["reset"] = jsonTest(diagnostics.reset,
                               Json::array({whole(diagnostics.reset.degrees), whole(diagnostics.resetDenominator)}));
    return output;
}

Json jsonInfluence(const Figures &figures)
{
    const Influence &influence = *figures.influence;
    Json output = Json::object();
    output["record"] = figures.record;
    output["leverage"] = jsonNumbers(influence.leverage);
    output["standardizedResiduals"] = jsonNumbers(influence.standardizedResiduals);
    output["studentizedResiduals"] = jsonNumbers(influence.studentizedResiduals);
    output["cook"] = jsonNumbers(influence.cook);
    output["dffits"] = jsonNumbers(influence.dffits);
    output["covRatio"] = jsonNumbers(influence.covRatio);
    Json &dfbetas = output["dfbetas"] = Json::array();
    for (std::size_t i = 0; i < influence.leverage.size(); ++i) {
        Json row = Json::array();
        for (const Figures::Numbers &column : influence.dfbetas)
            row.push_back(jsonNumber(column[i]));
        dfbetas.push_back(std::move(row));
    }
    return output;
}

Json jsonPrediction(const Figures::Prediction &prediction)
{
    Json output = Json::object();
    Json &at = output["at"] = Json::object();
    for (const auto &[field, value] : prediction.at)
        at[field.toStdString()] = jsonNumber(value);
    output["value"] = jsonNumber(prediction.predicted.value);
    output["standardError"] = jsonNumber(prediction.predicted.standardError);
    output["confidence"] = jsonInterval(prediction.predicted.confidence);
    output["prediction"] = jsonInterval(prediction.predicted.prediction);
    return output;
}

/// What was asked for beyond the fit.
void putAsked(const Figures &figures, Json &output)
{
    if (figures.inference)
        output["inference"] = jsonInference(*figures.inference);
    if (figures.diagnostics)
        output["diagnostics"] = jsonDiagnostics(*figures.diagnostics);
    for (const Figures::LeftOut &one : figures.leftOut) {
        Json left = Json::object();
        left["term"] = jsonText(one.term);
        left["null"] = one.null;
        left["invalid"] = one.invalid;
        output["leftOut"].push_back(std::move(left));
    }
    if (figures.influence)
        output["influence"] = jsonInfluence(figures);
    if (figures.robust) {
        Json &robust = output["robust"] = Json::object();
        robust["kind"] = jsonText(figures.robust->kind);
        robust["standardErrors"] = jsonNumbers(figures.robust->errors.standardErrors);
        robust["tValues"] = jsonNumbers(figures.robust->errors.tValues);
        robust["pValues"] = jsonNumbers(figures.robust->errors.pValues);
        robust["covariance"] = jsonMatrix(figures.robust->errors.covariance);
    }
    for (const Figures::Prediction &prediction : figures.predictions)
        output["predictions"].push_back(jsonPrediction(prediction));
}

void putFigures(const Figures &taken, Json &output)
{
    const Figures figures = figuresThatExist(taken);
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
    putAsked(figures, output);
    output["report"] = jsonReport(taken);
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
    if (figures.sample)
        output["sample"] = {
            {"size", figures.sample->size}, {"of", figures.observations}, {"record", Json(figures.record)}};
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

QString textRegression(const Figures &figures, OutputFormat format, const PageStyle &style)
{
    if (format == OutputFormat::Text)
        return pageText(statisticsPage(figures, style), outputWidth());
    if (!figures.current) {
        return QStringLiteral("Data: %1\nNo result. %2\n").arg(withoutControls(figures.source), leftOut(figures));
    }
    return reportPlainText(figures, style.matrices ? Matrices::Shown : Matrices::Left, outputWidth());
}

} // namespace nuvo
