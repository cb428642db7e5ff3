#include "app/Regressionoutput.h"

#include "app/Console.h"
#include "app/Textreport.h"
#include "engine/Regression.h"
#include "platform/Dataset.h"
#include "present/Report.h"

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

QStringList dependentTerms(const TRegression &regression)
{
    QStringList list;
    if (regression.ResultsCurrent()) {
        for (const int j : regression.DependentColumns())
            list.append(regression.GetcVar(j).OutputTerm());
    }
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

/// Terms with values that no sum can take: a quotient by zero or by a null, say.
QStringList infiniteTerms(const TRegression &regression)
{
    QStringList list;
    if (!regression.ResultsCurrent())
        return list;
    const int n = regression.GetNumObs();
    const auto addUnlessFinite = [&](const QString &term, const auto &value) {
        for (int i = 1; i <= n; ++i) {
            if (!std::isfinite(value(i))) {
                list.append(term);
                return;
            }
        }
    };
    addUnlessFinite(regression.ResponseVarY().OutputTerm(), [&](int i) { return regression.Gety(i); });
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        addUnlessFinite(regression.GetcVar(j).OutputTerm(), [&](int i) { return regression.Getx(i, j); });
    return list;
}

/// What was left out, in one line, and the columns that say nothing of their own in another.
QString leftOut(TRegression &regression)
{
    QString text = QStringLiteral("Records: %1 in the dataset, %2 read, %3 used, %4 skipped.")
                       .arg(regression.DataSet().RecordCount())
                       .arg(regression.RecordsRead())
                       .arg(regression.RecordsUsed())
                       .arg(regression.RecordsSkipped());
    if (const QStringList infinite = infiniteTerms(regression); !infinite.isEmpty())
        text +=
            QStringLiteral("\nInfinite or no number in some of the records used, so that no figure can be had: %1.")
                .arg(infinite.join(QStringLiteral(", ")));
    if (const QStringList dependent = dependentTerms(regression); !dependent.isEmpty())
        text += QStringLiteral(
                    "\nLinear combinations of the columns before them: %1.\nStandard errors and t values of all "
                    "columns mean nothing then, nor do the coefficients\nof those combined: leave some out.")
                    .arg(dependent.join(QStringLiteral(", ")));
    return text;
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

QString textRegression(TRegression &regression, bool matrices)
{
    if (!regression.ResultsCurrent()) {
        return QStringLiteral("Data: %1\nNo result. %2\n")
            .arg(withoutControls(regression.DataSourceName()), leftOut(regression));
    }
    ReportText report;
    report.source = regression.DataSourceName();
    report.description = regression.Description();
    report.dateTime = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    report.message = regression.ReportMessage();
    report.blocks = reportBlocks(regression);
    report.window = windowTexts(report.blocks);
    report.matrices = matrices;
    report.terms = terms(regression);
    report.leftOut = leftOut(regression);
    return terminalReport(report, outputWidth());
}

} // namespace nuvo
