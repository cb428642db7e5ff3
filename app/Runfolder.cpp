// SPDX-License-Identifier: MIT
#include "app/Runfolder.h"

#include "app/Console.h"
#include "platform/Errors.h"

namespace nuvo {

namespace {

/// Qt takes the root of all files where TMPDIR names what is not there.
QString place()
{
    return qEnvironmentVariable("TMPDIR", QStringLiteral("/tmp"));
}

} // namespace

RunFolder::RunFolder()
{
    const SignalPause pause; // between the making of the folder and the note of it
    folder_.emplace(place() + QStringLiteral("/nuvostat-XXXXXX"));
    if (!folder_->isValid())
        throw EPlatformError(
            QStringLiteral("A temporary folder cannot be made in \"%1\" (%2); the variable TMPDIR names "
                           "another place.")
                .arg(place(), folder_->errorString()));
    discardOnSignal({folder_->filePath(QStringLiteral("data.db")),
                     folder_->filePath(QStringLiteral("data.db-journal")), folder_->path()});
}

RunFolder::~RunFolder()
{
    folder_->remove();
    discardOnSignal({});
}

} // namespace nuvo
