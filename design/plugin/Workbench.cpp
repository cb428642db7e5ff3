#include "design/plugin/Workbench.h"

#include "design/plugin/Floating.h"
#include "design/plugin/Propertyrows.h"
#include "design/plugin/Taskmenu.h"
#include "platform/Dataset.h"
#include "present/Forms.h"

#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegrationInterface>
#include <QExtensionManager>
#include <QTimer>
#include <QUndoStack>

void nuvo::Workbench::SetUp(QDesignerFormEditorInterface &core, const Catalogue &catalogue)
{
    if (core.findChild<Workbench *>(QString(), Qt::FindDirectChildrenOnly) == nullptr)
        new Workbench(core, catalogue); // the core owns it
}

nuvo::Workbench::Workbench(QDesignerFormEditorInterface &core, const Catalogue &catalogue)
    : QObject(&core), editing_(core, catalogue)
{
    QExtensionManager *manager = core.extensionManager();
    manager->registerExtensions(new TaskMenuFactory(editing_, manager), Q_TYPEID(QDesignerTaskMenuExtension));
    // The designer is still being put together.
    QTimer::singleShot(0, this, &Workbench::Begin);
}

void nuvo::Workbench::Begin()
{
    QDesignerFormEditorInterface &core = editing_.Core();
    new PropertyRows(editing_, this);
    QDesignerFormWindowManagerInterface *manager = core.formWindowManager();
    for (int i = 0; i < manager->formWindowCount(); ++i)
        new Floating(*manager->formWindow(i)); // the form window owns it
    connect(manager, &QDesignerFormWindowManagerInterface::formWindowAdded, this,
            [](QDesignerFormWindowInterface *form) { new Floating(*form); });
    connect(core.integration(), &QDesignerIntegrationInterface::propertyChanged, this, &Workbench::PropertyChanged);
}

/// A dataset that was switched on is opened, so that the user sees what is wrong with it; then it is as before.
void nuvo::Workbench::PropertyChanged(QDesignerFormWindowInterface *form, const QString &property,
                                      const QVariant &value)
{
    if (property != u"Active" || !value.toBool())
        return;
    // Designer is in the middle of its command.
    QTimer::singleShot(0, form, [this, form] {
        for (TComponent *component : editing_.Selected(QStringLiteral("Active"))) {
            auto *dataset = qobject_cast<TDataSet *>(component);
            bool opened = dataset == nullptr || !dataset->ActiveWished();
            guarded([&] {
                if (!opened)
                    dataset->Open();
                opened = true;
            });
            if (!opened)
                return form->commandHistory()->undo();
        }
    });
}
