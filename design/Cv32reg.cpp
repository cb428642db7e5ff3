// SPDX-License-Identifier: MIT
#include "design/Cv32reg.h"

#include "design/Catalogue.h"

void Cv32reg::Register(nuvo::Catalogue &catalogue)
{
    catalogue.RegisterComponents(nuvo::SelectionComponents);

    const QString text = QStringLiteral("QString");
    catalogue.RegisterPropertyEditor<TCorvane, TDatasetProperty>(text, QStringLiteral("Dataset"));
    catalogue.RegisterPropertyEditor<TStepWiseMLR, TFTableProperty>(text, QStringLiteral("FPercent"));
    catalogue.RegisterPropertyEditor<TCorvane, TTableComponentProperty>(text, QStringLiteral("FDistTable"));
}
