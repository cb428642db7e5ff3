#include "design/Cv32reg.h"

#include "design/Catalogue.h"
#include "select/Bckmain.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

void Cv32reg::Register(nuvo::Catalogue &catalogue)
{
    const QString page = QStringLiteral("Nuvo Statistics");
    catalogue.RegisterComponent<TOptimizeMLR>(page, QStringLiteral("Best subsets of the control variables"));
    catalogue.RegisterComponent<TBackElimMLR>(page, QStringLiteral("Backward elimination of control variables"));
    catalogue.RegisterComponent<TFwdSelectMLR>(page, QStringLiteral("Forward selection of control variables"));
    catalogue.RegisterComponent<TStepWiseMLR>(page, QStringLiteral("Stepwise regression"));

    const QString text = QStringLiteral("QString");
    catalogue.RegisterPropertyEditor<TCorvane, TDatasetProperty>(text, QStringLiteral("Dataset"));
    catalogue.RegisterPropertyEditor<TStepWiseMLR, TFTableProperty>(text, QStringLiteral("FPercent"));
    catalogue.RegisterPropertyEditor<TCorvane, TTableComponentProperty>(text, QStringLiteral("FDistTable"));
}
