// SPDX-License-Identifier: MIT
#include "design/Catalogue.h"

#include "design/Cv32reg.h"
#include "design/Datareg.h"
#include "design/Mlr32reg.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "select/Bkmain.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"
#include "support/Print.h"
#include "support/Text.h"

#include <QMetaProperty>

#include <gtest/gtest.h>

namespace {

nuvo::Catalogue everything()
{
    nuvo::Catalogue catalogue;
    Mlr32reg::Register(catalogue);
    Cv32reg::Register(catalogue);
    Datareg::Register(catalogue);
    return catalogue;
}

QStringList classesOn(const nuvo::Catalogue &catalogue, const char *page)
{
    QStringList names;
    for (const nuvo::ComponentEntry &entry : catalogue.Components()) {
        if (entry.page == u(page))
            names += entry.ClassName();
    }
    return names;
}

/// An editor for a property of a component as the catalogue makes it; null where there is none.
std::unique_ptr<TPropertyEditor> editorFor(const nuvo::Catalogue &catalogue, TComponent &component,
                                           const char *property)
{
    const nuvo::EditorEntry *entry = catalogue.EditorFor(*component.metaObject(), u(property));
    return entry != nullptr ? entry->create({&component}, u(property)) : nullptr;
}

template <class Editor>
void expectEditor(const nuvo::Catalogue &catalogue, TComponent &component, const char *property)
{
    const auto editor = editorFor(catalogue, component, property);
    EXPECT_NE(dynamic_cast<Editor *>(editor.get()), nullptr)
        << component.metaObject()->className() << '.' << property;
}

} // namespace

TEST(Catalogue, HasTheComponentsInTheOrderOfThePalette)
{
    const nuvo::Catalogue catalogue = everything();
    EXPECT_EQ(classesOn(catalogue, "Nuvo Statistics"),
              (QStringList{u("TMLRTable"), u("TMLRQuery"), u("TOptimizeMLR"), u("TBackElimMLR"), u("TFwdSelectMLR"),
                           u("TStepWiseMLR")}));
    EXPECT_EQ(classesOn(catalogue, "Data Access"), (QStringList{u("TTable"), u("TQuery")}));
}

TEST(Catalogue, MakesTheComponentsOnTheirOwner)
{
    QWidget form;
    const nuvo::Catalogue catalogue = everything();
    for (const nuvo::ComponentEntry &entry : catalogue.Components()) {
        const TComponent *component = entry.create(&form);
        EXPECT_EQ(u(component->metaObject()->className()), entry.ClassName());
        EXPECT_EQ(component->Owner(), &form);
        EXPECT_FALSE(entry.description.isEmpty());
    }
}

TEST(Catalogue, ListsTheEditorsAsTheyWereRegistered)
{
    struct Row
    {
        const char *type;
        const char *component;
        const char *property;
    };
    const auto expectRows = [](const nuvo::Catalogue &catalogue, const std::vector<Row> &rows) {
        ASSERT_EQ(catalogue.Editors().size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(catalogue.Editors()[i].propertyType, u(rows[i].type));
            EXPECT_EQ(u(catalogue.Editors()[i].component->className()), u(rows[i].component));
            EXPECT_EQ(catalogue.Editors()[i].propertyName, u(rows[i].property));
        }
    };
    nuvo::Catalogue regression;
    Mlr32reg::Register(regression);
    expectRows(regression, {{"TIndepVar", "TMLRTable", ""},
                            {"TIndepVar", "TMLRQuery", ""},
                            {"TDependentVar", "TMLRTable", ""},
                            {"TDependentVar", "TMLRQuery", ""}});
    nuvo::Catalogue selection;
    Cv32reg::Register(selection);
    expectRows(selection, {{"QString", "TCorvane", "Dataset"},
                           {"QString", "TStepWiseMLR", "FPercent"},
                           {"QString", "TCorvane", "FDistTable"}});
}

TEST(Catalogue, FindsTheEditorOfADefinition)
{
    const nuvo::Catalogue catalogue = everything();
    TMLRTable table;
    TMLRQuery query;
    for (int k = 1; k <= 10; ++k) {
        const QByteArray property = "ControlVar" + QByteArray::number(k).rightJustified(2, '0');
        expectEditor<TMLRTControlVarProperty>(catalogue, table, property.constData());
        expectEditor<TMLRQControlVarProperty>(catalogue, query, property.constData());
    }
    expectEditor<TMLRTResponseVarProperty>(catalogue, table, "ResponseVarY");
    expectEditor<TMLRQResponseVarProperty>(catalogue, query, "ResponseVarY");
}

TEST(Catalogue, FindsTheEditorsOfBaseClasses)
{
    const nuvo::Catalogue catalogue = everything();
    TOptimizeMLR optimize;
    TBackElimMLR backward;
    TFwdSelectMLR forward;
    TStepWiseMLR stepwise;
    for (TComponent *component : QList<TComponent *>{&optimize, &backward, &forward, &stepwise})
        expectEditor<TDatasetProperty>(catalogue, *component, "Dataset");
    for (TComponent *component : QList<TComponent *>{&backward, &forward, &stepwise})
        expectEditor<TTableComponentProperty>(catalogue, *component, "FDistTable");
    expectEditor<TFTableProperty>(catalogue, stepwise, "FPercent");
    TMLRTable table;
    TMLRQuery query;
    expectEditor<TTableNameProperty>(catalogue, table, "TableName");
    expectEditor<TDatabaseNameProperty>(catalogue, table, "DatabaseName");
    expectEditor<TDatabaseNameProperty>(catalogue, query, "DatabaseName");
    expectEditor<TSqlProperty>(catalogue, query, "SQL");
}

TEST(Catalogue, KnowsNoEditorForOtherProperties)
{
    const nuvo::Catalogue catalogue = everything();
    TMLRQuery query;
    TOptimizeMLR optimize;
    for (const char *property : {"Description", "ShowWarnings", "TableName", "objectName", "NoSuchProperty",
                                 "ControlVar11", "controlvar01", ""})
        EXPECT_EQ(editorFor(catalogue, query, property), nullptr) << property;
    for (const char *property : {"FPercent", "FDistTable", "ModelsToSave", "ControlVar01"})
        EXPECT_EQ(editorFor(catalogue, optimize, property), nullptr) << property;
}

TEST(Catalogue, EveryListOfStringsOfARegressionButTheSqlTextIsADefinition)
{
    for (const QMetaObject *component : {&TMLRTable::staticMetaObject, &TMLRQuery::staticMetaObject}) {
        int controls = 0;
        int responses = 0;
        for (int i = 0; i < component->propertyCount(); ++i) {
            const QMetaProperty property = component->property(i);
            const QString type = nuvo::Catalogue::PropertyType(*component, u(property.name()));
            controls += type == u("TIndepVar");
            responses += type == u("TDependentVar");
            if (type == u("QStringList")) {
                EXPECT_EQ(u(property.name()), u("SQL"));
            }
        }
        EXPECT_EQ(controls, 10);
        EXPECT_EQ(responses, 1);
    }
    EXPECT_EQ(nuvo::Catalogue::PropertyType(TMLRTable::staticMetaObject, u("TableName")), u("QString"));
    EXPECT_EQ(nuvo::Catalogue::PropertyType(TMLRTable::staticMetaObject, u("Nothing")), QString());
}

TEST(Catalogue, ANameCountsMoreThanATypeAndTheNearestClassMost)
{
    nuvo::Catalogue catalogue;
    catalogue.RegisterPropertyEditor<TDataSet, TDatabaseNameProperty>(u("QString"), u("TableName"));
    catalogue.RegisterPropertyEditor<TTable, TFTableProperty>(u("QString"), {});
    catalogue.RegisterPropertyEditor<TTable, TTableNameProperty>(u("QString"), u("TableName"));
    TMLRTable table;
    expectEditor<TTableNameProperty>(catalogue, table, "TableName");
    expectEditor<TFTableProperty>(catalogue, table, "Filter");
    EXPECT_EQ(editorFor(catalogue, table, "Active"), nullptr) << "another type";
}
