// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "platform/Stringlist.h"

class TDataSet;

/// Wherever the regression tests a quantity against zero, this is zero.
inline constexpr double ZeroTolerance = 1e-20;

/// What response and control variables have in common: six strings. They are what a form stores and what an
/// assignment copies; numbers among them are kept as text and converted when used.
class NUVO_EXPORT TVariableDefinition : public TStringList
{
public:
    ~TVariableDefinition() override;

    static constexpr int ParameterCount = 6;

    /// Replaces the string at a position. \throws EStringListError outside the list.
    void SetParameters(int index, const QString &value) { Put(index, value); }

    /// By what a Scale divides, a number as text.
    const QString &ScaleFactor() const { return Strings(5); }
    /// A text that is no number is an error when it is used, not here.
    void SetScaleFactor(const QString &value) { SetParameters(5, value); }

protected:
    TVariableDefinition();
};

/// A control variable: the value of a field or a transformation of one or two. It takes part in the fit exactly when
/// its Transformation is not "Undefined".
///
/// | position | parameter      | after construction | values                                                   |
/// |----------|----------------|--------------------|----------------------------------------------------------|
/// | 0        | Usage          | "Inactive"         | "Active", "Inactive"                                     |
/// | 1        | Transformation | "Undefined"        | "Undefined", "None", "Log", "Inverse", "Sqrt", "Power",  |
/// |          |                |                    | "Scale", "Product", "Quotient"                           |
/// | 2        | Field1         | "Datafield1"       | a field's name                                           |
/// | 3        | Field2         | "Datafield2"       | a field's name (Product, Quotient)                       |
/// | 4        | Exponent       | "1.00"             | an integer as text (Power)                               |
/// | 5        | ScaleFactor    | "10"               | a number as text (Scale)                                 |
class NUVO_EXPORT TIndepVar : public TVariableDefinition
{
public:
    /// The defaults of the table above.
    TIndepVar();
    ~TIndepVar() override;

    /// "Active" or "Inactive": what dialogs show. Whether the variable takes part is said by Transformation().
    const QString &Usage() const { return Strings(0); }
    /// "Inactive" also makes the Transformation "Undefined".
    void SetUsage(const QString &value);
    /// "Undefined" too where the list is too short to have one.
    QString Transformation() const;
    /// Anything but "Undefined" also makes the Usage "Active".
    void SetTransformation(const QString &value);
    /// The field, or the first of two.
    const QString &Field1() const { return Strings(2); }
    /// Whether there is such a field is asked when a record is read.
    void SetField1(const QString &value) { SetParameters(2, value); }
    /// The second field of Product and Quotient.
    const QString &Field2() const { return Strings(3); }
    /// As SetField1().
    void SetField2(const QString &value) { SetParameters(3, value); }
    /// Of Power, an integer as text.
    const QString &Exponent() const { return Strings(4); }
    /// A text that is no integer is an error when it is used, not here.
    void SetExponent(const QString &value) { SetParameters(4, value); }

    /// Whether the dataset's current record can be transformed; false wherever Field1 is null.
    ///
    /// Log and Sqrt want more than 1e-20, Inverse 1e-20 at least in absolute value, Power an Exponent of at least
    /// 0.5, Product a Field2 that is not null. A Quotient takes any Field2: a null or a zero below the line gives
    /// what the floating-point division gives. The factor of a Scale is not tested. \throws EDatabaseError for an
    /// unknown field; EConvertError for a text that is no number.
    bool ValidTransformation(TDataSet &dataset) const;

    /// The transformed value of the current record. Nothing is caught by a test here: Log of -1 is a NaN, 1/0
    /// infinite.
    ///
    /// Power is |v|^k with the sign of the exponent's parity, + for an even and - for an odd k, whatever the sign of
    /// v (2 with exponent 3 gives -8), and 0 for v = 0; k must be an integer text. A transformation that is none of
    /// the table's gives the value of Field1. \throws as ValidTransformation().
    double Process(TDataSet &dataset) const;

    /// How reports write the term: "AGE", "Ln(AGE)", "1/AGE", "AGE^1/2", "AGE^2", "AGE/10", "AGE*COST", "AGE/COST";
    /// "Disabled" when undefined.
    QString OutputTerm() const;

    /// Becomes the six strings of a form file: missing ones get their defaults, surplus ones are dropped.
    void AssignRepaired(const QStringList &strings);
};

/// The response.
///
/// | position | parameter      | after construction | values                             |
/// |----------|----------------|--------------------|------------------------------------|
/// | 1        | Transformation | "None"             | "None", "Log", "Inverse", "Scale"  |
/// | 2        | Field          | "Datafield"        | a field's name                     |
/// | 5        | ScaleFactor    | "1"                | a number as text (Scale)           |
///
/// Positions 0, 3 and 4 hold "Undefined": both kinds of definition have the same shape.
class NUVO_EXPORT TDependentVar : public TVariableDefinition
{
public:
    /// The defaults of the table above.
    TDependentVar();
    ~TDependentVar() override;

    /// "None", "Log", "Inverse" or "Scale".
    const QString &Transformation() const { return Strings(1); }
    /// Another text counts as "None", but has no term.
    void SetTransformation(const QString &value) { SetParameters(1, value); }
    /// The field.
    const QString &FieldName() const { return Strings(2); }
    /// Whether there is such a field is asked when a record is read.
    void SetField(const QString &value) { SetParameters(2, value); }

    /// Whether the current record can be transformed: the field is not null, and for Log more than 1e-20, for Inverse
    /// more than 1e-20 in absolute value; for Scale the factor is more than 1e-20 in absolute value.
    /// \throws EDatabaseError for an unknown field; EConvertError for a text that is no number.
    bool ValidTransformation(TDataSet &dataset) const;

    /// The transformed value of the current record; the field's value for an unknown transformation.
    /// \throws as ValidTransformation().
    double Process(TDataSet &dataset) const;

    /// "COST", "Ln(COST)", "1/(COST)", "COST/10".
    QString OutputTerm() const;

    /// As TIndepVar::AssignRepaired.
    void AssignRepaired(const QStringList &strings);
};
