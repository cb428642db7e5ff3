// SPDX-License-Identifier: MIT
#include "platform/Version.h"

namespace nuvo {

const char *libraryVersion() noexcept
{
    return NUVO_VERSION_TEXT;
}

int libraryVersionNumber() noexcept
{
    return NUVO_VERSION_NUMBER;
}

} // namespace nuvo
