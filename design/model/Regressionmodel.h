// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrtypes.h"
#include "engine/Transformations.h"
#include "engine/kernel/Maxdata.h"
#include "platform/Export.h"

#include <array>
#include <span>
#include <vector>

class TRegression;

namespace nuvo {

/// What a regression is of, as a value: the definition of the response and those of the ten control variables, each
/// at its place. Place 0 is the response's, places 1 to 10 are those of the control variables. \pre in every
/// operation: 0 <= place < Places.
///
/// A definition that nobody touches stays what it is, whatever it holds: program code may have put other lists of
/// strings into it than six. Only a definition that is changed is brought into its shape.
class NUVO_EXPORT RegressionModel
{
public:
    static constexpr int Places = MaxControls + 1;

    RegressionModel() = default;
    /// Copies of the definitions of a component.
    static RegressionModel of(const TRegression &regression);

    /// The definition at place 0.
    const TDependentVar &response() const { return response_; }
    /// The definition at a place from 1.
    const TIndepVar &control(int place) const { return controls_[std::size_t(place - 1)]; }
    /// The strings of a place, as a form stores them.
    const QStringList &strings(int place) const { return at(place).ToQStringList(); }
    /// Takes them as they are.
    void setStrings(int place, const QStringList &strings) { at(place).Assign(strings); }

    /// The transformations that a place can have.
    static std::span<const Transformation> transformations(int place);
    /// The property that holds a place: "ResponseVarY", "ControlVar01" to "ControlVar10".
    static QString property(int place);
    /// "Y", "X1" to "X10".
    static QString label(int place);

    // What a place holds. A list that is too short gives what a new definition has there.

    /// The transformation as definitions hold it.
    QString keyword(int place) const { return parameter(place, 1); }
    /// The entry of the keyword; nullptr for one that is not known.
    const Transformation *transformation(int place) const;
    /// The first field; empty where a new definition's placeholder stands.
    QString field(int place) const { return name(place, 2); }
    /// The second field, likewise.
    QString secondField(int place) const { return name(place, 3); }
    /// The number that stands second in the term, as the definition holds it; empty where there is none.
    QString number(int place) const;
    /// Whether there is nothing: no field, and of a control variable no transformation.
    bool isEmpty(int place) const;
    /// Whether a control variable takes part in the fit, and the response is named.
    bool isDefined(int place) const;
    /// The term as reports print it; empty where the place is not defined, or holds less than its term takes.
    QString term(int place) const;
    /// The places in which a field stands, first or second, ascending; upper and lower case alike.
    std::vector<int> placesOf(const QString &field) const;
    /// The first control variable's place that is empty; 0 when there is none.
    int nextFree() const;

    // Changes.

    /// A control variable that is not defined becomes the field as it stands; what is defined keeps its
    /// transformation. An empty name takes the field away.
    void setField(int place, const QString &field);
    /// The second field of a product or a quotient; an empty name takes it away.
    void setSecondField(int place, const QString &field);
    /// The number that the transformation takes; nothing happens where it takes none.
    void setNumber(int place, const QString &number);
    /// "Undefined" makes a control variable inactive and keeps its fields. A power that has no whole exponent yet is
    /// made a square.
    void setTransformation(int place, const QString &keyword);
    /// Makes it a new definition.
    void clear(int place);
    /// Exchanges two places. Between the response and a control variable go field and transformation, as far as the
    /// other kind has it.
    void exchange(int one, int other);

    friend bool operator==(const RegressionModel &a, const RegressionModel &b) { return a.differences(b).empty(); }
    /// The places that hold other strings.
    std::vector<int> differences(const RegressionModel &other) const;

private:
    const TVariableDefinition &at(int place) const;
    TVariableDefinition &at(int place);
    QString parameter(int place, int index) const;
    QString name(int place, int index) const;
    void repair(int place);

    TDependentVar response_;
    std::array<TIndepVar, MaxControls> controls_;
};

} // namespace nuvo
