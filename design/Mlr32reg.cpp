#include "design/Mlr32reg.h"

#include "design/Catalogue.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"

void Mlr32reg::Register(nuvo::Catalogue &catalogue)
{
    const QString page = QStringLiteral("Nuvo Statistics");
    catalogue.RegisterComponent<TMLRTable>(page, QStringLiteral("Multiple linear regression on a table"));
    catalogue.RegisterComponent<TMLRQuery>(page, QStringLiteral("Multiple linear regression on a query"));

    const QString control = QStringLiteral("TIndepVar");
    const QString response = QStringLiteral("TDependentVar");
    catalogue.RegisterPropertyEditor<TMLRTable, TMLRTControlVarProperty>(control, {});
    catalogue.RegisterPropertyEditor<TMLRQuery, TMLRQControlVarProperty>(control, {});
    catalogue.RegisterPropertyEditor<TMLRTable, TMLRTResponseVarProperty>(response, {});
    catalogue.RegisterPropertyEditor<TMLRQuery, TMLRQResponseVarProperty>(response, {});
}
