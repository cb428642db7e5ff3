#include "app/Components.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"

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

void TerminalProgress::Show()
{
    bar_ = std::make_unique<ProgressBar>();
    bar_->draw(progress_, QString());
}

void TerminalProgress::SetGaugeText(const QString &text)
{
    if (bar_)
        bar_->draw(progress_, text);
}

const ComponentClass *componentClass(const QString &name)
{
    static constexpr ComponentClass classes[] = {
        entry<TTable>,
        entry<TQuery>,
        entry<TMLRTable, OnTerminal<TMLRTable>>,
        entry<TMLRQuery, OnTerminal<TMLRQuery>>,
    };
    const auto *const found =
        std::find_if(std::begin(classes), std::end(classes),
                     [&name](const ComponentClass &one) { return name == QLatin1StringView(one.meta->className()); });
    return found == std::end(classes) ? nullptr : found;
}

} // namespace nuvo
