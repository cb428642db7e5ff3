// SPDX-License-Identifier: MIT
#pragma once

#include "design/plugin/Workbench.h"

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <memory>
#include <vector>

namespace nuvo {

/// One component of the catalogue, as a form designer and QUiLoader ask for it.
class ComponentPlugin : public QDesignerCustomWidgetInterface
{
public:
    ComponentPlugin(const ComponentEntry &entry, const Catalogue &catalogue);
    ~ComponentPlugin() override;

    QString name() const override { return entry_.ClassName(); }
    QString group() const override { return entry_.page; }
    QString toolTip() const override { return entry_.description; }
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override { return core_ != nullptr; }
    void initialize(QDesignerFormEditorInterface *core) override;
    QString domXml() const override;

private:
    const ComponentEntry &entry_;
    const Catalogue &catalogue_;
    QDesignerFormEditorInterface *core_ = nullptr;
};

/// The catalogue as a plugin.
class Plugin : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetCollectionInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit Plugin(QObject *parent = nullptr);
    ~Plugin() override;

    QList<QDesignerCustomWidgetInterface *> customWidgets() const override;

private:
    Catalogue catalogue_;
    std::vector<std::unique_ptr<ComponentPlugin>> components_;
};

} // namespace nuvo
