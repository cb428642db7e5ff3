// SPDX-License-Identifier: MIT
#include "design/Datareg.h"

#include "design/Catalogue.h"

void Datareg::Register(nuvo::Catalogue &catalogue)
{
    catalogue.RegisterComponents(nuvo::DataComponents);

    const QString text = QStringLiteral("QString");
    catalogue.RegisterPropertyEditor<TDataSet, TDatabaseNameProperty>(text, QStringLiteral("DatabaseName"));
    catalogue.RegisterPropertyEditor<TTable, TTableNameProperty>(text, QStringLiteral("TableName"));
    catalogue.RegisterPropertyEditor<TQuery, TSqlProperty>(QStringLiteral("QStringList"), QStringLiteral("SQL"));
}
