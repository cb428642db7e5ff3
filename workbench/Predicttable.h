// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Regressionmodel.h"
#include "engine/Mlrtypes.h"
#include "engine/kernel/Factors.h"
#include "platform/Scan.h"

#include <QStringList>

#include <vector>

class TRegression;

namespace nuvo {

class Task;

/// The fields that the terms of a model's control variables are made of, each once, in their order.
QStringList fieldsOf(const RegressionModel &model);

/// In how many records a field has no number to predict with.
struct MissingValues
{
    QString field;
    qint64 nulls = 0;
    qint64 noNumbers = 0; ///< texts that are none
};

/// What became of predictions for a table.
struct TablePredictions
{
    qint64 records = 0;
    qint64 without = 0;                 ///< of these, records without a prediction: its cells are empty
    std::vector<MissingValues> missing; ///< why, for each field of the model; a record counts for its first one
    qint64 invalid = 0;                 ///< the others of these: a term cannot be worked out
};

/// What predicts at the fields of a model: a value, for whatever thread.
struct Predictor
{
    QStringList fields;           ///< fieldsOf() the model
    std::vector<TIndepVar> terms; ///< that take part, in their order
    QString response;             ///< as it is called where it was transformed
    Factors factors;
    double level = 0.95; ///< of the intervals
};

/// \pre regression.ResultsCurrent(), of that model
Predictor predictorOf(const TRegression &regression, const RegressionModel &model, double level);

/// \throws EPlatformError that names every field that is not among those that there are, and these.
void checkFields(const QStringList &fields, const QStringList &there);

/// Writes a line for each record of a table: its number, all its columns in their order, the prediction with its
/// standard error and both intervals. The prediction is called as the response, "predicted y" where the table has a
/// column y; a heading of ours that the table has already gets a number ("record_2"). Commas, decimal points, LF,
/// UTF-8; a file that cannot be written whole, or is ended, is not there. On any thread. \throws EPlatformError as
/// checkFields(), when the table cannot be read, and when the file cannot be written.
TablePredictions predictTable(const Predictor &predictor, const ScanSource &table, const QString &file, Task &task);

} // namespace nuvo
