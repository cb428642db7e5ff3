// SPDX-License-Identifier: MIT
#include "platform/Formfolder.h"

#include "platform/Databasename.h"

#include <QDir>
#include <QFileInfo>
#include <QVariant>
#include <QWidget>

namespace nuvo {

namespace {

constexpr char FolderProperty[] = "nuvoFormFolder";

/// The path from the folder as it is written; empty where it leads out of it.
QString below(const QString &folder, const QString &path)
{
    const QString relative = QDir(folder).relativeFilePath(path);
    const bool out = QDir::isAbsolutePath(relative) || relative == u".." || relative.startsWith(QLatin1String("../"));
    return out ? QString() : relative;
}

} // namespace

void setFormFolder(QWidget &form, const QString &folder)
{
    form.setProperty(FolderProperty, folder.isEmpty() ? QVariant() : QVariant(QDir(folder).absolutePath()));
}

QString formFolder(const QWidget &widget)
{
    for (const QWidget *level = &widget; level != nullptr; level = level->parentWidget()) {
        if (const QVariant folder = level->property(FolderProperty); folder.isValid())
            return folder.toString();
    }
    return {};
}

QString databasePlace(const QString &databaseName, const QString &folder)
{
    if (folder.isEmpty() || !isRelativeFile(databaseName))
        return databaseName;
    const QString beside = QDir(folder).absoluteFilePath(QStringLiteral("./") + databaseName);
    return QFileInfo::exists(beside) ? QDir::cleanPath(beside) : databaseName;
}

QString pathFromForm(const QString &path, const QString &folder)
{
    if (folder.isEmpty() || !QDir::isAbsolutePath(path))
        return path;
    QString relative = below(folder, path);
    if (relative.isEmpty()) {
        // A file that is itself a link counts where the link lies.
        const QFileInfo file(path);
        const QString place = QFileInfo(file.path()).canonicalFilePath();
        const QString ground = QFileInfo(folder).canonicalFilePath();
        if (!place.isEmpty() && !ground.isEmpty())
            relative = below(ground, place + u'/' + file.fileName());
    }
    return relative.isEmpty() ? path : relative;
}

} // namespace nuvo
