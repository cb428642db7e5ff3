// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace nuvo {

/// A folder of the run's own for a temporary SQLite file: removed at the end, and when a signal ends the program.
/// One at a time.
class RunFolder
{
public:
    /// \throws EPlatformError when none can be made.
    RunFolder();
    RunFolder(const RunFolder &) = delete;
    RunFolder &operator=(const RunFolder &) = delete;
    ~RunFolder();

    QString database() const { return folder_->filePath(QStringLiteral("data.db")); }

private:
    std::optional<QTemporaryDir> folder_;
};

} // namespace nuvo
