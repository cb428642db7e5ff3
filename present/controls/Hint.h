// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

#include <functional>

class QObject;

/// The line about what is pointed at, one for the application; who shows it installs a handler.
NUVO_EXPORT QString ApplicationHint();
/// Calls the handler, also when the text stays the same.
NUVO_EXPORT void SetApplicationHint(const QString &text);
/// Called whenever the hint is set, until another handler comes or the owner goes.
NUVO_EXPORT void SetHintHandler(QObject *owner, std::function<void()> handler);

/// A control's hint comes as "tooltip|line": the part before the bar.
NUVO_EXPORT QString ShortHint(const QString &hint);
/// The part after the bar; all of it when there is no bar.
NUVO_EXPORT QString LongHint(const QString &hint);
