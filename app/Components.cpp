#include "app/Components.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "select/Bckmain.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

#include <algorithm>
#include <iterator>

namespace nuvo {
namespace {

template <class Component>
QWidget *make(QWidget *owner)
{
    return new Component(owner);
}

template <class Component, class Made = Component>
constexpr ComponentClass entry{&Component::staticMetaObject, make<Made>};

} // namespace

void TerminalLoadProgress::Show()
{
    bar_ = std::make_unique<ProgressBar>();
    bar_->draw(progress_, QString());
}

void TerminalLoadProgress::SetGaugeText(const QString &text)
{
    if (bar_)
        bar_->update(progress_, text);
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
    static constexpr ComponentClass classes[] = {
        entry<TTable>,
        entry<TQuery>,
        entry<TMLRTable, OnTerminal<TMLRTable>>,
        entry<TMLRQuery, OnTerminal<TMLRQuery>>,
        entry<TOptimizeMLR, SearchOnTerminal<TOptimizeMLR>>,
        entry<TStepWiseMLR, SearchOnTerminal<TStepWiseMLR>>,
        entry<TBackElimMLR, SearchOnTerminal<TBackElimMLR>>,
        entry<TFwdSelectMLR, SearchOnTerminal<TFwdSelectMLR>>,
    };
    const auto *const found =
        std::find_if(std::begin(classes), std::end(classes),
                     [&name](const ComponentClass &one) { return name == QLatin1StringView(one.meta->className()); });
    return found == std::end(classes) ? nullptr : found;
}

} // namespace nuvo
