// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <functional>

class QDialog;

namespace nuvo {

/// Whether there is an application with a screen and a user before it: not on the `offscreen` and `minimal`
/// platforms.
NUVO_EXPORT bool somebodyCanAnswer();

} // namespace nuvo

/// Shows a dialog modally and returns how it ended, as QDialog::exec() does. Every modal window but the message boxes
/// comes through here. Unless nuvo::somebodyCanAnswer(), the default runner shows the dialog, closes it again and
/// returns QDialog::Rejected: nothing waits.
NUVO_EXPORT int ShowModal(QDialog &dialog);

using TModalRunner = std::function<int(QDialog &dialog)>;

/// Replaces what ShowModal does and returns the runner before; an empty one restores the default.
/// \pre called on the user-interface thread.
NUVO_EXPORT TModalRunner SetModalRunner(TModalRunner runner);
