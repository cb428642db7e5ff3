// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

#include <functional>

class QIODevice;

namespace nuvo {

/// Writes a file whole or not at all: what stood there stays until the new content is complete. `write` returns false
/// when it could not write.
/// \throws EPlatformError naming the file and what is in the way; nothing is left behind then.
NUVO_EXPORT void saveFile(const QString &path, const std::function<bool(QIODevice &device)> &write);

/// Writes a text in UTF-8; whether all of it was taken.
NUVO_EXPORT bool writeText(const QString &text, QIODevice &device);

} // namespace nuvo
