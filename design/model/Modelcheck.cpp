// SPDX-License-Identifier: MIT
#include "design/model/Modelcheck.h"

#include "design/model/Modelwords.h"
#include "platform/Formats.h"

#include <QHash>

#include <optional>

namespace nuvo {

namespace {

QString wrongNumber(const Transformation &form, const QString &text)
{
    double value = 0;
    if (!TryStrToFloat(text, value) || !std::isfinite(value))
        return ModelWords::tr("\"%1\" is not a number.").arg(text);
    if (form.second == Second::ScaleFactor)
        return value == 0 ? ModelWords::tr("It cannot be divided by 0.") : QString();
    bool whole = false;
    return text.trimmed().toInt(&whole) >= 1 && whole
               ? QString()
               : ModelWords::tr("The exponent has to be a whole number of at least 1.");
}

QString wrongField(const QString &name, const ModelFields &fields)
{
    if (!fields.known)
        return {};
    const ModelField *field = fields.find(name);
    if (field == nullptr)
        return ModelWords::tr("There is no field \"%1\".").arg(name);
    return field->numeric ? QString()
                          : ModelWords::tr("The field \"%1\" holds no number (%2).").arg(field->name, field->kind);
}

/// The same for terms that have the same values in every record.
QString meaning(const RegressionModel &model, int place, const Transformation &form)
{
    QStringList parts{model.field(place).toLower()};
    if (form.second == Second::Field2)
        parts += model.secondField(place).toLower();
    if (form.operation == Operation::Times)
        parts.sort();
    double number = 0;
    if (form.second == Second::Exponent || form.second == Second::ScaleFactor) {
        if (TryStrToFloat(model.number(place), number))
            parts += FloatToStr(number);
    }
    parts.prepend(form.keyword.toString());
    return parts.join(QChar(0));
}

std::optional<ModelProblem> problemAt(const RegressionModel &model, int place, const ModelFields &fields)
{
    const auto problem = [place](bool unfinished, const QString &text) {
        return text.isEmpty() ? std::nullopt : std::optional<ModelProblem>({place, unfinished, text});
    };
    if (!model.isDefined(place))
        return {};
    const Transformation *form = model.transformation(place);
    if (form == nullptr || !form->term) {
        return problem(false,
                       ModelWords::tr("\"%1\" is no transformation that is known here.").arg(model.keyword(place)));
    }
    const bool twoFields = form->second == Second::Field2;
    if (model.field(place).isEmpty())
        return problem(true, ModelWords::tr("No field is chosen."));
    if (twoFields && model.secondField(place).isEmpty())
        return problem(true, ModelWords::tr("No second field is chosen."));
    if (form->second == Second::Exponent || form->second == Second::ScaleFactor) {
        if (auto found = problem(true, wrongNumber(*form, model.number(place))))
            return found;
    }
    if (auto found = problem(false, wrongField(model.field(place), fields)))
        return found;
    if (twoFields)
        return problem(false, wrongField(model.secondField(place), fields));
    return {};
}

} // namespace

std::vector<ModelProblem> modelProblems(const RegressionModel &model, const ModelFields &fields)
{
    std::vector<ModelProblem> problems;
    QHash<QString, int> seen;
    for (int place = 0; place < RegressionModel::Places; ++place) {
        if (const auto problem = problemAt(model, place, fields)) {
            problems.push_back(*problem);
            continue;
        }
        const Transformation *form = model.transformation(place);
        if (!model.isDefined(place) || form == nullptr)
            continue;
        const QString term = meaning(model, place, *form);
        const auto before = seen.constFind(term);
        if (before == seen.constEnd())
            seen.insert(term, place);
        else
            problems.push_back(
                {place, false,
                 before.value() == 0
                     ? ModelWords::tr("This is the response itself.")
                     : ModelWords::tr("This is the same term as %1.").arg(RegressionModel::label(before.value()))});
    }
    return problems;
}

} // namespace nuvo
