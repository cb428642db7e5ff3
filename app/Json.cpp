// SPDX-License-Identifier: MIT
#include "app/Json.h"

#include <cmath>

namespace nuvo {
namespace {

std::string written(const Json &value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

Json jsonText(const QString &text)
{
    return Json(text.toStdString());
}

Json jsonNumber(double value)
{
    return std::isfinite(value) ? Json(value) : Json();
}

QString jsonLines(const Json &object)
{
    std::string text;
    for (const auto &[name, value] : object.items())
        text += (text.empty() ? "{\n  " : ",\n  ") + written(name) + ": " + written(value);
    return QString::fromStdString(text + "\n}\n");
}

} // namespace nuvo
