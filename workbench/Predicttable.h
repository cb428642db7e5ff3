#pragma once

#include "design/model/Regressionmodel.h"

#include <QStringList>

#include <functional>

class TDataSet;
class TRegression;

namespace nuvo {

/// The fields that the terms of a model's control variables are made of, each once, in their order.
QStringList fieldsOf(const RegressionModel &model);

/// What became of predictions for a table.
struct TablePredictions
{
    qint64 records = 0;
    qint64 without = 0; ///< of these, records that a term cannot use: their cells are empty
    bool stopped = false;
};

/// Writes a line for each record of a dataset: its number, the fields of the model, the prediction with its standard
/// error and both intervals. Commas, decimal points, LF, UTF-8; a file that cannot be written whole is not there.
/// \param tell is called now and then with the number of records so far; false ends the work, and there is no file.
/// \throws EPlatformError when the dataset has no such fields or cannot be read, and when the file cannot be written.
/// \pre regression.ResultsCurrent(), of that model
TablePredictions predictTable(const TRegression &regression, const RegressionModel &model, TDataSet &dataset,
                              const QString &file, double level, const std::function<bool(qint64)> &tell = {});

} // namespace nuvo
