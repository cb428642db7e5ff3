// SPDX-License-Identifier: MIT
#pragma once

#include "design/Definitiontest.h"
#include "design/Mlrctrl.h"

// Control variables and the dialog that defines them.

inline TIndepVar variable(const char *transformation, const char *field1, const char *field2 = "Datafield2",
                          const char *exponent = "1.00", const char *factor = "10")
{
    TIndepVar definition;
    definition.SetTransformation(u(transformation));
    definition.SetField1(u(field1));
    definition.SetField2(u(field2));
    definition.SetExponent(u(exponent));
    definition.SetScaleFactor(u(factor));
    return definition;
}

inline Edited<TIndepVar> editTable(const TIndepVar &definition, const std::function<void(QDialog &)> &act,
                                   const QStringList &fields = fieldNames())
{
    TMLRTable table;
    table.SetName(u("MLRTable1"));
    return openFor<TControlDefDlg>(table, "ControlVar03", definition, act, fields);
}

inline Edited<TIndepVar> editQuery(const TIndepVar &definition, const std::function<void(QDialog &)> &act)
{
    TMLRQuery query;
    query.SetName(u("MLRQuery1"));
    return openFor<TControlDefDlg>(query, "ControlVar03", definition, act, {u("...")});
}

inline const char *const kItems[] = {"Inactive",
                                     "datafield1",
                                     "ln(datafield1)",
                                     "1/(datafield1)",
                                     "sqrt(datafield)",
                                     "(datafield1)^r",
                                     "(datafield)/n",
                                     "(datafield1)*(datafield2)",
                                     "(datafield1)/(datafield2)"};
inline const char *const kKeywords[] = {"Undefined", "None",  "Log",     "Inverse", "Sqrt",
                                        "Power",     "Scale", "Product", "Quotient"};

inline const char *const kLower[] = {"pnlTblY", "pnlQryY", "pnlXpwry", "pnlScaleX"};

inline void expectInFront(const QDialog &dialog, const char *name)
{
    for (const char *panel : kLower)
        EXPECT_EQ(inFront(dialog, panel), u(panel) == u(name)) << panel;
}

inline QStringList entries(const QWidget &dialog, const char *name)
{
    QStringList list;
    const auto *box = part<QComboBox>(dialog, name);
    for (int i = 0; i < box->count(); ++i)
        list += box->itemText(i);
    return list;
}
