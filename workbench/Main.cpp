#include "platform/Errors.h"
#include "platform/Messages.h"
#include "workbench/Mainwindow.h"
#include "workbench/Sittingfolder.h"

#include <QApplication>
#include <QIcon>
#include <QStandardPaths>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Nuvo"));
    QApplication::setApplicationName(QStringLiteral("nuvo-workbench"));
    QApplication::setDesktopFileName(QStringLiteral("nuvo-workbench"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("nuvo-workbench")));
    QApplication::setApplicationDisplayName(QStringLiteral("Nuvo Workbench"));
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    try {
        const nuvo::SittingFolder sitting(folder);
        nuvo::MainWindow window(sitting.path());
        window.show();
        const QStringList files = QApplication::arguments().mid(1);
        for (const QString &file : files)
            window.OpenFile(file);
        return QApplication::exec();
    } catch (const EPlatformError &error) {
        MessageDlg(error.Message(), TMsgDlgType::mtError);
        return 1;
    }
}
