// SPDX-License-Identifier: MIT
#include "design/model/Regressionmodel.h"

#include "engine/Regression.h"
#include "platform/Formats.h"

#include <utility>

namespace nuvo {

namespace {

const QStringList &freshStrings(int place)
{
    static const QStringList response = TDependentVar().ToQStringList();
    static const QStringList control = TIndepVar().ToQStringList();
    return place == 0 ? response : control;
}

int indexOfSecond(Second second)
{
    switch (second) {
    case Second::Field2:
        return 3;
    case Second::Exponent:
        return 4;
    case Second::ScaleFactor:
        return 5;
    case Second::Nothing:
        break;
    }
    return -1;
}

bool isWholeExponent(const QString &text)
{
    bool whole = false;
    return text.toInt(&whole) >= 1 && whole;
}

const QString undefined = QStringLiteral("Undefined");
const QString asItStands = QStringLiteral("None");

} // namespace

RegressionModel RegressionModel::of(const TRegression &regression)
{
    RegressionModel model;
    model.response_ = regression.ResponseVarY();
    for (int k = 1; k <= MaxControls; ++k)
        model.controls_[std::size_t(k - 1)] = regression.ControlVar(k);
    return model;
}

const TVariableDefinition &RegressionModel::at(int place) const
{
    if (place == 0)
        return response_;
    return controls_[std::size_t(place - 1)];
}

TVariableDefinition &RegressionModel::at(int place)
{
    return const_cast<TVariableDefinition &>(std::as_const(*this).at(place));
}

std::span<const Transformation> RegressionModel::transformations(int place)
{
    return place == 0 ? responseTransformations() : controlTransformations();
}

QString RegressionModel::property(int place)
{
    return place == 0 ? QStringLiteral("ResponseVarY")
                      : QStringLiteral("ControlVar%1").arg(place, 2, 10, QLatin1Char('0'));
}

QString RegressionModel::label(int place)
{
    return place == 0 ? QStringLiteral("Y") : QStringLiteral("X%1").arg(place);
}

QString RegressionModel::parameter(int place, int index) const
{
    return strings(place).value(index, freshStrings(place)[index]);
}

QString RegressionModel::name(int place, int index) const
{
    const QString text = parameter(place, index);
    return text == freshStrings(place)[index] ? QString() : text;
}

const Transformation *RegressionModel::transformation(int place) const
{
    return findKeyword(transformations(place), keyword(place));
}

QString RegressionModel::number(int place) const
{
    const Transformation *form = transformation(place);
    if (form == nullptr || (form->second != Second::Exponent && form->second != Second::ScaleFactor))
        return {};
    return parameter(place, indexOfSecond(form->second));
}

bool RegressionModel::isEmpty(int place) const
{
    return field(place).isEmpty() && (place == 0 || keyword(place) == undefined);
}

bool RegressionModel::isDefined(int place) const
{
    return place == 0 ? !field(place).isEmpty() : keyword(place) != undefined;
}

QString RegressionModel::term(int place) const
{
    if (!isDefined(place) || field(place).isEmpty())
        return {};
    const Transformation *form = transformation(place);
    if (form != nullptr && form->second == Second::Field2 && secondField(place).isEmpty())
        return {};
    if (at(place).Count() < TVariableDefinition::ParameterCount)
        return {};
    return place == 0 ? response_.OutputTerm() : control(place).OutputTerm();
}

std::vector<int> RegressionModel::placesOf(const QString &wanted) const
{
    std::vector<int> places;
    for (int place = 0; place < Places; ++place) {
        if (!isDefined(place))
            continue;
        const Transformation *form = transformation(place);
        const bool second = form != nullptr && form->second == Second::Field2;
        if (field(place).compare(wanted, Qt::CaseInsensitive) == 0 ||
            (second && secondField(place).compare(wanted, Qt::CaseInsensitive) == 0))
            places.push_back(place);
    }
    return places;
}

int RegressionModel::nextFree() const
{
    for (int place = 1; place < Places; ++place) {
        if (isEmpty(place))
            return place;
    }
    return 0;
}

void RegressionModel::repair(int place)
{
    if (at(place).Count() == TVariableDefinition::ParameterCount)
        return;
    if (place == 0)
        response_.AssignRepaired(QStringList(strings(0)));
    else
        controls_[std::size_t(place - 1)].AssignRepaired(QStringList(strings(place)));
}

void RegressionModel::setField(int place, const QString &field)
{
    repair(place);
    at(place).SetParameters(2, field.isEmpty() ? freshStrings(place)[2] : field);
    if (place > 0 && !field.isEmpty() && keyword(place) == undefined)
        setTransformation(place, asItStands);
}

void RegressionModel::setSecondField(int place, const QString &field)
{
    repair(place);
    at(place).SetParameters(3, field.isEmpty() ? freshStrings(place)[3] : field);
}

void RegressionModel::setNumber(int place, const QString &number)
{
    repair(place);
    const Transformation *form = transformation(place);
    if (form != nullptr && (form->second == Second::Exponent || form->second == Second::ScaleFactor))
        at(place).SetParameters(indexOfSecond(form->second), number);
}

void RegressionModel::setTransformation(int place, const QString &keyword)
{
    repair(place);
    if (place == 0)
        return response_.SetTransformation(keyword);
    TIndepVar &definition = controls_[std::size_t(place - 1)];
    if (keyword == undefined)
        return definition.SetUsage(QStringLiteral("Inactive"));
    definition.SetTransformation(keyword);
    const Transformation *form = transformation(place);
    if (form != nullptr && form->second == Second::Exponent && !isWholeExponent(definition.Exponent()))
        definition.SetExponent(QStringLiteral("2"));
}

void RegressionModel::clear(int place)
{
    setStrings(place, freshStrings(place));
}

void RegressionModel::exchange(int one, int other)
{
    if (one == other)
        return;
    if (one != 0 && other != 0)
        return std::swap(controls_[std::size_t(one - 1)], controls_[std::size_t(other - 1)]);
    struct Half
    {
        QString field;
        QString keyword;
        QString number;
    };
    const auto half = [this](int place) {
        return Half{field(place), isDefined(place) ? keyword(place) : asItStands, number(place)};
    };
    const auto put = [this](int place, const Half &what) {
        clear(place);
        if (what.field.isEmpty())
            return;
        setField(place, what.field);
        const Transformation *form = findKeyword(transformations(place), what.keyword);
        if (form != nullptr && form->second != Second::Field2 && form->term) {
            setTransformation(place, what.keyword);
            setNumber(place, what.number);
        }
    };
    const Half first = half(one);
    const Half second = half(other);
    put(one, second);
    put(other, first);
}

std::vector<int> RegressionModel::differences(const RegressionModel &other) const
{
    std::vector<int> places;
    for (int place = 0; place < Places; ++place) {
        if (strings(place) != other.strings(place))
            places.push_back(place);
    }
    return places;
}

} // namespace nuvo
