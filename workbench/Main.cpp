#include "workbench/Mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Nuvo"));
    QApplication::setApplicationName(QStringLiteral("nuvo-workbench"));
    QApplication::setApplicationDisplayName(QStringLiteral("Nuvo Workbench"));
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir().mkpath(folder);
    nuvo::MainWindow window(folder);
    window.show();
    const QStringList files = QApplication::arguments().mid(1);
    for (const QString &file : files)
        window.OpenFile(file);
    return QApplication::exec();
}
