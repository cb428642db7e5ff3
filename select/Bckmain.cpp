#include "select/Bckmain.h"

#include "platform/Errors.h"

#include <cmath>

TBackElimMLR::TBackElimMLR(QWidget *owner) : TPartialFSearch(owner) {}

TBackElimMLR::~TBackElimMLR() = default;

void TBackElimMLR::SetFDefault(double value)
{
    RefuseWhileRunning();
    fDefault_ = std::fabs(value);
}

void TBackElimMLR::Run()
{
    throw EDatabaseError(QStringLiteral("The search is not built yet."));
}
