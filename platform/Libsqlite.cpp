// SPDX-License-Identifier: MIT
#include "platform/Libsqlite.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QVariant>

#include <dlfcn.h>

namespace nuvo {

namespace {

template <class Function>
bool find(void *library, const char *name, Function &function)
{
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

} // namespace

bool Libsqlite::resolve()
{
    // Only what the driver has loaded already: another library would not know its handles.
    void *library = ::dlopen("libsqlite3.so.0", RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr)
        find(library, "sqlite3_error_offset", errorOffset);
    return library != nullptr && find(library, "sqlite3_prepare_v2", prepare) &&
           find(library, "sqlite3_step", step) && find(library, "sqlite3_finalize", finalize) &&
           find(library, "sqlite3_column_count", columnCount) && find(library, "sqlite3_column_type", columnType) &&
           find(library, "sqlite3_column_double", columnDouble) &&
           find(library, "sqlite3_column_int64", columnInteger) && find(library, "sqlite3_column_text", columnText) &&
           find(library, "sqlite3_column_bytes", columnBytes) && find(library, "sqlite3_errmsg", message) &&
           find(library, "sqlite3_extended_errcode", errorCode) && find(library, "sqlite3_interrupt", interrupt) &&
           find(library, "sqlite3_progress_handler", progressHandler);
}

sqlite3 *Libsqlite::handleOf(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

const Libsqlite *Libsqlite::of(const QSqlDatabase &database)
{
    static Libsqlite functions;
    static const bool found = functions.resolve();
    return found && handleOf(database) != nullptr ? &functions : nullptr;
}

} // namespace nuvo
