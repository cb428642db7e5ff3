// SPDX-License-Identifier: MIT
#include "present/Progressdlg.h"

#include "platform/Messages.h"
#include "present/Forms.h"
#include "present/controls/Gauge.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QThread>
#include <QWindow>

#include <utility>

using namespace std::chrono_literals;

namespace {

/// What the eye can follow; a paint takes a fraction of a millisecond.
constexpr auto Pace = 33ms;
constexpr auto LongestWait = 1s;

} // namespace

/// The window: Escape and its close button are a wish to stop.
class TProgressDlg::Form : public QDialog
{
public:
    Form(QWidget *parent, bool &stopped)
        : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                              Qt::WindowCloseButtonHint),
          stopped_(stopped)
    {
        setModal(true);
        setPalette(nuvo::gaugePalette(palette()));
        setFont(nuvo::formFont());
    }

    /// Escape and, through the close event, the window's close button.
    void reject() override
    {
        stopped_ = true;
        // Clicks that wait behind the key in the same batch must not reach the windows that this one uncovers.
        if (running_)
            qApp->installEventFilter(this);
        QDialog::reject();
    }

    void runEvents()
    {
        const QPointer<Form> self = this;
        running_ = true;
        QCoreApplication::processEvents();
        if (self.isNull())
            return;
        running_ = false;
        qApp->removeEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        return event->isInputEvent() || event->type() == QEvent::Shortcut;
    }

private:
    bool &stopped_;
    bool running_ = false;
};

TProgressDlg::TProgressDlg() = default;

TProgressDlg::~TProgressDlg()
{
    Close();
    delete form_;
}

void TProgressDlg::Show()
{
    if (patience_ > 0ms && !activated_) {
        due_ = Clock::now() + patience_;
        FormActivate();
        return;
    }
    due_.reset();
    if (form_.isNull())
        MakeWindow();
    FormActivate();
    Open();
    Repaint();
}

void TProgressDlg::MakeWindow()
{
    form_ = new Form(nuvo::windowInFront(), stopped_);
    controls_ = Build(*form_);
    controls_.status->setTextFormat(Qt::PlainText);
    controls_.gauge->SetProgress(progress_);
    ApplyText();
}

void TProgressDlg::OpenWhenDue()
{
    if (due_ && Clock::now() >= *due_)
        Show();
}

void TProgressDlg::Open()
{
    nuvo::centreOnScreen(*form_);
    form_->show();
    form_->raise();
    form_->activateWindow();
    const auto start = Clock::now();
    const auto waits = [this] { return Shown() && !form_->windowHandle()->isExposed(); };
    while (waits() && Clock::now() - start < LongestWait) {
        form_->runEvents();
        if (waits())
            QThread::msleep(1);
    }
    // The screen has painted it all when it shows it.
    stale_ = waits();
    room_ = -1; // a style can give the panel another frame when it is shown
}

void TProgressDlg::Close()
{
    due_.reset();
    if (!Shown())
        return;
    Paint();
    form_->hide();
}

bool TProgressDlg::Shown() const
{
    return !form_.isNull() && form_->isVisible();
}

void TProgressDlg::SetGaugeProgress(unsigned short progress)
{
    progress_ = progress;
    if (form_.isNull())
        return OpenWhenDue();
    controls_.gauge->SetProgress(progress);
    stale_ = true;
    if (progress >= 100)
        Repaint();
    else
        Changed();
}

void TProgressDlg::SetGaugeText(const QString &text)
{
    text_ = text;
    if (form_.isNull())
        return OpenWhenDue();
    ApplyText();
    Changed();
}

void TProgressDlg::ApplyText()
{
    QLabel &status = *controls_.status;
    stale_ = true;
    if (room_ < 0)
        room_ = status.contentsRect().width();
    const int room = room_;
    status.setText(Fits(room) ? text_ : status.fontMetrics().elidedText(text_, Qt::ElideRight, room));
}

/// Whether the text is short enough beyond doubt. Laying it out to know takes longer than fitting a model.
bool TProgressDlg::Fits(int room)
{
    constexpr int Kerning = 4;
    int width = Kerning;
    for (const QChar c : text_) {
        if (c < u' ' || c.unicode() >= widths_.size())
            return false;
        int &known = widths_[c.unicode()];
        if (known == 0)
            known = controls_.status->fontMetrics().horizontalAdvance(c);
        width += known;
    }
    return width <= room;
}

void TProgressDlg::Changed()
{
    if (Clock::now() - painted_ >= Pace)
        Repaint();
}

void TProgressDlg::Repaint()
{
    if (form_.isNull())
        OpenWhenDue();
    if (!Shown())
        return;
    Paint();
    form_->runEvents();
    painted_ = Clock::now();
}

void TProgressDlg::Paint()
{
    if (!std::exchange(stale_, false))
        return;
    // What has changed, not the whole form.
    QEvent update(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(form_, &update);
}

void TProgressDlg::FormActivate()
{
    if (activated_)
        return;
    activated_ = true;
    TProgressDlg::SetGaugeProgress(0); // no progress of the work: it takes no time
    Repaint();
}

QDialog *TProgressDlg::Window() const
{
    return form_;
}
