// SPDX-License-Identifier: MIT
#include "workbench/Predicttable.h"

#include "engine/Fitfigures.h"
#include "engine/Regression.h"
#include "engine/Termvalue.h"
#include "engine/kernel/Prediction.h"
#include "platform/Csvline.h"
#include "platform/Errors.h"
#include "platform/Recordrows.h"
#include "workbench/Waiting.h"

#include <QCoreApplication>
#include <QSaveFile>

#include <cmath>
#include <utility>

namespace nuvo {

namespace {

QByteArray cell(double value)
{
    return std::isfinite(value) ? QByteArray::number(value, 'g', QLocale::FloatingPointShortest) : QByteArray();
}

/// The first line: ours before and behind the columns of the table, each called as no other is.
QByteArray headings(const Predictor &predictor, const QStringList &columns)
{
    QStringList names = columns;
    const auto own = [&names](const QString &wanted) {
        QString name = wanted;
        for (int number = 2; names.contains(name, Qt::CaseInsensitive); ++number)
            name = QStringLiteral("%1_%2").arg(wanted).arg(number);
        return name;
    };
    names.prepend(own(QStringLiteral("record")));
    const bool isTaken = columns.contains(predictor.response, Qt::CaseInsensitive); // by what was observed
    names.append(own(isTaken ? QLatin1String("predicted ") + predictor.response : predictor.response));
    for (const char *const figure :
         {"standardError", "confidenceLow", "confidenceHigh", "predictionLow", "predictionHigh"})
        names.append(own(QLatin1String(figure)));
    return csvLine(names).toUtf8() + '\n';
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

Predictor predictorOf(const TRegression &regression, const RegressionModel &model, double level)
{
    Predictor predictor;
    predictor.fields = fieldsOf(model);
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        predictor.terms.push_back(regression.GetcVar(j));
    predictor.response = regression.ResponseVarY().OutputTerm();
    predictor.factors = FitFigures(regression.CurrentFit()).factors();
    predictor.level = level;
    return predictor;
}

void checkFields(const QStringList &fields, const QStringList &there)
{
    QStringList missing;
    for (const QString &name : fields) {
        if (!there.contains(name, Qt::CaseInsensitive))
            missing.append(name);
    }
    if (!missing.isEmpty())
        throw EPlatformError(
            QCoreApplication::translate("Predictions",
                                        "The fields that the model is made of are not all there: %1. There are: %2.")
                .arg(missing.join(QStringLiteral(", ")), there.join(QStringLiteral(", "))));
}

TablePredictions predictTable(const Predictor &predictor, const ScanSource &table, const QString &fileName,
                              Task &task)
{
    RecordRows records(table);
    const Task::Cancelling cancelling(task, [&records] { records.cancel(); });
    records.open();
    checkFields(predictor.fields, records.fields());
    std::vector<int> fields;
    TablePredictions done;
    for (const QString &name : predictor.fields) {
        int field = 0;
        while (records.fields()[field].compare(name, Qt::CaseInsensitive) != 0)
            ++field;
        fields.push_back(field);
        done.missing.push_back({name});
    }
    QSaveFile file(fileName);
    const auto fail = [&] {
        throw EPlatformError(
            QCoreApplication::translate("Predictions", "Cannot write \"%1\": %2.").arg(fileName, file.errorString()));
    };
    if (!file.open(QIODevice::WriteOnly))
        fail();
    QByteArray line = headings(predictor, records.fields());
    while (records.next()) {
        if (file.write(line) != line.size())
            fail();
        task.records = ++done.records;
        line = QByteArray::number(done.records);
        for (int field = 0; field < int(records.fields().size()); ++field)
            line += ',' + csvLine({records.exactText(field)}).toUtf8();
        FieldValues values;
        bool usable = true;
        for (size_t i = 0; i < fields.size(); ++i) {
            if (const auto number = records.number(fields[i]))
                values.emplace_back(predictor.fields[qsizetype(i)], *number);
            else if (std::exchange(usable, false))
                ++(records.isNull(fields[i]) ? done.missing[i].nulls : done.missing[i].noNumbers);
        }
        if (usable) {
            try {
                const TermValues terms = termValues(predictor.terms, values);
                const Prediction at = predict(predictor.factors, terms.values, terms.low, predictor.level);
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
    }
    if (file.write(line) != line.size() || !file.flush())
        fail();
    if (task.Finish() && !file.commit())
        fail();
    return done;
}

} // namespace nuvo
