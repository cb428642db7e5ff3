// SPDX-License-Identifier: MIT
#include "workbench/Modelstate.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Databasename.h"
#include "platform/Sqltext.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <algorithm>
#include <array>
#include <cmath>

namespace nuvo {

namespace {

constexpr std::array<QLatin1StringView, 3> recordNames{QLatin1StringView("first"), QLatin1StringView("all"),
                                                       QLatin1StringView("server")};

QString placeName(int place)
{
    return RegressionModel::property(place);
}

Dialect dialectOf(const QString &database)
{
    if (!isServerName(database))
        return Dialect::Sqlite;
    if (database.startsWith(u"postgres"))
        return Dialect::Postgres;
    return database.startsWith(u"mysql") ? Dialect::Mysql : Dialect::Other;
}

/// A value in a statement.
QString literalOf(const QString &typed, Dialect dialect)
{
    bool isNumber = false;
    const double number = typed.toDouble(&isNumber);
    if (isNumber && std::isfinite(number)) // behind a minus sign another one would begin a comment
        return typed.trimmed().at(0).isDigit() ? typed.trimmed() : u'(' + typed.trimmed() + u')';
    QString text = typed;
    if (dialect == Dialect::Mysql)
        text.replace(u'\\', QLatin1String("\\\\"));
    return u'\'' + text.replace(u'\'', QLatin1String("\'\'")) + u'\'';
}

void bind(TDataSet &dataset, const ModelState &state)
{
    if (dataset.DatabaseName() != state.database)
        dataset.SetDatabaseName(state.database);
}

} // namespace

bool ModelState::isFittable() const
{
    return hasData() && model.isDefined(0) && !terms().isEmpty();
}

QString ModelState::statement() const
{
    if (params.isEmpty())
        return sql;
    const Dialect dialect = dialectOf(database);
    const ReadingStatement reading = readingStatement(sql, dialect);
    QStringList values;
    for (const QString &name : reading.parameters)
        values.append(literalOf(params.value(name), dialect));
    return values.isEmpty() ? sql : reading.with(values);
}

QStringList parametersOf(const ModelState &state)
{
    QStringList names = parameterNames(state.sql, dialectOf(state.database));
    names.removeDuplicates();
    return names;
}

QStringList ModelState::terms() const
{
    QStringList result;
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (model.isDefined(place))
            result.append(model.term(place));
    }
    return result;
}

QString ModelState::title() const
{
    if (!model.isDefined(0))
        return {};
    const QStringList controls = terms();
    return controls.isEmpty() ? model.term(0)
                              : QCoreApplication::translate("ModelState", "%1 on %2", "response, terms")
                                    .arg(model.term(0), controls.join(QStringLiteral(", ")));
}

QJsonObject toJson(const ModelState &state)
{
    QJsonObject json{{QStringLiteral("database"), state.database},
                     {QStringLiteral("records"), QString(recordNames[size_t(state.records)])}};
    const auto put = [&json](const char *name, const QString &text) {
        if (!text.isEmpty())
            json.insert(QLatin1StringView(name), text);
    };
    put("table", state.table);
    put("sql", state.sql);
    put("filter", state.filter);
    if (!state.params.isEmpty()) {
        QJsonObject params;
        for (auto param = state.params.begin(); param != state.params.end(); ++param)
            params.insert(param.key(), param.value());
        json.insert(QLatin1StringView("params"), params);
    }
    for (int place = 0; place < RegressionModel::Places; ++place) {
        if (!state.model.isEmpty(place))
            json.insert(placeName(place), QJsonArray::fromStringList(state.model.strings(place)));
    }
    return json;
}

ModelState stateFromJson(const QJsonObject &json)
{
    ModelState state;
    state.database = json.value(QLatin1StringView("database")).toString();
    state.table = json.value(QLatin1StringView("table")).toString();
    state.sql = json.value(QLatin1StringView("sql")).toString();
    state.filter = json.value(QLatin1StringView("filter")).toString();
    const QJsonObject params = json.value(QLatin1StringView("params")).toObject();
    for (auto param = params.begin(); param != params.end(); ++param)
        state.params.insert(param.key(), param.value().toString());
    const QString records = json.value(QLatin1StringView("records")).toString();
    const auto *const use = std::find(recordNames.begin(), recordNames.end(), records);
    if (use != recordNames.end())
        state.records = RecordUse(use - recordNames.begin());
    for (int place = 0; place < RegressionModel::Places; ++place) {
        QStringList strings;
        for (const auto &string : json.value(placeName(place)).toArray())
            strings.append(string.toString());
        if (strings.size() == state.model.strings(place).size())
            state.model.setStrings(place, strings);
    }
    return state;
}

void apply(const ModelState &state, TRegression &regression)
{
    if (auto *const table = dynamic_cast<TMLRTable *>(&regression)) {
        bind(*table, state);
        if (table->TableName() != state.table)
            table->SetTableName(state.table);
        if (table->Filter() != state.filter || table->Filtered() == state.filter.isEmpty()) {
            table->SetFilter(state.filter);
            table->SetFiltered(!state.filter.isEmpty());
        }
    } else if (auto *const query = dynamic_cast<TMLRQuery *>(&regression)) {
        bind(*query, state);
        const QString statement = state.statement();
        if (query->SQL() != statement)
            query->SetSQL(statement);
    }
    if (regression.UseOfRecords() != state.records)
        regression.SetUseOfRecords(state.records);
    if (regression.ResponseVarY().ToQStringList() != state.model.response().ToQStringList())
        regression.SetResponse(state.model.response());
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (regression.ControlVar(place).ToQStringList() != state.model.control(place).ToQStringList())
            regression.SetControl(place, state.model.control(place));
    }
}

} // namespace nuvo
