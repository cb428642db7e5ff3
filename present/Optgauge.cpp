// SPDX-License-Identifier: MIT
#include "present/Optgauge.h"

#include "platform/Formats.h"
#include "present/Forms.h"
#include "present/Pictures.h"
#include "ui_Optgauge.h"

#include <chrono>
#include <utility>

TGaugeDlg *GaugeDlg = nullptr;

namespace {

double monotonicDays()
{
    using Days = std::chrono::duration<double, std::ratio<86400>>;
    return Days(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

TGaugeDlg::TGaugeDlg(TClock clock)
    : clock_(clock ? std::move(clock) : monotonicDays), startTime_(clock_()), currentTime_(startTime_)
{
    GaugeDlg = this;
}

TGaugeDlg::~TGaugeDlg()
{
    if (GaugeDlg == this)
        GaugeDlg = nullptr;
}

void TGaugeDlg::SetGaugeProgress(unsigned short progress)
{
    currentTime_ = clock_();
    elapsedTime_ = currentTime_ - startTime_;
    if (!elapsedLabel_.isNull())
        elapsedLabel_->setText(FormatTime(elapsedTime_));
    TProgressDlg::SetGaugeProgress(progress);
}

void TGaugeDlg::FormActivate()
{
    if (Activated())
        return;
    currentTime_ = clock_();
    startTime_ = currentTime_;
    TProgressDlg::FormActivate();
}

TProgressDlg::Controls TGaugeDlg::Build(QDialog &window)
{
    Ui::TGaugeDlg form;
    form.setupUi(&window);
    const QString title = QStringLiteral("Times New Roman");
    nuvo::setTitleLetters(*form.Label1, title, 15, Qt::black);
    nuvo::setTitleLetters(*form.Label2, title, 15, Qt::white);
    const QString mark = QStringLiteral("Arial");
    nuvo::setTitleLetters(*form.Label3, mark, 7, Qt::black);
    nuvo::setTitleLetters(*form.Label4, mark, 7, Qt::white);
    nuvo::stackTitle(*form.Label1, *form.Label2);
    nuvo::stackTitle(*form.Label3, *form.Label4);
    form.Gauge1->SetBackColor(window.palette().color(QPalette::Highlight));
    form.Image1->setPixmap(nuvo::drawPicture(nuvo::Picture::Models, window.devicePixelRatioF()));
    elapsedLabel_ = form.Label5;
    form.Label5->setText(FormatTime(elapsedTime_));
    return {form.Gauge1, form.Panel1};
}
