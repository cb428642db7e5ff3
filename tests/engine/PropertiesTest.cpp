// SPDX-License-Identifier: MIT
#include "engine/Regressionforms.h"

#include <QMetaProperty>

// What a form stores.

TYPED_TEST(RegressionForms, PublishesItsPropertiesInThisOrder)
{
    const QMetaObject *meta = this->regression.metaObject();
    QStringList names;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        names.append(QString::fromLatin1(property.typeName()) + u' ' + QString::fromLatin1(property.name()));
        EXPECT_TRUE(property.isStored()) << property.name();
        EXPECT_TRUE(property.isDesignable()) << property.name();
        EXPECT_TRUE(property.isWritable()) << property.name();
        EXPECT_TRUE(property.isScriptable()) << property.name();
    }
    QStringList expected;
    for (int k = 1; k <= MaxControls; ++k)
        expected.append(QStringLiteral("QStringList ControlVar%1").arg(k, 2, 10, QLatin1Char('0')));
    expected += {text("QString Description"),   text("bool ShowLoadProgress"),
                 text("bool ShowWarnings"),     text("QStringList ResponseVarY"),
                 text("QString ReportMessage"), QString::fromLatin1(meta->className()) + text("::TRecords Records")};
    EXPECT_EQ(names, expected);
}

TYPED_TEST(RegressionForms, PropertiesReadWhatWasWritten)
{
    TypeParam &component = this->regression;
    for (int k = 1; k <= MaxControls; ++k) {
        const QByteArray name = QStringLiteral("ControlVar%1").arg(k, 2, 10, QLatin1Char('0')).toLatin1();
        EXPECT_EQ(component.property(name).toStringList(), TIndepVar().ToQStringList()) << name.constData();
        QStringList strings = control("Log", qPrintable(QStringLiteral("f%1").arg(k))).ToQStringList();
        EXPECT_TRUE(component.setProperty(name, strings));
        EXPECT_EQ(component.property(name).toStringList(), strings);
        EXPECT_EQ(component.ControlVar(k).ToQStringList(), strings) << k;
    }
    EXPECT_EQ(component.property("ResponseVarY").toStringList(), TDependentVar().ToQStringList());
    EXPECT_TRUE(component.setProperty("ResponseVarY", response("Log", "y").ToQStringList()));
    EXPECT_EQ(component.ResponseVarY().Transformation(), text("Log"));
    for (const char *name : {"ShowLoadProgress", "ShowWarnings"}) {
        EXPECT_EQ(component.property(name), QVariant(false));
        EXPECT_TRUE(component.setProperty(name, true));
        EXPECT_EQ(component.property(name), QVariant(true));
    }
    EXPECT_TRUE(component.ShowLoadProgress());
    EXPECT_TRUE(component.ShowWarnings());
    EXPECT_TRUE(component.setProperty("Description", text("labour")));
    EXPECT_TRUE(component.setProperty("ReportMessage", text("house")));
    EXPECT_EQ(component.Description(), text("labour"));
    EXPECT_EQ(component.ReportMessage(), text("house"));
}

TYPED_TEST(RegressionForms, APropertyRepairsAListOfAnotherLength)
{
    TypeParam &component = this->regression;
    const auto written = [&component](const char *name, const char *strings) {
        component.setProperty(name, text(strings).split(u'|', Qt::SkipEmptyParts));
        return component.property(name).toStringList().join(u'|');
    };
    component.SetControl(2, control("Log", "old"));
    EXPECT_EQ(written("ControlVar02", "Active|None|a"), text("Active|None|a|Datafield2|1.00|10"));
    EXPECT_EQ(written("ControlVar02", "Active|None|a|b|2|3|7|8|9"), text("Active|None|a|b|2|3"));
    EXPECT_EQ(written("ControlVar02", ""), text("Inactive|Undefined|Datafield1|Datafield2|1.00|10"));
    EXPECT_EQ(written("ResponseVarY", "Undefined|Log|cost"), text("Undefined|Log|cost|Undefined|Undefined|1"));
    EXPECT_EQ(written("ResponseVarY", "U|Scale|cost|U|U|5|6|7|8"), text("U|Scale|cost|U|U|5"));
    EXPECT_EQ(written("ResponseVarY", ""), text("Undefined|None|Datafield|Undefined|Undefined|1"));
}

TEST_F(Regressions, AListChangedInCodeBehavesAsGiven)
{
    fill("y a b c", kRecords);
    define(regression, "a b");
    regression.ControlVar(1).Assign(QStringList());
    EXPECT_TRUE(regression.ReLoad());
    EXPECT_EQ(regression.GetNumVars(), 1) << "undefined, as it has no Transformation";
    TIndepVar brief;
    brief.Assign(QStringList{text("Active"), text("None")});
    regression.SetControl(1, brief);
    EXPECT_EQ(regression.ControlVar(1).Count(), 2);
    EXPECT_THROW(regression.ReLoad(), EStringListError);
    EXPECT_FALSE(regression.Loaded());
    EXPECT_FALSE(regression.ControlsDisabled());
    regression.SetControl(1, control("None", "a"));
    EXPECT_TRUE(regression.ReLoad());
}
