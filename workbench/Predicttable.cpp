// SPDX-License-Identifier: MIT
#include "workbench/Predicttable.h"

#include "engine/Regression.h"
#include "engine/Termvalue.h"
#include "engine/kernel/Prediction.h"
#include "platform/Csvline.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"

#include <QCoreApplication>
#include <QSaveFile>

#include <cmath>
#include <optional>
#include <utility>

namespace nuvo {

namespace {

constexpr qint64 kBetween = 1000; // records from one telling to the next

QByteArray cell(double value)
{
    return std::isfinite(value) ? QByteArray::number(value, 'g', QLocale::FloatingPointShortest) : QByteArray();
}

/// Nothing for a null and for what is no number.
std::optional<double> numberOf(const TField &field)
{
    try {
        return field.IsNull() ? std::optional<double>() : field.AsFloat();
    } catch (const EConvertError &) {
        return std::nullopt;
    }
}

} // namespace

QStringList fieldsOf(const RegressionModel &model)
{
    QStringList fields;
    const auto add = [&fields](const QString &name) {
        if (!name.isEmpty() && !fields.contains(name, Qt::CaseInsensitive))
            fields.append(name);
    };
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (!model.isDefined(place))
            continue;
        add(model.field(place));
        const Transformation *const transformation = model.transformation(place);
        if (transformation != nullptr && transformation->second == Second::Field2)
            add(model.secondField(place));
    }
    return fields;
}

void checkFields(const RegressionModel &model, TDataSet &dataset)
{
    QStringList missing;
    for (const QString &name : fieldsOf(model)) {
        if (dataset.FindField(name) == nullptr)
            missing.append(name);
    }
    if (!missing.isEmpty())
        throw EPlatformError(
            QCoreApplication::translate("Predictions",
                                        "The fields that the model is made of are not all there: %1. There are: %2.")
                .arg(missing.join(QStringLiteral(", ")), dataset.GetFieldNames().join(QStringLiteral(", "))));
}

TablePredictions predictTable(const TRegression &regression, const RegressionModel &model, TDataSet &dataset,
                              const QString &fileName, double level, const std::function<bool(qint64)> &tell)
{
    checkFields(model, dataset);
    const QStringList names = fieldsOf(model);
    std::vector<TField *> fields;
    TablePredictions done;
    for (const QString &name : names) {
        fields.push_back(&dataset.FieldByName(name));
        done.missing.push_back({name});
    }
    QSaveFile file(fileName);
    const auto fail = [&] {
        throw EPlatformError(
            QCoreApplication::translate("Predictions", "Cannot write \"%1\": %2.").arg(fileName, file.errorString()));
    };
    if (!file.open(QIODevice::WriteOnly))
        fail();
    QByteArray line =
        csvLine(QStringList(QStringLiteral("record")) + names + QStringList(regression.ResponseVarY().OutputTerm()))
            .toUtf8() +
        ",standardError,confidenceLow,confidenceHigh,predictionLow,predictionHigh\n";
    dataset.First();
    for (; !dataset.Eof(); dataset.Next()) {
        if (file.write(line) != line.size())
            fail();
        ++done.records;
        line = QByteArray::number(done.records);
        FieldValues values;
        bool usable = true;
        for (size_t i = 0; i < fields.size(); ++i) {
            const auto number = numberOf(*fields[i]);
            const bool isNull = fields[i]->IsNull();
            line += ',' + (number   ? cell(*number)
                           : isNull ? QByteArray()
                                    : csvLine({fields[i]->AsString()}).toUtf8());
            if (number)
                values.emplace_back(names[qsizetype(i)], *number);
            else if (std::exchange(usable, false))
                ++(isNull ? done.missing[i].nulls : done.missing[i].noNumbers);
        }
        if (usable) {
            try {
                const Prediction at = regression.PredictAt(values, level);
                for (const double figure : {at.value, at.standardError, at.confidence[0], at.confidence[1],
                                            at.prediction[0], at.prediction[1]})
                    line += ',' + cell(figure);
            } catch (const EConvertError &) {
                ++done.invalid;
                usable = false;
            }
        }
        if (!usable) {
            ++done.without;
            line += ",,,,,,";
        }
        line += '\n';
        if (tell && done.records % kBetween == 0 && !tell(done.records)) {
            done.stopped = true;
            return done;
        }
    }
    if (file.write(line) != line.size() || !file.commit())
        fail();
    return done;
}

} // namespace nuvo
