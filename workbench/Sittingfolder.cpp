// SPDX-License-Identifier: MIT
#include "workbench/Sittingfolder.h"

#include "platform/Errors.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace nuvo {

SittingFolder::SittingFolder(const QString &base)
{
    constexpr int most = 100;
    for (int number = 1; number <= most; ++number) {
        const QString name = number == 1 ? QStringLiteral("sitting") : QStringLiteral("sitting-%1").arg(number);
        path_ = QDir(base).filePath(name);
        if (!QDir().mkpath(path_))
            break;
        lock_ = std::make_unique<QLockFile>(QDir(path_).filePath(QStringLiteral("lock")));
        lock_->setStaleLockTime(
            0); // a sitting may be left open for days; a killed program's lock goes by its process
        if (lock_->tryLock(0))
            return;
        if (lock_->error() != QLockFile::LockFailedError)
            break;
    }
    lock_.reset();
    temporary_ = std::make_unique<QTemporaryDir>();
    if (!temporary_->isValid())
        throw EPlatformError(QCoreApplication::translate(
                                 "Sitting", "There is no place to keep the sitting in: \"%1\" cannot be written, and "
                                            "there is no room for temporary files: %2.")
                                 .arg(base, temporary_->errorString()));
    path_ = temporary_->path();
    // What was saved there before can still be seen.
    const QString saved = QStringLiteral("/sitting.json");
    QFile::copy(QDir(base).filePath(QStringLiteral("sitting")) + saved, path_ + saved);
    warning_ =
        QCoreApplication::translate(
            "Sitting", "This sitting will not come back: \"%1\" cannot be written. Save what you want to keep.")
            .arg(base);
}

} // namespace nuvo
