// SPDX-License-Identifier: MIT
// Opens a database of samples in the workbench, fits Longley's table, chooses among the variables, and saves the
// model as a form by the menu.
//   workbench_form FOLDER DATABASE FORM.ui

#include "design/model/Modeleditor.h"
#include "platform/Modal.h"
#include "support/Text.h"
#include "workbench/Choicepage.h"
#include "workbench/Mainwindow.h"
#include "workbench/Pages.h"
#include "workbench/Sitting.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QSettings>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList words = QApplication::arguments();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, words[1]);
    QApplication::setOrganizationName(u("Nuvo"));
    QApplication::setApplicationName(u("nuvo-workbench"));
    SetModalRunner([&](QDialog &dialog) {
        dialog.findChild<QLineEdit *>(u("fileNameEdit"))->setText(words[3]);
        dialog.show();
        dialog.accept();
        const int result = dialog.result();
        dialog.hide();
        return result;
    });
    nuvo::MainWindow window(words[1]);
    window.show();
    window.OpenDatabase(words[2]);
    window.OpenTable(u("Longley"));
    nuvo::ModelState state = window.CurrentSitting().State();
    state.filter = u("YEAR > 1948");
    window.CurrentSitting().Change(state, u("filter"));
    window.Editor().MakeResponse(u("TOTEMP"));
    window.Editor().AddFields({u("GNP"), u("UNEMP")});
    state = window.CurrentSitting().State();
    state.model.setTransformation(1, u("Log"));
    window.CurrentSitting().Change(state, u("logarithm"));
    window.ShownPages().Choosing().Choose();
    for (QAction *const action : window.findChildren<QAction *>()) {
        if (action->text().remove(u'&').startsWith(u("Save as Form")))
            action->trigger();
    }
    return QFileInfo::exists(words[3]) ? 0 : 1;
}
