#include "workbench/Openfile.h"

#include "app/Console.h"
#include "app/Import.h"
#include "platform/Errors.h"
#include "platform/Table.h"
#include "workbench/Asform.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace nuvo {

FileKind kindOf(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EPlatformError(
            QCoreApplication::translate("Openfile", "Cannot read \"%1\": %2.").arg(fileName, file.errorString()));
    if (file.peek(16).startsWith("SQLite format 3"))
        return FileKind::Database;
    if (fileName.endsWith(u".ui", Qt::CaseInsensitive))
        return FileKind::Form;
    return FileKind::Csv;
}

QString tableNameFor(const QString &file)
{
    QString name = QFileInfo(file).completeBaseName();
    for (QChar &c : name) {
        if (!c.isLetterOrNumber())
            c = u'_';
    }
    return name.isEmpty() ? QStringLiteral("data") : name;
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
    if (!to.commit())
        fail(to);
}

std::optional<ModelState> openedFile(const QString &file, const QString &into)
{
    switch (kindOf(file)) {
    case FileKind::Database:
        return {};
    case FileKind::Form:
        return stateOfForm(file);
    case FileKind::Csv:
        break;
    }
    QStringList taken;
    if (QFileInfo::exists(into)) {
        TTable table;
        table.SetDatabaseName(into);
        taken = table.TableNames();
    } else {
        QDir().mkpath(QFileInfo(into).absolutePath());
    }
    const QString base = tableNameFor(file);
    ImportOptions options;
    options.csv.file = file;
    options.database = into;
    options.table = base;
    for (int number = 2; taken.contains(options.table, Qt::CaseInsensitive); ++number)
        options.table = QStringLiteral("%1_%2").arg(base).arg(number);
    importCsv(options);
    ModelState state;
    state.database = into;
    state.table = options.table;
    return state;
}

} // namespace nuvo
