// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Progress.h"
#include "platform/Export.h"

#include <QPointer>
#include <QString>

#include <array>
#include <chrono>
#include <optional>

class QDialog;
class QLabel;
class TGauge;

/// What the two progress dialogs have in common. An object is a few words and takes values and texts for next to
/// nothing: its window is built at the first Show. From then on every value and text is in its control at once, and
/// painted at most some thirty times a second; Repaint, Close and progress 100 paint whatever the pace, so that the
/// last state is always seen.
///
/// A shown dialog is modal to the application. When it paints it also runs the application's waiting events: other
/// windows are painted, timers, queued calls and sockets are served; keys and clicks reach this dialog alone, those
/// meant for other windows are dropped. So whoever works under a shown dialog must expect timers of the application,
/// but no click. A hidden dialog runs nothing.
class NUVO_EXPORT TProgressDlg : public nuvo::Progress
{
public:
    TProgressDlg(const TProgressDlg &) = delete;
    TProgressDlg &operator=(const TProgressDlg &) = delete;
    ~TProgressDlg() override;

    /// Opens the dialog in the middle of the screen and returns when the screen has it (or after a second, when it
    /// will not come). The first Show is the activation.
    void Show() override;
    /// Lets the first Show wait: the dialog opens when a value, a text or Repaint comes so much later or after that.
    /// Until then it is a hidden one, and work that has ended by then has shown none.
    void SetPatience(std::chrono::milliseconds patience) { patience_ = patience; }
    /// Paints the last state and hides the dialog. Runs no events.
    void Close() override;
    bool Shown() const override;
    /// True once the person pressed Escape or closed the dialog, which also hides it. Stays true.
    bool Stopped() const override { return stopped_; }

    /// The gauge's own limits, 0..100, apply to the bar.
    void SetGaugeProgress(unsigned short progress) override;
    /// A text too long for the status panel ends in an ellipsis there.
    void SetGaugeText(const QString &text) override;
    /// Paints the present state at once, where it has not been painted yet, and runs the waiting events; nothing when
    /// hidden.
    void Repaint() override;

    /// Takes the progress back to 0 and repaints, once: the first Show does it, later activations change nothing.
    virtual void FormActivate();

    /// The window with the form's controls; nullptr before the first Show.
    QDialog *Window() const;

protected:
    TProgressDlg();

    bool Activated() const { return activated_; }
    /// The controls of a form that are fed.
    struct Controls
    {
        TGauge *gauge = nullptr;
        QLabel *status = nullptr;
    };
    /// Puts the form on its window.
    virtual Controls Build(QDialog &window) = 0;
    /// Paints when it is time again.
    void Changed();

private:
    using Clock = std::chrono::steady_clock;
    class Form;

    void MakeWindow();
    void Open();
    void OpenWhenDue();
    void ApplyText();
    /// What has changed since it was last painted, if anything has.
    void Paint();
    bool Fits(int room);

    // The window in front can go away while this one is open, and takes it along.
    QPointer<Form> form_;
    Controls controls_;
    QString text_;
    std::array<int, 127> widths_{}; ///< of the status panel's characters, as far as they came up
    int room_ = -1;                 ///< for the status text; -1: not known
    Clock::time_point painted_;
    std::chrono::milliseconds patience_{0};
    std::optional<Clock::time_point> due_; ///< when a Show that waits is to open it
    unsigned short progress_ = 0;
    bool stale_ = true; ///< what was painted last is not the present state
    bool activated_ = false;
    bool stopped_ = false;
};
