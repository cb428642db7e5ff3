// SPDX-License-Identifier: MIT
#include "design/plugin/Workbench.h"

#include "design/plugin/Floating.h"
#include "design/plugin/Propertyrows.h"
#include "design/plugin/References.h"
#include "design/plugin/Rowtexts.h"
#include "design/plugin/Sheet.h"
#include "design/plugin/Taskmenu.h"
#include "platform/Dataset.h"
#include "platform/Formfolder.h"
#include "present/Forms.h"

#include <QDesignerFormWindowManagerInterface>
#include <QDesignerIntegrationInterface>
#include <QExtensionManager>
#include <QFileInfo>
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
    auto *sheets = new SheetFactory(manager);
    manager->registerExtensions(sheets, Q_TYPEID(QDesignerPropertySheetExtension));
    manager->registerExtensions(sheets, Q_TYPEID(QDesignerDynamicPropertySheetExtension));
    // The designer is still being put together.
    QTimer::singleShot(0, this, &Workbench::Begin);
}

void nuvo::Workbench::Begin()
{
    QDesignerFormEditorInterface &core = editing_.Core();
    new PropertyRows(editing_, this);
    texts_ = new RowTexts(editing_, this);
    QDesignerFormWindowManagerInterface *manager = core.formWindowManager();
    for (int i = 0; i < manager->formWindowCount(); ++i)
        WatchForm(*manager->formWindow(i));
    connect(manager, &QDesignerFormWindowManagerInterface::formWindowAdded, this,
            [this](QDesignerFormWindowInterface *form) { WatchForm(*form); });
    connect(core.integration(), &QDesignerIntegrationInterface::propertyChanged, this, &Workbench::PropertyChanged);
}

void nuvo::Workbench::WatchForm(QDesignerFormWindowInterface &form)
{
    // The form window owns them.
    new Floating(form);
    connect(new References(form), &References::Looked, texts_, &RowTexts::Refresh);
    const auto place = [&form](const QString &fileName) {
        setFormFolder(form, fileName.isEmpty() ? QString() : QFileInfo(fileName).absolutePath());
    };
    place(form.fileName());
    connect(&form, &QDesignerFormWindowInterface::fileNameChanged, this, place);
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
