// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Firstrows.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

namespace nuvo {

/// How a trial ended.
struct TrialAnswer
{
    QString error{};              ///< a sentence; empty where there was none
    qsizetype errorPosition = -1; ///< in the statement, from 0; -1 where nobody tells
    bool stopped = false;
    std::vector<Column> columns{};
    std::vector<QVariantList> rows{};
    bool more = false;
    QStringList nullParameters{};
};

/// Reads the first rows of statements in a thread of its own, one at a time, so that the windows go on while a
/// database thinks.
class NUVO_EXPORT Trial : public QObject
{
    Q_OBJECT

public:
    explicit Trial(QObject *parent = nullptr);
    /// Ends what is under way and waits for the end.
    ~Trial() override;

    /// Begins; what is under way is ended first, and not told.
    void Start(const ScanSource &source, int rows);
    /// Asks for the end, which comes soon where the driver can end a statement.
    void Stop();
    bool Running() const { return reader_ != nullptr; }

Q_SIGNALS:
    void Ended(const nuvo::TrialAnswer &answer);

private:
    void GiveUp();
    void Finish();

    std::unique_ptr<FirstRows> reader_;
    std::optional<TrialAnswer> answer_; // written by the thread, read after its end
    std::atomic<bool> ended_{false};
    bool stopped_ = false;
    std::thread thread_;
    QTimer again_; // an interruption that comes between two statements is lost, so it is repeated
    int number_ = 0;
};

} // namespace nuvo
