#include "design/Datareg.h"

#include "design/Catalogue.h"
#include "platform/Query.h"
#include "platform/Table.h"

void Datareg::Register(nuvo::Catalogue &catalogue)
{
    const QString page = QStringLiteral("Data Access");
    catalogue.RegisterComponent<TTable>(page, QStringLiteral("The records of a table"));
    catalogue.RegisterComponent<TQuery>(page, QStringLiteral("The records of an SQL statement"));

    const QString text = QStringLiteral("QString");
    catalogue.RegisterPropertyEditor<TDataSet, TDatabaseNameProperty>(text, QStringLiteral("DatabaseName"));
    catalogue.RegisterPropertyEditor<TTable, TTableNameProperty>(text, QStringLiteral("TableName"));
}
