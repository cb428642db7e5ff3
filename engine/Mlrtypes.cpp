// SPDX-License-Identifier: MIT
#include "engine/Mlrtypes.h"

#include "engine/Termreader.h"
#include "engine/Transformations.h"

#include <QStringBuilder>

namespace {

const QString kUndefined = QStringLiteral("Undefined");

/// The strings as far as there are any, then the defaults.
QStringList repaired(const QStringList &strings, const QStringList &defaults)
{
    return strings.first(qMin(strings.size(), defaults.size())) +
           defaults.sliced(qMin(strings.size(), defaults.size()));
}

QString secondText(const TVariableDefinition &definition, nuvo::Second second)
{
    switch (second) {
    case nuvo::Second::Field2:
        return definition.Strings(3);
    case nuvo::Second::Exponent:
        return definition.Strings(4);
    case nuvo::Second::ScaleFactor:
        return definition.ScaleFactor();
    case nuvo::Second::Nothing:
        break;
    }
    return {};
}

QString outputTerm(const TVariableDefinition &definition, const nuvo::Transformation *transformation)
{
    if (transformation == nullptr)
        return {};
    if (!transformation->term)
        return transformation->before.toString();
    return transformation->before % definition.Strings(2) % transformation->behind %
           secondText(definition, transformation->second);
}

} // namespace

TVariableDefinition::TVariableDefinition()
{
    for (int i = 0; i < ParameterCount; ++i)
        Add(kUndefined);
}

TVariableDefinition::~TVariableDefinition() = default;

TIndepVar::TIndepVar()
{
    SetField1(QStringLiteral("Datafield1"));
    SetField2(QStringLiteral("Datafield2"));
    SetTransformation(kUndefined);
    SetUsage(QStringLiteral("Inactive"));
    SetScaleFactor(QStringLiteral("10"));
    SetExponent(QStringLiteral("1.00"));
}

TIndepVar::~TIndepVar() = default;

void TIndepVar::SetUsage(const QString &value)
{
    SetParameters(0, value);
    static constexpr QStringView Inactive(u"Inactive");
    if (value == Inactive)
        SetTransformation(kUndefined);
}

QString TIndepVar::Transformation() const
{
    // A form can stream in a list without strings.
    return Count() > 1 ? Strings(1) : kUndefined;
}

void TIndepVar::SetTransformation(const QString &value)
{
    SetParameters(1, value);
    if (value != kUndefined)
        SetUsage(QStringLiteral("Active"));
}

bool TIndepVar::ValidTransformation(TDataSet &dataset) const
{
    return nuvo::TermReader(*this, dataset).Valid();
}

double TIndepVar::Process(TDataSet &dataset) const
{
    return nuvo::TermReader(*this, dataset).Value();
}

QString TIndepVar::OutputTerm() const
{
    return outputTerm(*this, nuvo::findKeyword(nuvo::controlTransformations(), Transformation()));
}

void TIndepVar::AssignRepaired(const QStringList &strings)
{
    Assign(repaired(strings, TIndepVar().ToQStringList()));
}

TDependentVar::TDependentVar()
{
    SetField(QStringLiteral("Datafield"));
    SetTransformation(QStringLiteral("None"));
    SetScaleFactor(QStringLiteral("1"));
}

TDependentVar::~TDependentVar() = default;

bool TDependentVar::ValidTransformation(TDataSet &dataset) const
{
    return nuvo::TermReader(*this, dataset).Valid();
}

double TDependentVar::Process(TDataSet &dataset) const
{
    return nuvo::TermReader(*this, dataset).Value();
}

QString TDependentVar::OutputTerm() const
{
    return outputTerm(*this, nuvo::findKeyword(nuvo::responseTransformations(), Transformation()));
}

void TDependentVar::AssignRepaired(const QStringList &strings)
{
    Assign(repaired(strings, TDependentVar().ToQStringList()));
}
