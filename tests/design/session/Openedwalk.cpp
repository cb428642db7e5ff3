// SPDX-License-Identifier: MIT
#include "design/session/Hands.h"
#include "design/session/Walk.h"

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>

namespace {

/// The form that Qt Designer was started with.
class OpenedWalk : public Hands
{
public:
    explicit OpenedWalk(QDesignerFormEditorInterface &core) : Hands(core) {}

    void run()
    {
        settle(300); // it brings its windows into their places, and would complain
        form_ = core_.formWindowManager()->activeFormWindow();
        lookAround();
        changeAndSave();
    }

private:
    void lookAround()
    {
        QStringList boxes;
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (const auto *box = qobject_cast<const QMessageBox *>(window); box != nullptr && box->isVisible())
                boxes.append(box->text());
        }
        see("boxes", boxes);
        see("file", QFileInfo(form_->fileName()).fileName());
        see("dirtyAfterOpening", form_->isDirty());
        QJsonArray components;
        for (const TComponent *component : form_->mainContainer()->findChildren<TComponent *>())
            components += QJsonObject{{u("name"), component->Name()},
                                      {u("class"), u(component->metaObject()->className())},
                                      {u("managed"), form_->isManaged(const_cast<TComponent *>(component))},
                                      {u("visible"), component->isVisible()},
                                      {u("designing"), component->Designing()}};
        see("components", components);
        select(component<TComponent>("regression"));
        for (const char *row :
             {"DatabaseName", "TableName", "Filter", "ResponseVarY", "ControlVar01", "ControlVar02"})
            see(row, rowText(row));
        select(component<TComponent>("choice"));
        see("Dataset", rowText("Dataset"));
    }

    void changeAndSave()
    {
        select(component<TComponent>("regression"));
        type("Description", u("Opened and saved"));
        see("dirtyAfterChange", form_->isDirty());
        for (const QMenu *menu : core_.topLevel()->findChildren<QMenu *>()) {
            for (QAction *action : menu->actions()) {
                if (action->text() == u("&Save"))
                    action->trigger();
            }
        }
        settle();
        see("dirtyAfterSave", form_->isDirty());
        see("messages", takeMessages());
        QFile::copy(form_->fileName(), u("saved.ui"));
    }
};

} // namespace

QJsonObject lookAtOpenedForm(QDesignerFormEditorInterface &core)
{
    OpenedWalk walk(core);
    walk.run();
    return walk.seen();
}
