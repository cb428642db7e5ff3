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

namespace nuvo {

namespace {

constexpr qint64 kBetween = 1000; // records from one telling to the next

QByteArray cell(double value)
{
    return std::isfinite(value) ? QByteArray::number(value, 'g', QLocale::FloatingPointShortest) : QByteArray();
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

TablePredictions predictTable(const TRegression &regression, const RegressionModel &model, TDataSet &dataset,
                              const QString &fileName, double level, const std::function<bool(qint64)> &tell)
{
    const QStringList names = fieldsOf(model);
    std::vector<TField *> fields;
    for (const QString &name : names)
        fields.push_back(&dataset.FieldByName(name));
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
    TablePredictions done;
    dataset.First();
    for (; !dataset.Eof(); dataset.Next()) {
        if (file.write(line) != line.size())
            fail();
        ++done.records;
        line = QByteArray::number(done.records);
        FieldValues values;
        for (size_t i = 0; i < fields.size(); ++i) {
            const bool lacks = fields[i]->IsNull();
            line += ',' + (lacks ? QByteArray() : cell(fields[i]->AsFloat()));
            if (!lacks)
                values.emplace_back(names[qsizetype(i)], fields[i]->AsFloat());
        }
        bool usable = values.size() == fields.size();
        if (usable) {
            try {
                const Prediction at = regression.PredictAt(values, level);
                for (const double figure : {at.value, at.standardError, at.confidence[0], at.confidence[1],
                                            at.prediction[0], at.prediction[1]})
                    line += ',' + cell(figure);
            } catch (const EConvertError &) {
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
