// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Scan.h"
#include "workbench/Modelstate.h"

#include <QHash>
#include <QObject>

#include <memory>
#include <optional>
#include <vector>

class QTemporaryDir;

namespace nuvo {

/// Brings records to where the window can read them without waiting. Those of tables in small SQLite files are there
/// already. What a server, a large file, a view or a statement gives is copied into a file of the sitting's by a
/// thread, which can be stopped: all that a statement gives, and of a table as many as a fit asks for.
class NearRecords : public QObject
{
    Q_OBJECT

public:
    /// \param folder where copies live as long as this does; where it cannot be written, they are temporary files.
    explicit NearRecords(const QString &folder, QObject *parent = nullptr);
    ~NearRecords() override;

    /// Whether components may read a state's records now: where they are, or from a copy.
    bool IsHere(const ModelState &state) const;
    /// The state as components read it. \pre IsHere()
    ModelState Here(const ModelState &state) const;
    /// Where every record is read, by a thread, when Here() has the first ones alone and the state asks for all.
    std::optional<ScanSource> Every(const ModelState &state) const;
    /// The table that a grid pages through; nothing where there is none. \pre IsHere()
    std::optional<ScanSource> Table(const ModelState &state) const;
    /// Whether Table() is so small and near that nobody waits for any part of it.
    bool IsSmall(const ModelState &state) const;
    /// Whether Here() has the first records alone, and a fit could want more than there are.
    bool IsPart(const ModelState &state) const;

    /// Begins to bring them, more than before where there is a part already; ends what is under way.
    void Fetch(const ModelState &state);
    /// Ends what is under way, at once: the database is told.
    void Stop();
    /// The same without a signal.
    void Abandon();
    bool IsFetching() const { return job_ != nullptr; }
    /// Copies are made anew from now on.
    void Forget();

    /// Why the last fetching brought nothing; empty where it did, or was stopped.
    const QString &Why() const { return why_; }
    /// Whether the server wanted a password, or another one.
    bool WantsPassword() const { return wantsPassword_; }
    bool WasStopped() const { return stopped_; }

Q_SIGNALS:
    void Started();
    void Progressed(qint64 records);
    /// IsHere() or Why() or WasStopped().
    void Ended();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Job;
    struct Copy;

    const Copy *Find(const ModelState &state) const;
    bool IsNear(const ModelState &state) const;
    bool IsView(const ModelState &state) const;
    void MakeRoom();
    void Settle(const std::shared_ptr<Job> &job, const QString &error, bool wantsPassword);

    std::unique_ptr<QTemporaryDir> folder_;
    std::vector<Copy> copies_;
    mutable QHash<QPair<QString, QString>, bool> views_; ///< by file and table: whether it is a view
    std::shared_ptr<Job> job_;
    std::shared_ptr<Job> ending_; ///< was stopped and has not ended yet
    int number_ = 0;
    int timer_ = 0;
    QString why_;
    bool wantsPassword_ = false;
    bool stopped_ = false;
};

} // namespace nuvo
