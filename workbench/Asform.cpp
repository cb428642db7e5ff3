// SPDX-License-Identifier: MIT
#include "workbench/Asform.h"

#include "app/Formreader.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QXmlStreamWriter>

namespace nuvo {

namespace {

/// A property as Qt Designer writes it where its writer is not called after it.
class Properties
{
public:
    explicit Properties(QXmlStreamWriter &xml) : xml_(xml) {}

    void text(const QString &name, const QString &value)
    {
        begin(name);
        string(value);
        xml_.writeEndElement();
    }
    void truth(const QString &name)
    {
        begin(name);
        xml_.writeTextElement(QStringLiteral("bool"), QStringLiteral("true"));
        xml_.writeEndElement();
    }
    void number(const QString &name, const QVariant &value)
    {
        begin(name);
        if (value.userType() == QMetaType::Double)
            xml_.writeTextElement(QStringLiteral("double"), QString::number(value.toDouble(), 'f', 15));
        else
            xml_.writeTextElement(QStringLiteral("number"), value.toString());
        xml_.writeEndElement();
    }
    void enumeration(const QString &name, const QString &value)
    {
        begin(name);
        xml_.writeTextElement(QStringLiteral("enum"), value);
        xml_.writeEndElement();
    }
    void list(const QString &name, const QStringList &values)
    {
        begin(name);
        xml_.writeStartElement(QStringLiteral("stringlist"));
        xml_.writeAttribute(QStringLiteral("notr"), QStringLiteral("true"));
        for (const QString &value : values)
            xml_.writeTextElement(QStringLiteral("string"), value);
        xml_.writeEndElement();
        xml_.writeEndElement();
    }

private:
    void begin(const QString &name)
    {
        xml_.writeStartElement(QStringLiteral("property"));
        xml_.writeAttribute(QStringLiteral("name"), name);
        xml_.writeAttribute(QStringLiteral("stdset"), QStringLiteral("0"));
    }
    void string(const QString &value)
    {
        xml_.writeStartElement(QStringLiteral("string"));
        xml_.writeAttribute(QStringLiteral("notr"), QStringLiteral("true"));
        xml_.writeCharacters(value);
        xml_.writeEndElement();
    }

    QXmlStreamWriter &xml_;
};

void geometry(QXmlStreamWriter &xml, int x, int y, int width, int height)
{
    xml.writeStartElement(QStringLiteral("property"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("geometry"));
    xml.writeStartElement(QStringLiteral("rect"));
    xml.writeTextElement(QStringLiteral("x"), QString::number(x));
    xml.writeTextElement(QStringLiteral("y"), QString::number(y));
    xml.writeTextElement(QStringLiteral("width"), QString::number(width));
    xml.writeTextElement(QStringLiteral("height"), QString::number(height));
    xml.writeEndElement();
    xml.writeEndElement();
}

/// A class with its header.
struct ComponentClass
{
    QString name;
    QString header;
};

void customWidget(QXmlStreamWriter &xml, const ComponentClass &component)
{
    xml.writeStartElement(QStringLiteral("customwidget"));
    xml.writeTextElement(QStringLiteral("class"), component.name);
    xml.writeTextElement(QStringLiteral("extends"), QStringLiteral("QWidget"));
    xml.writeTextElement(QStringLiteral("header"), component.header);
    xml.writeEndElement();
}

/// A component that chooses among the terms of the one called "regression".
ComponentClass writeChooser(QXmlStreamWriter &xml, Properties &properties, const ChoiceSettings &choice)
{
    const std::unique_ptr<TCorvane> selector = selectorFor(choice);
    const QString type = QString::fromLatin1(selector->metaObject()->className());
    const QStringList headers{QStringLiteral("select/Cvmain.h"), QStringLiteral("select/Stepmain.h"),
                              QStringLiteral("select/Fwdmain.h"), QStringLiteral("select/Bkmain.h")};
    xml.writeStartElement(QStringLiteral("widget"));
    xml.writeAttribute(QStringLiteral("class"), type);
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("choice"));
    geometry(xml, 60, 20, 32, 32);
    properties.text(QStringLiteral("Dataset"), QStringLiteral("regression"));
    for (const char *name : {"Rule", "OptCriteria", "ModelsPerSize", "PIn", "POut", "P"}) {
        const QVariant value = selector->property(name);
        const QMetaProperty property =
            selector->metaObject()->property(selector->metaObject()->indexOfProperty(name));
        if (!value.isValid())
            continue;
        if (property.isEnumType())
            properties.enumeration(QLatin1String(name),
                                   type + QLatin1String("::") +
                                       QLatin1String(property.enumerator().valueToKey(value.toInt())));
        else
            properties.number(QLatin1String(name), value);
    }
    xml.writeEndElement();
    return {type, headers[choice.method]};
}

QString databaseFrom(const QString &folder, const QString &database)
{
    if (database.contains(u"://") || !QFileInfo(database).isAbsolute())
        return database;
    const QString relative = QDir(folder).relativeFilePath(database);
    return relative.startsWith(u"..") ? database : relative;
}

} // namespace

QByteArray formFile(const ModelState &state, const QString &folder, const std::optional<ChoiceSettings> &choice)
{
    QByteArray file;
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(1);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("ui"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("4.0"));
    xml.writeTextElement(QStringLiteral("class"), QStringLiteral("Form"));
    xml.writeStartElement(QStringLiteral("widget"));
    xml.writeAttribute(QStringLiteral("class"), QStringLiteral("QWidget"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("Form"));
    geometry(xml, 0, 0, 400, 300);
    const QString type = state.isQuery() ? QStringLiteral("TMLRQuery") : QStringLiteral("TMLRTable");
    xml.writeStartElement(QStringLiteral("widget"));
    xml.writeAttribute(QStringLiteral("class"), type);
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("regression"));
    geometry(xml, 20, 20, 32, 32);
    Properties properties(xml);
    properties.text(QStringLiteral("DatabaseName"), databaseFrom(folder, state.database));
    if (state.isQuery())
        properties.list(QStringLiteral("SQL"), state.statement().split(u'\n'));
    else
        properties.text(QStringLiteral("TableName"), state.table);
    if (!state.isQuery() && !state.filter.isEmpty()) {
        properties.text(QStringLiteral("Filter"), state.filter);
        properties.truth(QStringLiteral("Filtered"));
    }
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (!state.model.isEmpty(place))
            properties.list(RegressionModel::property(place), state.model.strings(place));
    }
    properties.list(RegressionModel::property(0), state.model.strings(0));
    if (state.records != RecordUse::First)
        properties.enumeration(QStringLiteral("Records"),
                               type + (state.records == RecordUse::All ? QLatin1String("::AllRecords")
                                                                       : QLatin1String("::ServerRecords")));
    xml.writeEndElement();
    const ComponentClass chooser = choice ? writeChooser(xml, properties, *choice) : ComponentClass();
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("customwidgets"));
    customWidget(xml,
                 {type, state.isQuery() ? QStringLiteral("engine/Mlrquery.h") : QStringLiteral("engine/Mlrtable.h")});
    if (choice)
        customWidget(xml, chooser);
    xml.writeEndElement();
    xml.writeEmptyElement(QStringLiteral("resources"));
    xml.writeEmptyElement(QStringLiteral("connections"));
    xml.writeEndDocument();
    return file;
}

OpenedForm openForm(const QString &file)
{
    const std::unique_ptr<QWidget> form = loadForm(file);
    OpenedForm opened;
    if (const auto *const selector = form->findChild<TCorvane *>())
        opened.choice = settingsOf(*selector);
    ModelState &state = opened.state;
    for (TDataSet *const dataset : form->findChildren<TDataSet *>()) {
        auto *const regression = dynamic_cast<TRegression *>(dataset);
        if (regression == nullptr)
            continue;
        state.database = dataset->DatabaseName();
        if (const auto *const table = qobject_cast<TMLRTable *>(dataset)) {
            state.table = table->TableName();
            state.filter = table->Filtered() ? table->Filter() : QString();
        } else if (const auto *const query = qobject_cast<TMLRQuery *>(dataset)) {
            state.sql = query->SQL();
        }
        const bool isFile = !state.database.isEmpty() && !state.database.contains(u':');
        const QString beside = QFileInfo(file).absoluteDir().filePath(state.database);
        if (isFile && QFileInfo::exists(beside))
            state.database = QFileInfo(beside).absoluteFilePath();
        state.records = regression->UseOfRecords();
        state.model = RegressionModel::of(*regression);
        return opened;
    }
    throw EPlatformError(
        QCoreApplication::translate("Openfile", "The form \"%1\" has no regression component.").arg(file));
}

} // namespace nuvo
