#pragma once

#include "engine/Loadprogress.h"
#include "present/Progressdlg.h"

/// "Percentage Loaded": how much of a dataset a load has walked.
class NUVO_EXPORT TMLRGaugeDlg : public LoadProgress, public TProgressDlg
{
public:
    TMLRGaugeDlg();
    ~TMLRGaugeDlg() override;

    void Show() override { TProgressDlg::Show(); }
    bool Shown() const override { return TProgressDlg::Shown(); }
    bool Stopped() const override { return TProgressDlg::Stopped(); }
    void SetGaugeProgress(unsigned short progress) override { TProgressDlg::SetGaugeProgress(progress); }
    void SetGaugeText(const QString &text) override { TProgressDlg::SetGaugeText(text); }

protected:
    Controls Build(QDialog &window) override;
};

/// The load progress dialog made last; nullptr when that one is gone.
NUVO_EXPORT extern TMLRGaugeDlg *MLRGaugeDlg;
