// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace nuvo {

/// A folder that a sitting lives in for as long as this does: nobody else takes it meanwhile, not even another run of
/// the program, which gets one of its own.
class SittingFolder
{
public:
    /// The first free one below `base`: sitting, sitting-2, …; made where it is not there.
    /// \throws EPlatformError when none can be made.
    explicit SittingFolder(const QString &base);

    const QString &path() const { return path_; }

private:
    QString path_;
    std::unique_ptr<QLockFile> lock_;
};

} // namespace nuvo
