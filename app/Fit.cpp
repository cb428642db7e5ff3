#include "app/Fit.h"

#include "app/Console.h"
#include "app/Json.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Messages.h"
#include "present/Mlroutpt.h"
#include "present/Plotfile.h"
#include "present/Report.h"
#include "present/Reportdocument.h"
#include "present/Textreport.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuvo {
namespace {

struct Message
{
    QString text;
    TMsgDlgType type;
};

/// While it lives, message boxes become lines on standard error, and are kept.
class MessageLog
{
public:
    MessageLog()
        : before_(SetMessageHandler([this](const QString &text, TMsgDlgType type, unsigned, int) -> int {
              writeErrorLine(messageLine(text, type));
              messages_.append({text, type});
              return mrOk;
          }))
    {
    }
    ~MessageLog() { SetMessageHandler(before_); }
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    const QList<Message> &messages() const { return messages_; }

private:
    QList<Message> messages_;
    TMessageHandler before_;
};

/// A bar on standard error, drawn anew with every per cent and taken away at the end.
class TerminalProgress : public LoadProgress
{
public:
    ~TerminalProgress() override
    {
        if (drawn_ >= 0)
            writeErrorText(QStringLiteral("\r\033[K"));
    }
    void Show() override
    {
        shown_ = errorIsTerminal();
        draw();
    }
    bool Shown() const override { return shown_; }
    void SetGaugeProgress(unsigned short progress) override { progress_ = progress; }
    /// Follows the percentage that it belongs to.
    void SetGaugeText(const QString &text) override
    {
        text_ = text;
        if (progress_ != drawn_)
            draw();
    }
    bool Stopped() const override { return false; }

private:
    void draw()
    {
        if (!shown_)
            return;
        constexpr int cells = 40;
        const int full = std::min<int>(progress_, 100) * cells / 100;
        writeErrorText(QStringLiteral("\r[%1%2] %3 %  %4\033[K")
                           .arg(QString(full, u'#'), QString(cells - full, u'.'))
                           .arg(progress_, 3)
                           .arg(text_));
        drawn_ = progress_;
    }

    bool shown_ = false;
    int progress_ = 0;
    int drawn_ = -1;
    QString text_;
};

/// A component whose load tells the terminal instead of a dialog.
template <class Component>
class OnTerminal : public Component
{
protected:
    std::unique_ptr<LoadProgress> MakeLoadProgress() override { return std::make_unique<TerminalProgress>(); }
};

TIndepVar control(const Term &term)
{
    TIndepVar definition;
    definition.SetTransformation(term.transformation);
    if (!term.field1.isNull())
        definition.SetField1(term.field1);
    if (!term.field2.isNull())
        definition.SetField2(term.field2);
    if (!term.exponent.isNull())
        definition.SetExponent(term.exponent);
    if (!term.scaleFactor.isNull())
        definition.SetScaleFactor(term.scaleFactor);
    return definition;
}

TDependentVar response(const Term &term)
{
    TDependentVar definition;
    definition.SetTransformation(term.transformation);
    definition.SetField(term.field1);
    if (!term.scaleFactor.isNull())
        definition.SetScaleFactor(term.scaleFactor);
    return definition;
}

QStringList terms(const TRegression &regression)
{
    QStringList list;
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        list.append(regression.GetcVar(j).OutputTerm());
    return list;
}

Json jsonTexts(const QStringList &texts)
{
    Json array = Json::array();
    for (const QString &text : texts)
        array.push_back(jsonText(text));
    return array;
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

QString jsonOutput(TRegression &regression, const QList<Message> &messages)
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
    Json &told = output["messages"] = Json::array();
    for (const Message &message : messages) {
        Json one = Json::object();
        one["type"] = typeName(message.type);
        one["text"] = jsonText(message.text);
        told.push_back(std::move(one));
    }
    return jsonLines(output);
}

QString textOutput(TRegression &regression, bool matrices)
{
    if (!regression.ResultsCurrent()) {
        return QStringLiteral("Data: %1\nNo result. %2\n")
            .arg(withoutControls(regression.DataSourceName()), leftOut(regression));
    }
    return reportPlainText(reportDocument(regression, QDateTime::currentDateTime()),
                           matrices ? Matrices::Shown : Matrices::Left, outputWidth());
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
    component.SetDatabaseName(options.database);
    for (qsizetype i = 0; i < options.controls.size(); ++i)
        component.SetControl(int(i) + 1, control(options.controls[i]));
    component.SetResponse(response(options.response));
    component.SetDescription(options.description);
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
        writeOutput(options.format == OutputFormat::Json ? jsonOutput(component, log.messages())
                                                         : textOutput(component, options.matrices));
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
    if (options.sql) {
        OnTerminal<TMLRQuery> query;
        query.SetSQL(*options.sql);
        return fitOn(query, options);
    }
    OnTerminal<TMLRTable> table;
    table.SetTableName(*options.table);
    table.SetFilter(options.filter);
    table.SetFiltered(!options.filter.isEmpty());
    table.SetIndexFieldNames(options.order);
    return fitOn(table, options);
}

} // namespace nuvo
