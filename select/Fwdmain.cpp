#include "select/Fwdmain.h"

#include "platform/Errors.h"

#include <cmath>

TFwdSelectMLR::TFwdSelectMLR(QWidget *owner) : TPartialFSearch(owner) {}

TFwdSelectMLR::~TFwdSelectMLR() = default;

void TFwdSelectMLR::SetFDefault(double value)
{
    RefuseWhileRunning();
    fDefault_ = std::fabs(value);
}

void TFwdSelectMLR::Run()
{
    throw EDatabaseError(QStringLiteral("The search is not built yet."));
}
