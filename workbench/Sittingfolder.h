// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace nuvo {

/// A folder that a sitting lives in for as long as this does: nobody else takes it meanwhile, not even another run of
/// the program, which gets one of its own.
class SittingFolder
{
public:
    /// The first free one below `base`: sitting, sitting-2, …; made where it is not there. Where none can be made
    /// (no home folder, one that cannot be written), one for temporary files that goes with this and begins with the
    /// sitting that was saved there before.
    /// \throws EPlatformError when there is no place at all.
    explicit SittingFolder(const QString &base);

    const QString &path() const { return path_; }
    /// That the sitting will not come back, and why; empty where it will.
    const QString &warning() const { return warning_; }

private:
    QString path_;
    QString warning_;
    std::unique_ptr<QTemporaryDir> temporary_;
    std::unique_ptr<QLockFile> lock_;
};

} // namespace nuvo
