// SPDX-License-Identifier: MIT
#include "design/Fieldreading.h"

#include "design/sql/Trial.h"
#include "platform/Query.h"

namespace {

nuvo::ModelFields fieldsOf(const nuvo::TrialAnswer &answer)
{
    nuvo::ModelFields fields;
    fields.known = answer.error.isEmpty() && !answer.stopped;
    fields.why = answer.error;
    for (const nuvo::Column &column : answer.columns)
        fields.fields.push_back({column.name, nuvo::fieldKind(column.kind), nuvo::isNumeric(column.kind)});
    return fields;
}

} // namespace

nuvo::FieldReading::FieldReading(TDataSet &dataset, Told told, QObject *parent) : QObject(parent)
{
    const auto *query = qobject_cast<const TQuery *>(&dataset);
    if (query == nullptr) {
        told(modelFields(dataset));
        return;
    }
    if (query->DatabaseName().isEmpty()) {
        whyNotYet_ = QStringLiteral("No database is named (DatabaseName is empty).");
        return;
    }
    if (query->SQL().trimmed().isEmpty()) {
        whyNotYet_ = QStringLiteral("The query has no statement (SQL is empty).");
        return;
    }
    whyNotYet_ = QStringLiteral("The fields are being read.");
    constexpr int rowsForTypes = 100;
    auto *trial = new Trial(this);
    connect(trial, &Trial::Ended, this,
            [told = std::move(told)](const TrialAnswer &answer) { told(fieldsOf(answer)); });
    trial->Start(query->Source(), rowsForTypes);
}
