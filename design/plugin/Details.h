// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nuvo {

/// What a published property is, in a sentence for its tool tip; empty for a name that is none of ours.
QString propertyToolTip(const QString &property);

/// The group that a published property, or the model's row, stands in; empty for a name that is none of ours.
QString propertyGroup(const QString &property);

} // namespace nuvo
