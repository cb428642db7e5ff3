// SPDX-License-Identifier: MIT
#include "platform/Savefile.h"

#include "platform/Errors.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace nuvo {

void saveFile(const QString &path, const std::function<bool(QIODevice &device)> &write)
{
    const auto fail = [&path](const QString &reason) {
        throw EPlatformError(QStringLiteral("Cannot write \"%1\": %2.").arg(QDir::toNativeSeparators(path), reason));
    };
    // The new file takes the old one's place, which a device or a pipe must not lose.
    if (const QFileInfo there(path); there.exists() && !there.isFile() && !there.isDir())
        fail(QStringLiteral("it is a device or a pipe"));
    // All of it first: what makes pictures and documents does not say when a write fails.
    QBuffer content;
    content.open(QIODevice::WriteOnly);
    if (!write(content))
        fail(QStringLiteral("its content could not be made"));
    QSaveFile file(path);
    // Unbuffered: of what is left in a buffer commit() does not tell. A disk that is full takes a part before it
    // fails.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(file.errorString());
    for (QByteArrayView rest = content.data(); !rest.isEmpty();) {
        const qint64 written = file.write(rest.data(), rest.size());
        if (written <= 0)
            fail(file.errorString());
        rest = rest.sliced(written);
    }
    if (!file.commit())
        fail(file.errorString());
}

bool writeText(const QString &text, QIODevice &device)
{
    const QByteArray bytes = text.toUtf8();
    return device.write(bytes) == bytes.size();
}

} // namespace nuvo
