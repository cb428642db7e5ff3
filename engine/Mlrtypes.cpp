#include "engine/Mlrtypes.h"

#include "engine/Termreader.h"

#include <QStringBuilder>

namespace {

const QString kUndefined = QStringLiteral("Undefined");

/// The strings as far as there are any, then the defaults.
QStringList repaired(const QStringList &strings, const QStringList &defaults)
{
    return strings.first(qMin(strings.size(), defaults.size())) +
           defaults.sliced(qMin(strings.size(), defaults.size()));
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
    if (value == u"Inactive")
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
    const QString transformation = Transformation();
    if (transformation == u"None")
        return Field1();
    if (transformation == u"Log")
        return u"Ln(" % Field1() % u")";
    // Without parentheses, unlike the response's.
    if (transformation == u"Inverse")
        return u"1/" % Field1();
    if (transformation == u"Sqrt")
        return Field1() % u"^1/2";
    if (transformation == u"Power")
        return Field1() % u"^" % Exponent();
    if (transformation == u"Scale")
        return Field1() % u"/" % ScaleFactor();
    if (transformation == u"Product")
        return Field1() % u"*" % Field2();
    if (transformation == u"Quotient")
        return Field1() % u"/" % Field2();
    if (transformation == u"Inactive" || transformation == kUndefined)
        return QStringLiteral("Disabled");
    return {};
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
    const QString &transformation = Transformation();
    if (transformation == u"None")
        return FieldName();
    if (transformation == u"Log")
        return u"Ln(" % FieldName() % u")";
    if (transformation == u"Inverse")
        return u"1/(" % FieldName() % u")";
    if (transformation == u"Scale")
        return FieldName() % u"/" % ScaleFactor();
    if (transformation == u"Inactive")
        return QStringLiteral("Disabled");
    return {};
}

void TDependentVar::AssignRepaired(const QStringList &strings)
{
    Assign(repaired(strings, TDependentVar().ToQStringList()));
}
