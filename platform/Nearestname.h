// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>
#include <QStringList>

namespace nuvo {

/// The name that was probably meant, as it goes into a sentence: " (perhaps "GNP")". That is the one of these that a
/// slip or two make of `name`, upper and lower case aside: a letter that is wrong, missing or too many, or two that
/// changed places; one slip in names of up to five letters, none in those of one or two. Empty where there is none.
NUVO_EXPORT QString perhaps(const QString &name, const QStringList &there);

} // namespace nuvo
