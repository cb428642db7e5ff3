// SPDX-License-Identifier: MIT
#include "design/plugin/Plugin.h"

#include "design/Cv32reg.h"
#include "design/Datareg.h"
#include "design/Mlr32reg.h"
#include "design/plugin/Details.h"
#include "design/plugin/Floating.h"
#include "design/plugin/Icons.h"
#include "design/plugin/Sheet.h"
#include "engine/Regression.h"

#include <QDesignerFormWindowInterface>
#include <QMetaProperty>
#include <QXmlStreamWriter>

namespace {

/// The published properties: those that a component's class and its bases have beyond TComponent.
std::vector<QMetaProperty> publishedProperties(const QMetaObject &component)
{
    std::vector<QMetaProperty> properties;
    for (int i = TComponent::staticMetaObject.propertyCount(); i < component.propertyCount(); ++i)
        properties.push_back(component.property(i));
    return properties;
}

/// A value as a form file holds it. Texts are not for translation: a translated one would be set once more, after
/// everything else, and whenever the language changes.
void writeValue(QXmlStreamWriter &xml, const QMetaProperty &property, const QVariant &value)
{
    const auto writeText = [&xml](const QString &text) {
        xml.writeStartElement(QStringLiteral("string"));
        xml.writeAttribute(QStringLiteral("notr"), QStringLiteral("true"));
        xml.writeCharacters(text);
        xml.writeEndElement();
    };
    if (property.isEnumType()) {
        xml.writeTextElement(
            QStringLiteral("enum"),
            QStringLiteral("%1::%2").arg(QLatin1String(property.enumerator().scope()),
                                         QLatin1String(property.enumerator().valueToKey(value.toInt()))));
        return;
    }
    switch (property.typeId()) {
    case QMetaType::Bool:
        return xml.writeTextElement(QStringLiteral("bool"), value.toString());
    case QMetaType::Int:
        return xml.writeTextElement(QStringLiteral("number"), value.toString());
    case QMetaType::Double:
        return xml.writeTextElement(QStringLiteral("double"), value.toString());
    case QMetaType::QStringList:
        xml.writeStartElement(QStringLiteral("stringlist"));
        xml.writeAttribute(QStringLiteral("notr"), QStringLiteral("true"));
        for (const QString &text : value.toStringList())
            xml.writeTextElement(QStringLiteral("string"), text);
        return xml.writeEndElement();
    default:
        return writeText(value.toString());
    }
}

} // namespace

nuvo::ComponentPlugin::ComponentPlugin(const ComponentEntry &entry, const Catalogue &catalogue)
    : entry_(entry), catalogue_(catalogue)
{
}

nuvo::ComponentPlugin::~ComponentPlugin() = default;

QString nuvo::ComponentPlugin::whatsThis() const
{
    return entry_.whatsThis;
}

QString nuvo::ComponentPlugin::includeFile() const
{
    return entry_.header;
}

QIcon nuvo::ComponentPlugin::icon() const
{
    return componentIcon(name());
}

void nuvo::ComponentPlugin::initialize(QDesignerFormEditorInterface *core)
{
    core_ = core;
    Workbench::SetUp(*core, catalogue_);
}

/// On a form that is being edited the component shows itself; in a preview and in a running program it does not.
QWidget *nuvo::ComponentPlugin::createWidget(QWidget *parent)
{
    TComponent *component = entry_.create(parent);
    if (core_ != nullptr && parent != nullptr) {
        if (const auto *form = QDesignerFormWindowInterface::findFormWindow(parent); form != nullptr)
            putOn(*component, *form);
    }
    return component;
}

/// A new component with every published property, so that a form always stores them all.
QString nuvo::ComponentPlugin::domXml() const
{
    QString text;
    QXmlStreamWriter xml(&text);
    const auto startNamed = [&xml](const QString &element, const QString &name) {
        xml.writeStartElement(element);
        xml.writeAttribute(QStringLiteral("name"), name);
    };
    const auto writeToolTip = [&](const QString &property) {
        startNamed(QStringLiteral("tooltip"), property);
        xml.writeCharacters(propertyToolTip(property));
        xml.writeEndElement();
    };
    const std::unique_ptr<TComponent> fresh(entry_.create(nullptr));
    const std::vector<QMetaProperty> properties = publishedProperties(*fresh->metaObject());

    xml.writeStartElement(QStringLiteral("ui"));
    xml.writeAttribute(QStringLiteral("language"), QStringLiteral("c++"));
    xml.writeStartElement(QStringLiteral("widget"));
    xml.writeAttribute(QStringLiteral("class"), name());
    xml.writeAttribute(QStringLiteral("name"), entry_.firstName);
    for (const QMetaProperty &property : properties) {
        startNamed(QStringLiteral("property"), QLatin1String(property.name()));
        xml.writeAttribute(QStringLiteral("stdset"), QStringLiteral("0"));
        writeValue(xml, property, property.read(fresh.get()));
        xml.writeEndElement();
    }
    xml.writeEndElement();

    xml.writeStartElement(QStringLiteral("customwidgets"));
    xml.writeStartElement(QStringLiteral("customwidget"));
    xml.writeTextElement(QStringLiteral("class"), name());
    xml.writeTextElement(QStringLiteral("extends"), QStringLiteral("QWidget"));
    xml.writeStartElement(QStringLiteral("propertyspecifications"));
    for (const QMetaProperty &property : properties) {
        const QString propertyName = QLatin1String(property.name());
        writeToolTip(propertyName);
        if (property.typeId() == QMetaType::QString) {
            startNamed(QStringLiteral("stringpropertyspecification"), propertyName);
            xml.writeAttribute(QStringLiteral("type"), QStringLiteral("singleline"));
            xml.writeAttribute(QStringLiteral("notr"), QStringLiteral("true"));
            xml.writeEndElement();
        }
    }
    if (dynamic_cast<const TRegression *>(fresh.get()) != nullptr)
        writeToolTip(QString::fromLatin1(ModelRow));
    xml.writeEndDocument();
    return text;
}

nuvo::Plugin::Plugin(QObject *parent) : QObject(parent)
{
    Mlr32reg::Register(catalogue_);
    Cv32reg::Register(catalogue_);
    Datareg::Register(catalogue_);
    for (const ComponentEntry &entry : catalogue_.Components())
        components_.push_back(std::make_unique<ComponentPlugin>(entry, catalogue_));
}

nuvo::Plugin::~Plugin() = default;

QList<QDesignerCustomWidgetInterface *> nuvo::Plugin::customWidgets() const
{
    QList<QDesignerCustomWidgetInterface *> widgets;
    for (const std::unique_ptr<ComponentPlugin> &component : components_)
        widgets += component.get();
    return widgets;
}
