#pragma once

#include "app/Progressbar.h"
#include "engine/Loadprogress.h"

#include <QMetaObject>
#include <QString>
#include <QWidget>

#include <memory>

namespace nuvo {

/// A load's progress as a bar on standard error.
class TerminalProgress : public LoadProgress
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
};

/// A regression component whose load tells the terminal instead of a dialog.
template <class Component>
class OnTerminal : public Component
{
public:
    using Component::Component;

protected:
    std::unique_ptr<LoadProgress> MakeLoadProgress() override { return std::make_unique<TerminalProgress>(); }
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
