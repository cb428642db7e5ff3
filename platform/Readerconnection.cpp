// SPDX-License-Identifier: MIT
#include "platform/Readerconnection.h"

#include "platform/Errors.h"

namespace nuvo {

void ReaderConnection::open(const QString &databaseName)
{
    openBeside(databaseName);
    const std::lock_guard lock(mutex_);
    canceller_.use(database());
    library_ = dialect() == Dialect::Sqlite ? Libsqlite::of(database()) : nullptr;
    sqlite_ = library_ != nullptr ? Libsqlite::handleOf(database()) : nullptr;
    // An interrupt that comes as a statement begins is lost.
    constexpr int steps = 10000;
    const auto isCancelled = [](void *flag) { return int(static_cast<std::atomic<bool> *>(flag)->load()); };
    if (sqlite_ != nullptr)
        library_->progressHandler(sqlite_, steps, isCancelled, &cancelled_);
}

void ReaderConnection::close()
{
    const std::lock_guard lock(mutex_);
    canceller_.forget();
    sqlite_ = nullptr;
    library_ = nullptr;
    Connection::close();
}

void ReaderConnection::cancel()
{
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
    canceller_.cancel();
}

void ReaderConnection::checkCancelled(const QString &what) const
{
    if (cancelled_)
        throw EDatabaseError(QStringLiteral("The reading of %1 was ended.").arg(what));
}

} // namespace nuvo
