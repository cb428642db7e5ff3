// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Regressionmodel.h"

#include <QStringList>

#include <functional>
#include <vector>

class TDataSet;
class TRegression;

namespace nuvo {

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
    bool stopped = false;
};

/// \throws EPlatformError that names every field of the model that a dataset has not, and the fields that it has.
void checkFields(const RegressionModel &model, TDataSet &dataset);

/// Writes a line for each record of a dataset: its number, the fields of the model, the prediction with its standard
/// error and both intervals. Commas, decimal points, LF, UTF-8; a file that cannot be written whole is not there.
/// \param tell is called now and then with the number of records so far; false ends the work, and there is no file.
/// \throws EPlatformError as checkFields(), when the dataset cannot be read, and when the file cannot be written.
/// \pre regression.ResultsCurrent(), of that model
TablePredictions predictTable(const TRegression &regression, const RegressionModel &model, TDataSet &dataset,
                              const QString &file, double level, const std::function<bool(qint64)> &tell = {});

} // namespace nuvo
