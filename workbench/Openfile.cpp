// SPDX-License-Identifier: MIT
#include "workbench/Openfile.h"

#include "platform/Errors.h"
#include "platform/Table.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace nuvo {

FileKind kindOf(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (info.isDir())
        throw EPlatformError(
            QCoreApplication::translate("Openfile", "\"%1\" is a folder; open a file in it.").arg(fileName));
    if (info.exists() && !info.isFile()) // opening a pipe would wait for its writer
        throw EPlatformError(
            QCoreApplication::translate("Openfile", "\"%1\" is a device or a pipe, no file.").arg(fileName));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EPlatformError(
            QCoreApplication::translate("Openfile", "Cannot read \"%1\": %2.").arg(fileName, file.errorString()));
    if (file.peek(16).startsWith("SQLite format 3"))
        return FileKind::Database;
    if (fileName.endsWith(u".ui", Qt::CaseInsensitive))
        return FileKind::Form;
    // One of another program, or damaged: said to be one, it is told why it is none.
    for (const char *const ending : {".db", ".db3", ".sqlite", ".sqlite3"}) {
        if (fileName.endsWith(QLatin1String(ending), Qt::CaseInsensitive))
            return FileKind::Database;
    }
    return FileKind::Csv;
}

void saveCopy(const QString &database, const QString &fileName)
{
    QFile from(database);
    QSaveFile to(fileName);
    const auto fail = [](const QFileDevice &file) {
        throw EPlatformError(QCoreApplication::translate("Openfile", "Cannot copy \"%1\": %2.")
                                 .arg(file.fileName(), file.errorString()));
    };
    if (!from.open(QIODevice::ReadOnly))
        fail(from);
    if (!to.open(QIODevice::WriteOnly))
        fail(to);
    constexpr qint64 portion = 1 << 20;
    for (QByteArray bytes = from.read(portion); !bytes.isEmpty(); bytes = from.read(portion)) {
        if (to.write(bytes) != bytes.size())
            fail(to);
    }
    if (from.error() != QFileDevice::NoError)
        fail(from);
    if (!to.flush() || !to.commit())
        fail(to);
}

QString newTableFor(const QString &file, const QString &database)
{
    QString base = QFileInfo(file).completeBaseName();
    for (QChar &c : base) {
        if (!c.isLetterOrNumber())
            c = u'_';
    }
    if (base.isEmpty())
        base = QStringLiteral("data");
    QStringList taken;
    if (QFileInfo::exists(database)) {
        TTable table;
        table.SetDatabaseName(database);
        taken = table.TableNames();
    }
    QString name = base;
    for (int number = 2; taken.contains(name, Qt::CaseInsensitive); ++number)
        name = QStringLiteral("%1_%2").arg(base).arg(number);
    return name;
}

} // namespace nuvo
