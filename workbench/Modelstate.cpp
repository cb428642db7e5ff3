// SPDX-License-Identifier: MIT
#include "workbench/Modelstate.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <algorithm>
#include <array>

namespace nuvo {

namespace {

constexpr std::array<QLatin1StringView, 3> recordNames{QLatin1StringView("first"), QLatin1StringView("all"),
                                                       QLatin1StringView("server")};

QString placeName(int place)
{
    return RegressionModel::property(place);
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
        if (query->SQL() != state.sql)
            query->SetSQL(state.sql);
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
