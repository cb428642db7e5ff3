// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <nlohmann/json.hpp>

namespace nuvo {

/// Members keep the order in which they are put in.
using Json = nlohmann::ordered_json;

/// A text; what is no Unicode in it (half a surrogate pair) is replaced.
Json jsonText(const QString &text);
/// A number that is written so that reading it back gives the same double; null for a NaN or an infinity.
Json jsonNumber(double value);

/// One object, a member to the line, the last line ended.
QString jsonLines(const Json &object);

} // namespace nuvo
