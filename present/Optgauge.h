// SPDX-License-Identifier: MIT
#pragma once

#include "present/Progressdlg.h"

#include <functional>

class QLabel;

/// "Percentage Done": how far a model selection has come, and for how long it has been at work.
class NUVO_EXPORT TGaugeDlg : public TProgressDlg
{
public:
    /// A clock in days and fractions of a day; any origin, as only differences are used.
    using TClock = std::function<double()>;

    /// The processing time counts from here on, and from the first Show once more. The clock is the monotonic one of
    /// the system unless another is given.
    explicit TGaugeDlg(TClock clock = {});
    ~TGaugeDlg() override;

    /// Takes the elapsed time as well.
    void SetGaugeProgress(unsigned short progress) override;
    /// Days and fractions of a day, as of the last SetGaugeProgress; 0 before the first.
    double ProcessedTime() const override { return elapsedTime_; }
    void FormActivate() override;

protected:
    Controls Build(QDialog &window) override;

private:
    TClock clock_;
    double startTime_;
    double currentTime_;
    double elapsedTime_ = 0;
    QPointer<QLabel> elapsedLabel_;
};

/// The selection progress dialog made last; nullptr when that one is gone.
NUVO_EXPORT extern TGaugeDlg *GaugeDlg;
