// SPDX-License-Identifier: MIT
// Changes one thing after another in a sitting, and imports a file now and then, until it is killed or done; writes
// the number of each change that is finished to standard output.
//   workbench_script FOLDER DATABASE CSV FIRST LAST

#include "platform/Modal.h"
#include "workbench/Mainwindow.h"
#include "workbench/Scriptstates.h"
#include "workbench/Sitting.h"

#include <QApplication>
#include <QDialog>
#include <QSettings>

#include <cstdio>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList words = QApplication::arguments();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, words[1]);
    QApplication::setOrganizationName(QStringLiteral("Nuvo"));
    QApplication::setApplicationName(QStringLiteral("nuvo-workbench"));
    SetModalRunner([](QDialog &) { return int(QDialog::Accepted); });
    nuvo::MainWindow window(words[1]);
    window.show();
    for (int change = words[4].toInt(); change <= words[5].toInt(); ++change) {
        if (change % 10 == 5)
            window.OpenFile(words[3]); // a state in between
        window.CurrentSitting().Change(scriptState(words[2], change), QStringLiteral("change"));
        QApplication::processEvents();
        std::printf("%d\n", change);
        std::fflush(stdout);
    }
    return 0;
}
