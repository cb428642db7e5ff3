// SPDX-License-Identifier: MIT
#include "platform/Errors.h"

EPlatformError::EPlatformError(const QString &message) : std::runtime_error(message.toStdString()) {}

// Out of line, so that every library sees one type information for each class.
EPlatformError::~EPlatformError() = default;
EConvertError::~EConvertError() = default;
EDatabaseError::~EDatabaseError() = default;
EStringListError::~EStringListError() = default;
EInvalidCast::~EInvalidCast() = default;
