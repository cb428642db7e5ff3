// SPDX-License-Identifier: MIT
#include "app/Startup.h"

#include <dlfcn.h>

namespace nuvo {

void prepareDriver([[maybe_unused]] const QString &database)
{
    // Loaded by Qt's driver, SQLite has its 1,600 symbols, nearly all of them its own, looked up in every library of
    // the program before itself: a sixth of all that a small fit computes. Here it looks at itself first. The
    // sanitizers do not take that.
#if defined(RTLD_DEEPBIND) && !defined(__SANITIZE_ADDRESS__)
    if (!database.contains(QStringLiteral("://")) && !database.startsWith(QStringLiteral("odbc:")))
        ::dlopen("libsqlite3.so.0", RTLD_LAZY | RTLD_LOCAL | RTLD_DEEPBIND);
#endif
}

} // namespace nuvo
