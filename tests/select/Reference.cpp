// SPDX-License-Identifier: MIT
#include "select/Reference.h"

#include "select/Selections.h"

#include <QFile>
#include <QRegularExpression>

#include <nlohmann/json.hpp>

#include <cmath>
#include <map>

namespace {

using Json = nlohmann::ordered_json;

QString qtext(const Json &value)
{
    return QString::fromStdString(value.get<std::string>());
}

QString withoutTime(const QString &report)
{
    static const QRegularExpression time(QStringLiteral("(?<=Processing Time: )\\d\\d:\\d\\d:\\d\\d"));
    return QString(report).replace(time, QStringLiteral("hh:nn:ss"));
}

double number(const Json &value)
{
    return value.is_string() ? QString::fromStdString(value.get<std::string>()).toDouble() : value.get<double>();
}

/// Whether two numbers agree; below `noise` a number counts as 0.
bool agree(double got, double expected, double noise = 0)
{
    if (!std::isfinite(expected))
        return std::isnan(expected) ? std::isnan(got) : got == expected;
    return std::fabs(got - expected) <= 1e-9 * std::max(std::fabs(expected), noise);
}

/// One value of an event. Whole numbers are counts, numbers of variables, and decisions.
bool agrees(const QString &got, const Json &expected, const QString &key, const Json &event)
{
    if (expected.is_number_integer())
        return got == QString::number(expected.get<qint64>());
    if (expected.is_string() && key == u"method")
        return got == qtext(expected);
    if (expected.is_string() && key == u"reason")
        return got == qtext(expected);
    bool isNumber = false;
    const double value = got.toDouble(&isNumber);
    if (!isNumber)
        return false;
    // With no degrees of freedom the sum of squares is 0 or what rounding leaves of it, divided by 0.
    if (key == u"ms" && event.value("dof", -1) == 0)
        return !std::isfinite(value);
    // The t2 of a field that stands in the model twice is 0 or what rounding leaves of it.
    return agree(value, number(expected), key == u"t2" ? 1e-3 : 0);
}

bool agrees(const QString &line, const Json &event)
{
    const QStringList words = line.split(u' ');
    if (words.size() != qsizetype(event.size()) || words[0] != qtext(event["event"]))
        return false;
    qsizetype i = 0;
    for (const auto &[name, value] : event.items()) {
        const QString key = QString::fromStdString(name);
        if (i > 0) {
            if (words[i].section(u'=', 0, 0) != key)
                return false;
            if (value.is_null() ? words[i].contains(u'=') : !agrees(words[i].section(u'=', 1), value, key, event))
                return false;
        }
        ++i;
    }
    return true;
}

void compareTraces(const QStringList &got, const Json &expected)
{
    for (size_t i = 0; i < expected.size(); ++i) {
        const QString line = got.value(qsizetype(i), QStringLiteral("nothing more"));
        ASSERT_TRUE(agrees(line, expected[i]))
            << "event " << i << " expected\n    " << expected[i] << "\ngot\n    " << line.toStdString();
    }
    EXPECT_EQ(got.size(), qsizetype(expected.size())) << got.value(qsizetype(expected.size())).toStdString();
}

/// The tables of a fixture file in one database.
class Fixture
{
public:
    explicit Fixture(const QString &path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("no file " + path.toStdString());
        content_ = Json::parse(file.readAll().toStdString());
        database_->exec(QStringLiteral("PRAGMA synchronous = OFF"));
        for (const auto &[name, columns] : content_["data"].items())
            makeData(name, columns);
        for (const auto &[name, table] : content_["tables"].items())
            makeCriticalValues(name, table);
    }

    const Json &runs() const { return content_["runs"]; }
    void carryOut(const Json &run);

private:
    struct Search
    {
        std::unique_ptr<TCorvane> component;
        TTable criticalValues;
    };

    void makeData(const std::string &name, const Json &columns);
    void makeCriticalValues(const std::string &name, const Json &table);
    static QVariant cell(const Json &value);
    void bind(TMLRTable &table, const std::string &data) const;
    void bind(TMLRQuery &query, const std::string &data) const;
    void prepare(Search &search, const Json &run) const;
    template <class Component>
    void carryOutOn(const Json &run);
    static void compareModels(const TOptimizeMLR &search, const Json &expected);

    Json content_;
    std::unique_ptr<TestDatabase> database_ = TestDatabase::make(TestDatabase::Sqlite);
    std::map<std::string, QString> tables_; // by the name of their data
};

QVariant Fixture::cell(const Json &value)
{
    if (value.is_null())
        return {};
    return value.is_string() ? QVariant(qtext(value)) : QVariant(value.get<double>());
}

void Fixture::makeData(const std::string &name, const Json &columns)
{
    const QString table = QStringLiteral("data%1").arg(tables_.size());
    tables_[name] = table;
    QStringList names;
    size_t records = 0;
    for (const auto &[column, values] : columns.items()) {
        names.append(QString::fromStdString(column));
        records = values.size();
    }
    std::vector<Row> rows(records);
    for (const auto &[column, values] : columns.items()) {
        for (size_t i = 0; i < records; ++i)
            rows[i].push_back(values[i].is_null() ? std::optional<double>() : values[i].get<double>());
    }
    makeTable(*database_, table.toUtf8().constData(), names.join(u' ').toUtf8().constData(), rows);
}

void Fixture::makeCriticalValues(const std::string &name, const Json &table)
{
    const QString made = QStringLiteral("critical%1").arg(tables_.size());
    tables_[name] = made;
    QStringList columns;
    for (const Json &column : table["columns"])
        columns.append(u'"' + qtext(column) +
                       (columns.size() < 2 ? QStringLiteral("\" INTEGER")
                        : name == "text"   ? QStringLiteral("\" VARCHAR(9)")
                                           : QStringLiteral("\" REAL")));
    if (table.value("key", true))
        columns.append(QStringLiteral("PRIMARY KEY (Numerator, Denominator)"));
    database_->exec(QStringLiteral("CREATE TABLE %1 (%2)").arg(made, columns.join(u',')));
    QSqlDatabase writer = database_->writer();
    writer.transaction();
    for (const Json &row : table["rows"]) {
        QVariantList values;
        for (const Json &value : row)
            values.append(cell(value));
        database_->exec(
            QStringLiteral("INSERT INTO %1 VALUES (?%2)").arg(made, QStringLiteral(",?").repeated(values.size() - 1)),
            values);
    }
    writer.commit();
}

void Fixture::bind(TMLRTable &table, const std::string &data) const
{
    ::bind(table, *database_, tables_.at(data).toUtf8().constData());
}

void Fixture::bind(TMLRQuery &query, const std::string &data) const
{
    ::bind(query, *database_, tables_.at(data).toUtf8().constData());
}

void Fixture::prepare(Search &search, const Json &run) const
{
    const std::string method = run["method"];
    TPartialFSearch *partial = nullptr;
    if (method == "optimal")
        search.component = std::make_unique<TOptimizeMLR>();
    else if (method == "stepwise")
        search.component.reset(partial = new TStepWiseMLR);
    else if (method == "backward")
        search.component.reset(partial = new TBackElimMLR);
    else
        search.component.reset(partial = new TFwdSelectMLR);
    const Json options = run.value("options", Json::object());
    for (const auto &[name, value] : options.items()) {
        const QVariant variant = value.is_boolean()          ? QVariant(value.get<bool>())
                                 : value.is_number_integer() ? QVariant(value.get<int>())
                                 : value.is_number()         ? QVariant(value.get<double>())
                                                             : QVariant(qtext(value));
        EXPECT_TRUE(search.component->setProperty(name.c_str(), variant)) << name;
    }
    if (!run.contains("ftable"))
        return;
    const std::string name = run["ftable"];
    const Json &table = content_["tables"][name];
    search.criticalValues.SetDatabaseName(database_->name());
    search.criticalValues.SetTableName(tables_.at(name));
    if (table.value("open", true))
        search.criticalValues.Open();
    partial->SetFDistTable(&search.criticalValues);
}

void Fixture::compareModels(const TOptimizeMLR &search, const Json &expected)
{
    ASSERT_EQ(search.ModelCount(), int(expected.size()));
    for (int i = 1; i <= search.ModelCount(); ++i) {
        const TMLRModel model = search.GetModelList(i);
        const Json &entry = expected[size_t(i - 1)];
        for (size_t k = 0; k < model.Transformations.size(); ++k)
            EXPECT_EQ(model.Transformations[k], qtext(entry["transformations"][k])) << "model " << i;
        EXPECT_TRUE(agree(model.F, number(entry["f"]))) << "model " << i << ": " << model.F << ' ' << entry["f"];
        EXPECT_TRUE(agree(model.RSquared, number(entry["r2"])))
            << "model " << i << ": " << model.RSquared << ' ' << entry["r2"];
        EXPECT_TRUE(agree(model.SSquared, number(entry["ms"])))
            << "model " << i << ": " << model.SSquared << ' ' << entry["ms"];
    }
}

template <class Component>
void Fixture::carryOutOn(const Json &run)
{
    Messages messages;
    Component regression;
    bind(regression, run["data"]);
    for (size_t k = 0; k < run["controls"].size(); ++k) {
        TIndepVar definition;
        for (int i = 0; i < 6; ++i)
            definition.SetParameters(i, qtext(run["controls"][k][size_t(i)]));
        regression.SetControl(int(k) + 1, definition);
    }
    TDependentVar response;
    for (int i = 0; i < 6; ++i)
        response.SetParameters(i, qtext(run["response"][size_t(i)]));
    regression.SetResponse(response);
    regression.SetDescription(QString::fromStdString(run.value("description", std::string())));
    const std::string before = run.value("before", std::string("fitted"));
    if (before != "nothing" && regression.ReLoad() && before != "loaded")
        regression.Execute();

    Search search;
    prepare(search, run);
    if constexpr (std::is_same_v<Component, TMLRTable>)
        search.component->SetTable(&regression);
    else
        search.component->SetQuery(&regression);
    if (before == "run") {
        search.component->Run();
        if (search.criticalValues.Active())
            search.criticalValues.First();
    }
    std::vector<QStringList> definitions;
    for (int k = 1; k <= MaxControls; ++k)
        definitions.push_back(regression.ControlVar(k).ToQStringList());
    regression.SetShowWarnings(true);
    messages.shown.clear();

    const Json &expected = run["expected"];
    Trace trace;
    std::string error;
    try {
        search.component->Run();
    } catch (const EDatabaseError &) {
        error = "EDatabaseError";
    } catch (const EConvertError &) {
        error = "EConvertError";
    }
    ASSERT_EQ(error, expected.value("error", std::string()));

    compareTraces(trace.lines, expected["trace"]);
    QStringList steps;
    for (const Json &step : expected["steps"])
        steps.append(qtext(step));
    EXPECT_EQ(search.component->Steps(), steps);
    EXPECT_TRUE(regression.ShowWarnings());
    EXPECT_FALSE(regression.ShowLoadProgress());
    for (size_t k = 0; k < definitions.size(); ++k) {
        definitions[k][0] = qtext(expected["definitions"][k][0]);
        definitions[k][1] = qtext(expected["definitions"][k][1]);
        EXPECT_EQ(regression.ControlVar(int(k) + 1).ToQStringList(), definitions[k]) << "control " << k + 1;
    }
    if (!error.empty())
        return;

    EXPECT_EQ(search.component->Ended(), expected["ended"] == "repeats" ? TRunEnd::Repeats : TRunEnd::Converged);
    EXPECT_EQ(withoutTime(search.component->Report()), qtext(expected["report"]));
    std::vector<Message> shown;
    for (const Json &message : expected["messages"]) {
        const TMsgDlgType type = message[0] == "error"     ? TMsgDlgType::mtError
                                 : message[0] == "warning" ? TMsgDlgType::mtWarning
                                                           : TMsgDlgType::mtInformation;
        shown.insert(shown.end(), message[2].get<size_t>(), {qtext(message[1]), type, mbOK, 0});
    }
    for (Message &message : messages.shown)
        message.text = withoutTime(message.text);
    EXPECT_EQ(messages.shown, shown);
    EXPECT_EQ(regression.Loaded(), expected["loaded"].get<bool>());
    EXPECT_EQ(regression.GetNumVars(), expected["controls"].get<int>());
    if (regression.Loaded() && expected.contains("ms")) {
        EXPECT_TRUE(regression.ResultsCurrent());
        if (regression.GetDOF() == 0)
            EXPECT_FALSE(std::isfinite(regression.GetMSE()));
        else
            EXPECT_TRUE(agree(regression.GetMSE(), number(expected["ms"]))) << regression.GetMSE();
        for (size_t j = 0; j < expected["b"].size(); ++j) {
            EXPECT_NEAR(regression.Getb(int(j)), number(expected["b"][j]),
                        1e-9 * std::max(1e-3, std::fabs(number(expected["b"][j]))));
        }
    }
    if (const auto *optimal = dynamic_cast<const TOptimizeMLR *>(search.component.get()))
        compareModels(*optimal, expected["models"]);
}

void Fixture::carryOut(const Json &run)
{
    if (run.value("component", std::string("table")) == "query")
        carryOutOn<TMLRQuery>(run);
    else
        carryOutOn<TMLRTable>(run);
}

} // namespace

void compareWithReference(const QString &path)
{
    Fixture fixture(path);
    ASSERT_FALSE(fixture.runs().empty());
    for (const Json &run : fixture.runs()) {
        SCOPED_TRACE(run["name"].get<std::string>());
        fixture.carryOut(run);
    }
}
