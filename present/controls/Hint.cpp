// SPDX-License-Identifier: MIT
#include "present/controls/Hint.h"

#include <QObject>
#include <QPointer>

#include <utility>

namespace {

struct State
{
    QString text;
    QPointer<QObject> owner;
    std::function<void()> handler;
};

State &state()
{
    static State current;
    return current;
}

} // namespace

QString ApplicationHint()
{
    return state().text;
}

void SetApplicationHint(const QString &text)
{
    state().text = text;
    // A copy: the handler may be replaced while it runs.
    const std::function<void()> handler = state().handler;
    if (handler && !state().owner.isNull())
        handler();
}

void SetHintHandler(QObject *owner, std::function<void()> handler)
{
    state().owner = owner;
    state().handler = std::move(handler);
}

QString ShortHint(const QString &hint)
{
    return hint.section(u'|', 0, 0);
}

QString LongHint(const QString &hint)
{
    return hint.contains(u'|') ? hint.section(u'|', 1) : hint;
}
