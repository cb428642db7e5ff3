// SPDX-License-Identifier: MIT
#include "design/Mlr32reg.h"

#include "design/Catalogue.h"

void Mlr32reg::Register(nuvo::Catalogue &catalogue)
{
    catalogue.RegisterComponents(nuvo::RegressionComponents);

    const QString control = QStringLiteral("TIndepVar");
    const QString response = QStringLiteral("TDependentVar");
    catalogue.RegisterPropertyEditor<TMLRTable, TMLRTControlVarProperty>(control, {});
    catalogue.RegisterPropertyEditor<TMLRQuery, TMLRQControlVarProperty>(control, {});
    catalogue.RegisterPropertyEditor<TMLRTable, TMLRTResponseVarProperty>(response, {});
    catalogue.RegisterPropertyEditor<TMLRQuery, TMLRQResponseVarProperty>(response, {});
}
