// SPDX-License-Identifier: MIT
#include "design/Propertyeditors.h"

#include "design/Fieldreading.h"
#include "design/Mlrctrl.h"
#include "design/Mlrresp.h"
#include "design/sql/Sqldialog.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Databasename.h"
#include "platform/Errors.h"
#include "platform/Formfolder.h"
#include "platform/Messages.h"
#include "platform/Scan.h"
#include "present/Connectiondlg.h"
#include "present/Filedialog.h"

#include <QScopeGuard>

#include <utility>

namespace {

void writeProperty(TComponent &component, const QString &property, const QVariant &value)
{
    component.setProperty(property.toUtf8().constData(), value);
}

QWidget *outermostAncestor(const TComponent &component)
{
    QWidget *scope = component.Owner();
    while (scope != nullptr && scope->parentWidget() != nullptr)
        scope = scope->parentWidget();
    return scope;
}

QStringList numericFields(TDataSet &dataset)
{
    QStringList numeric;
    for (const QString &name : dataset.GetFieldNames()) {
        if (NumericField(dataset.FieldByName(name)))
            numeric += name;
    }
    return numeric;
}

template <class Dialog, class Definition>
void openDialog(TDataSet &component, const QString &property, const QStringList &fields, Definition &definition)
{
    // The window in front owns it and may go while the dialog is open.
    const QPointer<Dialog> dialog = new Dialog(nuvo::windowInFront());
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    if (qobject_cast<const TQuery *>(&component) != nullptr) {
        // What may be typed, as soon as the database has told it; the dialog owns the reading.
        new nuvo::FieldReading(
            component, [&dialog](const nuvo::ModelFields &known) { dialog->SetFields(known); }, dialog);
    }
    dialog->OpenForm(component, property, fields, definition);
}

template <class Dialog, class Definition>
void openForTable(TMLRTable &table, const QString &property, const QStringList &numeric, Definition &definition)
{
    if (numeric.isEmpty())
        MessageDlg(QStringLiteral("No numeric fields found in %1.").arg(table.TableName()), TMsgDlgType::mtError);
    else
        openDialog<Dialog>(table, property, numeric, definition);
}

/// A query's fields are typed, with completion, as what they are is known only when it runs.
const QStringList &noFields()
{
    static const QStringList dots{QStringLiteral("...")};
    return dots;
}

} // namespace

TPropertyEditor::TPropertyEditor(const QList<TComponent *> &components, const QString &property)
    : components_(components.begin(), components.end()), property_(property), writer_(writeProperty),
      scope_(outermostAncestor)
{
}

TPropertyEditor::~TPropertyEditor() = default;

QList<TComponent *> TPropertyEditor::Components() const
{
    QList<TComponent *> present;
    for (const QPointer<TComponent> &component : components_) {
        if (!component.isNull())
            present += component;
    }
    return present;
}

void TPropertyEditor::SetValue(const QVariant &value)
{
    for (const QPointer<TComponent> &component : components_) {
        if (!component.isNull())
            Write(*component, value);
    }
}

void TPropertyEditor::Write(TComponent &component, const QVariant &value) const
{
    writer_(component, property_, value);
}

template <class Component>
Component &TPropertyEditor::First() const
{
    TComponent *component = components_.value(0);
    auto *cast = qobject_cast<Component *>(component);
    if (component == nullptr)
        throw EInvalidCast(QStringLiteral("The component whose %1 is edited is no longer there.").arg(property_));
    if (cast == nullptr)
        throw EInvalidCast(QStringLiteral("\"%1\" is a %2 and not a %3, whose %4 is edited here.")
                               .arg(component->Name(), QLatin1String(component->metaObject()->className()),
                                    QLatin1String(Component::staticMetaObject.className()), property_));
    return *cast;
}

QStringList TPropertyEditor::NamesOnForm(const std::function<bool(const TComponent &)> &wanted) const
{
    QStringList names;
    const TComponent &own = First<TComponent>();
    const QWidget *form = scope_(own);
    if (form == nullptr)
        return names;
    for (const TComponent *component : form->findChildren<TComponent *>()) {
        // One that a form designer has taken off its form is not offered.
        if (component->Designing() == own.Designing() && !component->Name().isEmpty() &&
            !names.contains(component->Name()) && wanted(*component))
            names += component->Name();
    }
    return names;
}

bool NumericField(const TField &field)
{
    return field.IsNumeric();
}

int nuvo::controlNumber(QStringView property)
{
    for (int k = 1; k <= MaxControls; ++k) {
        if (property == QStringLiteral("ControlVar%1").arg(k, 2, 10, QLatin1Char('0')))
            return k;
    }
    return 0;
}

void TControlVarProperty::GetCurrentParameters(const TRegression &component, TIndepVar &variable) const
{
    if (const int k = nuvo::controlNumber(GetName()); k > 0)
        variable = component.ControlVar(k);
}

void TControlVarProperty::SetNewParameters(TComponent &component, const TIndepVar &variable) const
{
    if (nuvo::controlNumber(GetName()) > 0)
        Write(component, variable.ToQStringList());
}

// After the dialog the component is asked for anew: it may have gone with its form.

void TMLRTControlVarProperty::Edit()
{
    auto &table = First<TMLRTable>();
    const QStringList numeric = numericFields(table);
    TIndepVar variable;
    GetCurrentParameters(table, variable);
    openForTable<TControlDefDlg>(table, GetName(), numeric, variable);
    SetNewParameters(First<TMLRTable>(), variable);
}

void TMLRQControlVarProperty::Edit()
{
    auto &query = First<TMLRQuery>();
    TIndepVar variable;
    GetCurrentParameters(query, variable);
    openDialog<TControlDefDlg>(query, GetName(), noFields(), variable);
    SetNewParameters(First<TMLRQuery>(), variable);
}

void TMLRTResponseVarProperty::Edit()
{
    auto &table = First<TMLRTable>();
    const QStringList numeric = numericFields(table);
    TDependentVar variable = table.ResponseVarY();
    openForTable<TResponseDefDlg>(table, GetName(), numeric, variable);
    Write(First<TMLRTable>(), variable.ToQStringList());
}

void TMLRQResponseVarProperty::Edit()
{
    auto &query = First<TMLRQuery>();
    TDependentVar variable = query.ResponseVarY();
    openDialog<TResponseDefDlg>(query, GetName(), noFields(), variable);
    Write(First<TMLRQuery>(), variable.ToQStringList());
}

QStringList TDatasetProperty::GetValues()
{
    return NamesOnForm(
        [](const TComponent &component) { return dynamic_cast<const TRegression *>(&component) != nullptr; });
}

QStringList TFTableProperty::GetValues()
{
    return {QStringLiteral("1 Percent"), QStringLiteral("5 Percent"), QStringLiteral("10 Percent")};
}

QStringList TTableComponentProperty::GetValues()
{
    const TComponent *own = &First<TComponent>();
    return NamesOnForm([own](const TComponent &component) {
        return qobject_cast<const TTable *>(&component) != nullptr && component.Name() != own->Name();
    });
}

QStringList TTableNameProperty::GetValues()
{
    return First<TTable>().TableNames();
}

void TDatabaseNameProperty::Edit()
{
    const QString current = First<TDataSet>().DatabaseName();
    if (nuvo::isServerName(current)) {
        const std::optional<QString> name = nuvo::askDatabaseName(nuvo::windowInFront(), current);
        if (name)
            SetValue(*name);
        return;
    }
    const QString file = nuvo::askExistingFile(
        nuvo::windowInFront(), QStringLiteral("Choose a Database"),
        {QStringLiteral("SQLite databases (*.db *.db3 *.sqlite *.sqlite3)"), QStringLiteral("All files (*)")},
        nuvo::databasePlace(current, nuvo::formFolder(First<TDataSet>())));
    if (!file.isEmpty())
        SetValue(file);
}

void TSqlProperty::Edit()
{
    const auto &query = First<TQuery>();
    const nuvo::ScanSource source = query.Source();
    QStringList lines = query.SQLLines();
    const QPointer<TSqlDialog> dialog = new TSqlDialog(nuvo::windowInFront());
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    if (dialog->OpenForm(query.Name(), source.databaseName, source.params, lines))
        SetValue(lines);
}
