// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Component.h"

#include <QFlags>
#include <QList>
#include <QPointer>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <utility>

class TField;
class TIndepVar;
class TRegression;

/// What the form designer has to know of a property's editor.
enum TPropertyAttribute : unsigned {
    paValueList = 1,   ///< GetValues() has values to choose from
    paMultiSelect = 2, ///< stays with several components selected
    paSortList = 4,    ///< the values are shown sorted
    paDialog = 8,      ///< Edit() opens a dialog
};
Q_DECLARE_FLAGS(TPropertyAttributes, TPropertyAttribute)
Q_DECLARE_OPERATORS_FOR_FLAGS(TPropertyAttributes)

/// Edits one property of the components that are selected in a form designer. An editor is made for one edit and
/// knows nothing of the designer: whoever makes it says how a value is written and where names are looked up.
class TPropertyEditor
{
public:
    /// Stores a value in a component; a designer does it through its undo stack. May throw what the setter throws.
    using Writer = std::function<void(TComponent &component, const QString &property, const QVariant &value)>;
    /// The form that a component is on; nullptr where there is none.
    using ScopeFinder = std::function<QWidget *(const TComponent &component)>;

    /// \pre at least one component.
    TPropertyEditor(const QList<TComponent *> &components, const QString &property);
    TPropertyEditor(const TPropertyEditor &) = delete;
    TPropertyEditor &operator=(const TPropertyEditor &) = delete;
    virtual ~TPropertyEditor();

    /// The property's name.
    const QString &GetName() const { return property_; }
    /// The components that are still there, the first selected one first.
    QList<TComponent *> Components() const;

    virtual TPropertyAttributes GetAttributes() const = 0;
    /// Opens the editor's dialog, as far as it has one (paDialog), and writes the result. \throws EInvalidCast for a
    /// component of another class than the editor is for, EDatabaseError; nothing was written then.
    virtual void Edit() {}
    /// The values to choose from (paValueList), in the order in which they were found. \throws EDatabaseError
    virtual QStringList GetValues() { return {}; }
    /// Writes one of the values to every component.
    void SetValue(const QVariant &value);

    /// Until then values are written with setProperty().
    void SetWriter(Writer writer) { writer_ = std::move(writer); }
    /// Until then a component's form is its outermost ancestor.
    void SetScopeFinder(ScopeFinder finder) { scope_ = std::move(finder); }

protected:
    /// The first selected component. \throws EInvalidCast when it is of another class or no longer there.
    template <class Component>
    Component &First() const;
    void Write(TComponent &component, const QVariant &value) const;
    /// Names of components on the first selected component's form, in the form's order.
    QStringList NamesOnForm(const std::function<bool(const TComponent &component)> &wanted) const;

private:
    QList<QPointer<TComponent>> components_;
    QString property_;
    Writer writer_;
    ScopeFinder scope_;
};

/// An editor of a property that is an object of its own.
class TClassProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    /// A dialog, for the first selected component alone.
    TPropertyAttributes GetAttributes() const override { return paDialog | paMultiSelect; }
};

/// Whether a field's class counts as a number: TFloatField, TIntegerField, TSmallintField, TWordField, TCurrencyField
/// and what derives from them.
bool NumericField(const TField &field);

namespace nuvo {

/// k for "ControlVar01" to "ControlVar10"; 0 for any other name.
int controlNumber(QStringView property);

} // namespace nuvo

/// What the editors of control variables have in common. A property that is none of ControlVar01 to ControlVar10
/// copies nothing and sets nothing.
class TControlVarProperty : public TClassProperty
{
public:
    using TClassProperty::TClassProperty;
    void GetCurrentParameters(const TRegression &component, TIndepVar &variable) const;
    void SetNewParameters(TComponent &component, const TIndepVar &variable) const;
};

/// Opens the dialog for a control variable of a TMLRTable with the table's numeric fields; where it has none, a
/// message says so. The definition is written back in every case.
class TMLRTControlVarProperty : public TControlVarProperty
{
public:
    using TControlVarProperty::TControlVarProperty;
    void Edit() override;
};

/// The same for a TMLRQuery, whose fields are not known before it runs: their names are typed. Where its database
/// tells them, they are completed, and other names marked.
class TMLRQControlVarProperty : public TControlVarProperty
{
public:
    using TControlVarProperty::TControlVarProperty;
    void Edit() override;
};

/// The response of a TMLRTable.
class TMLRTResponseVarProperty : public TClassProperty
{
public:
    using TClassProperty::TClassProperty;
    void Edit() override;
};

/// The response of a TMLRQuery.
class TMLRQResponseVarProperty : public TClassProperty
{
public:
    using TClassProperty::TClassProperty;
    void Edit() override;
};

/// An editor that offers values to choose from.
class TValueListProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override { return paValueList | paMultiSelect | paSortList; }
};

/// The regression components of the form.
class TDatasetProperty : public TValueListProperty
{
public:
    using TValueListProperty::TValueListProperty;
    QStringList GetValues() override;
};

/// The columns of a table of the F distribution.
class TFTableProperty : public TValueListProperty
{
public:
    using TValueListProperty::TValueListProperty;
    QStringList GetValues() override;
};

/// The tables of the form but the component itself.
class TTableComponentProperty : public TValueListProperty
{
public:
    using TValueListProperty::TValueListProperty;
    QStringList GetValues() override;
};

/// The tables and views of the database that a TTable stands for.
class TTableNameProperty : public TValueListProperty
{
public:
    using TValueListProperty::TValueListProperty;
    QStringList GetValues() override;
};

/// Chooses the file of a database, or, where the name is that of a server, changes it. The connections that a program
/// registers are not known at design time.
class TDatabaseNameProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override { return paDialog | paMultiSelect; }
    void Edit() override;
};

/// The statement of a query, in the SQL editor. It is written to all components where it was changed.
class TSqlProperty : public TPropertyEditor
{
public:
    using TPropertyEditor::TPropertyEditor;
    TPropertyAttributes GetAttributes() const override { return paDialog | paMultiSelect; }
    void Edit() override;
};
