// SPDX-License-Identifier: MIT
#include "app/Components.h"

#include "select/Components.h"

#include <algorithm>
#include <vector>

namespace nuvo {
namespace {

template <class Component>
QWidget *make(QWidget *owner)
{
    return new Component(owner);
}

/// Runs tell the terminal instead of a dialog.
std::vector<ComponentClass> allClasses()
{
    std::vector<ComponentClass> classes;
    forEach(DataComponents, [&]<class Component>(const Listed<Component> &) {
        classes.push_back({&Component::staticMetaObject, make<Component>});
    });
    forEach(RegressionComponents, [&]<class Component>(const Listed<Component> &) {
        classes.push_back({&Component::staticMetaObject, make<OnTerminal<Component>>});
    });
    forEach(SelectionComponents, [&]<class Component>(const Listed<Component> &) {
        classes.push_back({&Component::staticMetaObject, make<SearchOnTerminal<Component>>});
    });
    return classes;
}

} // namespace

void TerminalLoadProgress::Show()
{
    bar_ = std::make_unique<ProgressBar>();
    bar_->draw(progress_, QString());
    drawn_.start();
}

void TerminalLoadProgress::SetGaugeText(const QString &text)
{
    if (!bar_)
        return;
    // Where no share is known the text alone goes on.
    constexpr qint64 pace = 100; // ms
    if (drawn_.elapsed() < pace) {
        bar_->update(progress_, text);
        return;
    }
    bar_->draw(progress_, text);
    drawn_.start();
}

TerminalSelectionProgress::TerminalSelectionProgress(bool drawn) : drawn_(drawn)
{
    clock_.start();
}

void TerminalSelectionProgress::Show()
{
    if (!drawn_)
        return;
    bar_ = std::make_unique<ProgressBar>();
    bar_->draw(progress_, text_);
}

void TerminalSelectionProgress::SetGaugeProgress(unsigned short progress)
{
    constexpr double millisecondsADay = 24 * 60 * 60 * 1000.0;
    days_ = double(clock_.elapsed()) / millisecondsADay;
    progress_ = progress;
    if (bar_)
        bar_->update(progress_, text_);
}

void TerminalSelectionProgress::SetGaugeText(const QString &text)
{
    text_ = text;
    if (bar_)
        bar_->draw(progress_, text_);
}

const ComponentClass *componentClass(const QString &name)
{
    static const std::vector<ComponentClass> classes = allClasses();
    const auto found = std::find_if(classes.begin(), classes.end(), [&name](const ComponentClass &one) {
        return name == QLatin1StringView(one.meta->className());
    });
    return found == classes.end() ? nullptr : &*found;
}

} // namespace nuvo
