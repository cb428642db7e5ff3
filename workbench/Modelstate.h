// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Regressionmodel.h"
#include "engine/Regression.h"

#include <QJsonObject>
#include <QMap>
#include <QString>

namespace nuvo {

/// What is fitted on what: all that a person can change about a fit, as a value. Undo, the models kept, the files of
/// a sitting, commands, code and forms are made of it.
struct ModelState
{
    QString database;              ///< as TDataSet::DatabaseName(); empty: nothing is open
    QString table;                 ///< or
    QString sql;                   ///< a statement, where no table is named
    QMap<QString, QString> params; ///< what was typed for the statement's parameters, names as written
    QString filter;                ///< of a table: an SQL condition; empty for all records
    RecordUse records = RecordUse::First;
    RegressionModel model;

    bool isQuery() const { return table.isEmpty() && !sql.isEmpty(); }
    /// Whether there are records to fit something to.
    bool hasData() const { return !database.isEmpty() && !(table.isEmpty() && sql.isEmpty()); }
    /// Whether response and at least one control variable are there.
    bool isFittable() const;
    /// The statement with the values of its parameters in their places: a number as it is, whatever else as a text.
    QString statement() const;
    /// The terms of the control variables that take part, in their order.
    QStringList terms() const;
    /// "TOTEMP on GNP, Ln(UNEMP)"; empty where there is no response.
    QString title() const;

    friend bool operator==(const ModelState &, const ModelState &) = default;
};

/// The names of a statement's parameters, each once.
QStringList parametersOf(const ModelState &state);

/// The state as JSON, definitions string by string, and back. What is missing is as in a new state; what is of
/// another kind than expected counts as missing.
QJsonObject toJson(const ModelState &state);
ModelState stateFromJson(const QJsonObject &json);

/// Gives a table or query component the state, in the manner of a form: what is the same stays untouched, so that an
/// open dataset stays open where only the model changes. \pre the component is of the state's kind
void apply(const ModelState &state, TRegression &regression);

} // namespace nuvo
