// SPDX-License-Identifier: MIT
#pragma once

#include "present/Progressdlg.h"

/// "Percentage Loaded": how much of a dataset a load has walked.
class NUVO_EXPORT TMLRGaugeDlg : public TProgressDlg
{
public:
    TMLRGaugeDlg();
    ~TMLRGaugeDlg() override;

protected:
    Controls Build(QDialog &window) override;
};

/// The load progress dialog made last; nullptr when that one is gone.
NUVO_EXPORT extern TMLRGaugeDlg *MLRGaugeDlg;
