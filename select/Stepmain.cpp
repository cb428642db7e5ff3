#include "select/Stepmain.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"

#include <cmath>

TStepWiseMLR::TStepWiseMLR(QWidget *owner) : TPartialFSearch(owner) {}

TStepWiseMLR::~TStepWiseMLR() = default;

void TStepWiseMLR::SetFInDefault(double value)
{
    RefuseWhileRunning();
    fInDefault_ = std::fabs(value);
}

void TStepWiseMLR::SetFOutDefault(double value)
{
    RefuseWhileRunning();
    fOutDefault_ = std::fabs(value);
}

void TStepWiseMLR::SetFPercent(const QString &column)
{
    RefuseWhileRunning();
    fPercent_ = column;
}

bool TStepWiseMLR::SetControl(TTermTable table, int which, int row)
{
    NeedBound();
    if (TMLRQuery *query = Query())
        return SetQueryControl(*query, table, which, row);
    return SetTableControl(*Table(), table, which, row);
}

void TStepWiseMLR::SetControlByIndex(int index, const QString &transformation)
{
    NeedBound();
    if (TMLRQuery *query = Query())
        SetQueryControlByIndex(*query, index, transformation);
    else
        SetTableControlByIndex(*Table(), index, transformation);
}

void TStepWiseMLR::Run()
{
    throw EDatabaseError(QStringLiteral("The search is not built yet."));
}
