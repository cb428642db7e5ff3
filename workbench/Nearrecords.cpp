// SPDX-License-Identifier: MIT
#include "workbench/Nearrecords.h"

#include "platform/Connection.h"
#include "platform/Databasename.h"
#include "platform/Errors.h"
#include "platform/Passwords.h"
#include "platform/Recordcopy.h"
#include "workbench/Background.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QTemporaryDir>

#include <algorithm>
#include <utility>

namespace nuvo {

namespace {

constexpr qint64 kSmallFile = qint64(16) << 20; // bytes: nobody notices that it is read
constexpr qint64 kFirstRecords = 10000;         // of a server's table
constexpr int kTimes = 10;                      // more of it each time
constexpr size_t kMostCopies = 8;
constexpr int kPace = 100; // milliseconds

bool isSmallFile(const QString &file)
{
    return QFileInfo(file).size() < kSmallFile;
}

bool isSqliteView(const QString &file, const QString &table)
{
    Connection connection;
    connection.openBeside(file);
    return connection
        .query(QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'view' AND name = ? COLLATE NOCASE"), {table},
               connection.caption())
        .next();
}

ScanSource sourceOf(const ModelState &state)
{
    ScanSource source;
    source.databaseName = state.database;
    if (state.isQuery()) {
        source.sql = state.statement();
    } else {
        source.table = state.table;
        source.filter = state.filter;
    }
    return source;
}

bool isSameSource(const ModelState &one, const ModelState &other)
{
    return one.database == other.database && one.table == other.table && one.filter == other.filter &&
           one.sql == other.sql && one.params == other.params;
}

} // namespace

struct NearRecords::Job
{
    Job(const ModelState &its, const QString &itsFile, const QString &itsTable)
        : state(its), file(itsFile), table(itsTable), copy(sourceOf(its), itsFile, itsTable)
    {
    }

    const ModelState state;
    const QString file;
    const QString table;
    RecordCopy copy;
};

struct NearRecords::Copy
{
    ModelState state; ///< whose records they are
    QString file;
    QString table;
    bool whole = false;
    qint64 records = 0;
};

NearRecords::NearRecords(const QString &folder, QObject *parent)
    : QObject(parent), folder_(std::make_unique<QTemporaryDir>(folder + QLatin1String("/copies-XXXXXX")))
{
    // What a killed program has left.
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("copies-*")}, QDir::Dirs)) {
        if (dir.filePath(name) != folder_->path())
            QDir(dir.filePath(name)).removeRecursively();
    }
}

NearRecords::~NearRecords()
{
    if (job_)
        job_->copy.cancel();
}

const NearRecords::Copy *NearRecords::Find(const ModelState &state) const
{
    const auto found = std::find_if(copies_.begin(), copies_.end(),
                                    [&](const Copy &copy) { return isSameSource(copy.state, state); });
    return found == copies_.end() ? nullptr : &*found;
}

/// Whether a component reads the records without keeping a window waiting. In a large file even the first ones that
/// can be used may be far behind; how long a view takes is not known.
bool NearRecords::IsNear(const ModelState &state) const
{
    return !state.hasData() ||
           (!state.isQuery() && !isServerName(state.database) && isSmallFile(state.database) && !IsView(state));
}

bool NearRecords::IsView(const ModelState &state) const
{
    const QPair<QString, QString> key(state.database, state.table);
    if (const auto known = views_.constFind(key); known != views_.cend())
        return *known;
    try {
        return *views_.insert(key, isSqliteView(state.database, state.table));
    } catch (const EPlatformError &) {
        return false; // whoever opens the table says why it cannot be read
    }
}

bool NearRecords::IsHere(const ModelState &state) const
{
    return IsNear(state) || Find(state) != nullptr;
}

ModelState NearRecords::Here(const ModelState &state) const
{
    const Copy *const copy = IsNear(state) ? nullptr : Find(state);
    if (copy == nullptr)
        return state;
    ModelState here = state;
    here.database = copy->file;
    here.table = copy->table;
    here.sql.clear();
    here.params.clear();
    here.filter.clear();
    return here;
}

std::optional<ScanSource> NearRecords::Every(const ModelState &state) const
{
    const Copy *const copy = IsNear(state) || state.records == RecordUse::First ? nullptr : Find(state);
    return copy != nullptr && !copy->whole ? std::optional(sourceOf(state)) : std::nullopt;
}

std::optional<ScanSource> NearRecords::Table(const ModelState &state) const
{
    if (!state.hasData())
        return {};
    const Copy *const copy = IsNear(state) ? nullptr : Find(state);
    return sourceOf(copy != nullptr && copy->whole ? Here(state) : state);
}

bool NearRecords::IsSmall(const ModelState &state) const
{
    const std::optional<ScanSource> table = Table(state);
    return table && !isServerName(table->databaseName) && isSmallFile(table->databaseName) &&
           (table->databaseName != state.database || !IsView(state));
}

bool NearRecords::IsPart(const ModelState &state) const
{
    const Copy *const copy = IsNear(state) || state.records != RecordUse::First ? nullptr : Find(state);
    return copy != nullptr && !copy->whole;
}

/// A disk may be mounted anew for reading alone while the window is open.
void NearRecords::MakeRoom()
{
    if (folder_->isValid() && QFileInfo(folder_->path()).isWritable())
        return;
    folder_->setAutoRemove(false); // the copies in it can still be read
    folder_ = std::make_unique<QTemporaryDir>();
}

void NearRecords::Fetch(const ModelState &state)
{
    Abandon();
    stopped_ = wantsPassword_ = false;
    why_.clear();
    MakeRoom();
    if (!folder_->isValid()) {
        why_ = tr("There is no place to copy records to: %1.").arg(folder_->errorString());
        Q_EMIT Ended();
        return;
    }
    const Copy *const part = Find(state);
    const qint64 most = part != nullptr ? part->records * kTimes : kFirstRecords;
    const QString file = folder_->filePath(QStringLiteral("%1.db").arg(++number_));
    job_ = std::make_shared<Job>(state, file, state.isQuery() ? QStringLiteral("query") : state.table);
    const QPointer<NearRecords> here(this);
    inBackground([job = job_, most, here] {
        QString error;
        bool wantsPassword = false;
        try {
            job->copy.run(most);
        } catch (const EPasswordError &failed) {
            error = failed.Message();
            wantsPassword = true;
        } catch (const std::exception &failed) {
            error = QString::fromUtf8(failed.what());
        }
        sayLater([job, here, error, wantsPassword] {
            if (here)
                here->Settle(job, error, wantsPassword);
        });
    });
    if (timer_ == 0)
        timer_ = startTimer(kPace);
    Q_EMIT Started();
}

void NearRecords::Settle(const std::shared_ptr<Job> &job, const QString &error, bool wantsPassword)
{
    if (job == ending_)
        ending_.reset();
    if (job != job_)
        return; // it was stopped
    job_.reset();
    why_ = error;
    wantsPassword_ = wantsPassword;
    if (error.isEmpty()) {
        std::erase_if(copies_, [&](const Copy &copy) {
            if (!isSameSource(copy.state, job->state))
                return false;
            QFile::remove(copy.file);
            return true;
        });
        if (copies_.size() == kMostCopies) {
            QFile::remove(copies_.front().file);
            copies_.erase(copies_.begin());
        }
        copies_.push_back({job->state, job->file, job->table, job->copy.isWhole(), job->copy.records()});
    }
    Q_EMIT Ended();
}

void NearRecords::Abandon()
{
    if (!job_)
        return;
    job_->copy.cancel();
    ending_ = std::exchange(job_, nullptr);
}

void NearRecords::Stop()
{
    if (!job_)
        return;
    Abandon();
    stopped_ = true;
    why_.clear();
    Q_EMIT Ended();
}

void NearRecords::Forget()
{
    views_.clear();
    for (const Copy &copy : std::exchange(copies_, {}))
        QFile::remove(copy.file);
}

void NearRecords::timerEvent(QTimerEvent *)
{
    if (ending_)
        ending_->copy.cancel(); // one that comes between two statements is lost, so it is repeated
    if (job_)
        Q_EMIT Progressed(job_->copy.records());
    if (!job_ && !ending_) {
        killTimer(timer_);
        timer_ = 0;
    }
}

} // namespace nuvo
