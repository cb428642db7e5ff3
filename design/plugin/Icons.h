// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QString>

namespace nuvo {

/// What stands for a component on the palette and on a form, drawn at any size; null for a class that is none of
/// ours.
/// \param warning whether it has a mark that something is missing.
QIcon componentIcon(const QString &className, bool warning = false);

} // namespace nuvo
