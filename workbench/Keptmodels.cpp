// SPDX-License-Identifier: MIT
#include "workbench/Keptmodels.h"

#include <QCoreApplication>

#include <cmath>
#include <limits>

namespace nuvo {

namespace {

/// JSON has no NaN.
QJsonValue figure(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

double figureOf(const QJsonObject &json, const char *name)
{
    return json.value(QLatin1StringView(name)).toDouble(std::numeric_limits<double>::quiet_NaN());
}

struct ModelsWords
{
    Q_DECLARE_TR_FUNCTIONS(ModelsWords)
};

QString recordsOf(const ModelState &state)
{
    QString what = state.isQuery() ? state.sql.simplified() : state.table;
    if (!state.isQuery() && !state.filter.isEmpty())
        what = ModelsWords::tr("%1 where %2").arg(what, state.filter);
    switch (state.records) {
    case RecordUse::First:
        return what;
    case RecordUse::All:
        return ModelsWords::tr("every record of %1").arg(what);
    case RecordUse::Server:
        break;
    }
    return ModelsWords::tr("every record of %1, added up by the server").arg(what);
}

} // namespace

KeptModel keptModel(const ModelState &state, TRegression &regression)
{
    KeptModel kept;
    kept.state = state;
    kept.n = regression.RecordsUsed();
    kept.rSquared = regression.GetRSquared();
    kept.adjustedRSquared = regression.GetAdjustedRSquared();
    kept.s = regression.GetSyx();
    kept.aic = regression.GetAIC();
    kept.residual = regression.GetSSE();
    kept.total = regression.GetSST();
    kept.degreesOfFreedom = double(kept.n - regression.GetNumVars() - 1);
    return kept;
}

QJsonObject toJson(const KeptModel &model)
{
    return {{QStringLiteral("name"), model.name},
            {QStringLiteral("state"), toJson(model.state)},
            {QStringLiteral("n"), double(model.n)},
            {QStringLiteral("rSquared"), figure(model.rSquared)},
            {QStringLiteral("adjustedRSquared"), figure(model.adjustedRSquared)},
            {QStringLiteral("s"), figure(model.s)},
            {QStringLiteral("aic"), figure(model.aic)},
            {QStringLiteral("residual"), figure(model.residual)},
            {QStringLiteral("total"), figure(model.total)},
            {QStringLiteral("degreesOfFreedom"), model.degreesOfFreedom}};
}

KeptModel keptFromJson(const QJsonObject &json)
{
    KeptModel model;
    model.name = json.value(QLatin1StringView("name")).toString();
    model.state = stateFromJson(json.value(QLatin1StringView("state")).toObject());
    model.n = qint64(json.value(QLatin1StringView("n")).toDouble());
    model.rSquared = figureOf(json, "rSquared");
    model.adjustedRSquared = figureOf(json, "adjustedRSquared");
    model.s = figureOf(json, "s");
    model.aic = figureOf(json, "aic");
    model.residual = figureOf(json, "residual");
    model.total = figureOf(json, "total");
    model.degreesOfFreedom = figureOf(json, "degreesOfFreedom");
    return model;
}

QStringList differences(const ModelState &one, const ModelState &other)
{
    QStringList lines;
    if (one.database != other.database)
        lines.append(ModelsWords::tr("Database: %1, %2").arg(one.database, other.database));
    if (recordsOf(one) != recordsOf(other))
        lines.append(ModelsWords::tr("Records: %1, %2").arg(recordsOf(one), recordsOf(other)));
    if (one.model.term(0) != other.model.term(0))
        lines.append(ModelsWords::tr("Response: %1, %2").arg(one.model.term(0), other.model.term(0)));
    const QStringList ours = one.terms();
    const QStringList theirs = other.terms();
    const auto missing = [](const QStringList &of, const QStringList &in) {
        QStringList terms;
        for (const QString &term : of) {
            if (!in.contains(term))
                terms.append(term);
        }
        return terms.join(QStringLiteral(", "));
    };
    if (const QString only = missing(ours, theirs); !only.isEmpty())
        lines.append(ModelsWords::tr("Only in the first: %1").arg(only));
    if (const QString only = missing(theirs, ours); !only.isEmpty())
        lines.append(ModelsWords::tr("Only in the second: %1").arg(only));
    if (lines.isEmpty() && ours != theirs)
        lines.append(ModelsWords::tr("The same terms in another order"));
    return lines;
}

} // namespace nuvo
