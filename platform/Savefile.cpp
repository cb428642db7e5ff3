#include "platform/Savefile.h"

#include "platform/Errors.h"

#include <QDir>
#include <QSaveFile>

namespace nuvo {

void saveFile(const QString &path, const std::function<bool(QIODevice &device)> &write)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && write(file) && file.commit())
        return;
    QString reason = file.errorString();
    if (file.error() == QFileDevice::NoError)
        reason = QStringLiteral("its content could not be made");
    throw EPlatformError(QStringLiteral("Cannot write \"%1\": %2.").arg(QDir::toNativeSeparators(path), reason));
}

} // namespace nuvo
