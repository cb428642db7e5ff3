// SPDX-License-Identifier: MIT
#pragma once

#include "design/plugin/Editing.h"

class QObject;
class QToolButton;

namespace nuvo {

/// Puts a menu beside what the button of a DatabaseName does, with an entry that puts the name of a server together.
void offerServers(QToolButton &button, QObject &owner, const Editing &editing);

} // namespace nuvo
