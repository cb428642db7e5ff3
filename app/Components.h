// SPDX-License-Identifier: MIT
#pragma once

#include "app/Progressbar.h"
#include "engine/Progress.h"

#include <QElapsedTimer>
#include <QMetaObject>
#include <QString>
#include <QWidget>

#include <memory>

namespace nuvo {

/// A load's progress as a bar on standard error.
class TerminalLoadProgress : public Progress
{
public:
    void Show() override;
    bool Shown() const override { return bar_ && bar_->shown(); }
    void SetGaugeProgress(unsigned short progress) override { progress_ = progress; }
    /// Follows the percentage that it belongs to.
    void SetGaugeText(const QString &text) override;
    bool Stopped() const override { return false; }

private:
    std::unique_ptr<ProgressBar> bar_;
    int progress_ = 0;
    QElapsedTimer drawn_;
};

/// A selection's progress as a bar on standard error, beside it the text of the last step.
class TerminalSelectionProgress : public Progress
{
public:
    /// \param drawn false for a run that has no switch of its own and is to draw nothing
    explicit TerminalSelectionProgress(bool drawn);

    void Show() override;
    void Repaint() override {}
    void Close() override { bar_.reset(); }
    void SetGaugeProgress(unsigned short progress) override;
    void SetGaugeText(const QString &text) override;
    double ProcessedTime() const override { return days_; }
    bool Stopped() const override { return false; }

private:
    const bool drawn_;
    std::unique_ptr<ProgressBar> bar_;
    QElapsedTimer clock_;
    double days_ = 0;
    int progress_ = 0;
    QString text_;
};

/// A regression component whose load tells the terminal instead of a dialog.
template <class Component>
class OnTerminal : public Component
{
public:
    using Component::Component;

protected:
    std::unique_ptr<Progress> MakeLoadProgress() override { return std::make_unique<TerminalLoadProgress>(); }
};

/// A selection component whose run tells the terminal instead of a dialog.
template <class Selection>
class SearchOnTerminal : public Selection
{
public:
    using Selection::Selection;

    void DrawProgress(bool draw) { drawn_ = draw; }

protected:
    std::unique_ptr<Progress> MakeProgress() override { return std::make_unique<TerminalSelectionProgress>(drawn_); }

private:
    bool drawn_ = true;
};

/// A component that forms hold.
struct ComponentClass
{
    const QMetaObject *meta; ///< its name and its published properties
    QWidget *(*make)(QWidget *owner);
};

/// The component class of that name; nullptr when there is none.
const ComponentClass *componentClass(const QString &name);

} // namespace nuvo
