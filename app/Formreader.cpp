#include "app/Formreader.h"

#include "app/Components.h"
#include "platform/Component.h"
#include "platform/Errors.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QStringDecoder>
#include <QUiLoader>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <vector>

namespace nuvo {
namespace {

constexpr qint64 maxBytes = 16 << 20;
constexpr int maxDepth = 256;
constexpr int maxAttributes = 64;
constexpr int maxComponents = 100;

[[noreturn]] void refuse(const QString &caption, const QString &why)
{
    throw EPlatformError(QStringLiteral("The form \"%1\" cannot be loaded: %2.").arg(caption, why));
}

QString decoded(const QByteArray &form, const QString &caption)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8(form);
    if (utf8.hasError())
        refuse(caption, QStringLiteral("it is no text in UTF-8"));
    return text;
}

/// Whether an element has more attributes than forms use: Qt's reader takes time with the square of their number.
bool hasTooManyAttributes(QStringView xml)
{
    const auto skipTo = [xml](QStringView end, qsizetype from) {
        const qsizetype at = xml.indexOf(end, from);
        return at < 0 ? xml.size() : at;
    };
    for (qsizetype i = skipTo(u"<", 0); i < xml.size(); i = skipTo(u"<", i)) {
        const QStringView rest = xml.mid(i);
        if (rest.startsWith(u"<!--")) {
            i = skipTo(u"-->", i + 4);
        } else if (rest.startsWith(u"<![CDATA[")) {
            i = skipTo(u"]]>", i);
        } else if (rest.startsWith(u"<?")) {
            i = skipTo(u"?>", i);
        } else {
            int attributes = 0;
            for (++i; i < xml.size() && xml[i] != u'>'; ++i) {
                if (xml[i] != u'"' && xml[i] != u'\'')
                    continue;
                if (++attributes > maxAttributes)
                    return true;
                i = skipTo(xml.mid(i, 1), i + 1);
            }
        }
    }
    return false;
}

struct FormProperty
{
    QString name;
    QString kind; ///< the element that holds the value
    QStringList values;
};

/// A component, or a container of some.
struct FormWidget
{
    const ComponentClass *component = nullptr;
    QString name;
    std::vector<FormProperty> properties;
    std::vector<FormWidget> children;
};

class FormReader
{
public:
    FormReader(const QString &form, QString caption) : xml_(form), caption_(std::move(caption)) {}

    /// The form's widget.
    FormWidget read()
    {
        if (!nextChild(0) || xml_.name() != u"ui")
            fail(QStringLiteral("it is no form of Qt Designer"));
        const QString version = xml_.attributes().value(QLatin1StringView("version")).toString();
        if (!version.startsWith(QLatin1StringView("4.")))
            fail(QStringLiteral("it is of version \"%1\", and forms of version 4 are read").arg(version));
        FormWidget outside;
        readChildren(outside);
        while (nextChild(0)) { // to the end, where a file that was cut short is noticed
        }
        if (!found_)
            fail(QStringLiteral("it has no widget"));
        return outside;
    }

private:
    [[noreturn]] void fail(const QString &why) const
    {
        refuse(caption_, QStringLiteral("line %1: %2").arg(QString::number(xml_.lineNumber()), why));
    }

    QXmlStreamReader::TokenType next()
    {
        const QXmlStreamReader::TokenType token = xml_.readNext();
        switch (token) {
        case QXmlStreamReader::StartElement:
            if (++depth_ > maxDepth)
                fail(QStringLiteral("it is nested deeper than %1 elements").arg(maxDepth));
            break;
        case QXmlStreamReader::EndElement:
            --depth_;
            break;
        case QXmlStreamReader::DTD: // entities: files that are read in, and texts that grow without end
            fail(QStringLiteral("it has a document type declaration, and no form needs one"));
        case QXmlStreamReader::Invalid: {
            QString why = xml_.errorString();
            while (why.endsWith(u'.'))
                why.chop(1);
            fail(why.isEmpty() ? QStringLiteral("it is no XML") : why.at(0).toLower() + why.mid(1));
        }
        default:
            break;
        }
        return token;
    }

    /// Goes to the next element directly below the one at that depth; false at its end.
    bool nextChild(int depth)
    {
        while (true) {
            const QXmlStreamReader::TokenType token = next();
            if (token == QXmlStreamReader::StartElement && depth_ == depth + 1)
                return true;
            if (token == QXmlStreamReader::EndDocument ||
                (token == QXmlStreamReader::EndElement && depth_ == depth - 1))
                return false;
        }
    }

    /// Reads the widgets below the current element into one, through the layouts that hold them.
    void readChildren(FormWidget &parent)
    {
        for (const int depth = depth_; nextChild(depth);) {
            if (xml_.name() == u"widget")
                readWidget(parent);
            else if (xml_.name() == u"layout" || xml_.name() == u"item")
                readChildren(parent);
            else if (xml_.name() == u"property" && parent.component != nullptr)
                readProperty(parent);
        }
    }

    void readWidget(FormWidget &parent)
    {
        found_ = true;
        FormWidget widget;
        widget.component = componentClass(xml_.attributes().value(QLatin1StringView("class")).toString());
        widget.name = xml_.attributes().value(QLatin1StringView("name")).toString();
        if (widget.component != nullptr && ++components_ > maxComponents)
            fail(QStringLiteral("it has more than %1 components").arg(maxComponents));
        readChildren(widget);
        if (widget.component != nullptr || !widget.children.empty())
            parent.children.push_back(std::move(widget));
    }

    void readProperty(FormWidget &widget)
    {
        const QString name = xml_.attributes().value(QLatin1StringView("name")).toString();
        const QMetaObject *meta = widget.component->meta;
        const int index = meta->indexOfProperty(name.toUtf8().constData());
        if (index < TComponent::staticMetaObject.propertyCount())
            return; // a property of every widget, or of none that we know
        const int depth = depth_;
        if (!nextChild(depth))
            return;
        FormProperty property{name, xml_.name().toString(), {}};
        if (property.kind == u"stringlist") {
            for (const int list = depth_; nextChild(list);)
                property.values.append(readText());
        } else {
            property.values.append(readText());
        }
        check(widget, property, meta->property(index));
        // A connection string of ODBC can name the library to load.
        if (name == u"DatabaseName" && property.values[0].startsWith(u"odbc:", Qt::CaseInsensitive) &&
            property.values[0].contains(u'='))
            fail(QStringLiteral("DatabaseName of \"%1\" is a connection string; a form can only name a data source, "
                                "odbc:NAME")
                     .arg(widget.name));
        widget.properties.push_back(std::move(property));
        while (nextChild(depth)) {
        }
    }

    /// The text of the current element, which has no others in it, to its end.
    QString readText()
    {
        QString text;
        for (const int depth = depth_; depth_ >= depth;) {
            const QXmlStreamReader::TokenType token = next();
            if (token == QXmlStreamReader::Characters)
                text += xml_.text();
            else if (token == QXmlStreamReader::StartElement)
                fail(QStringLiteral("there is an element \"%1\" where a text should be").arg(xml_.name()));
        }
        return text;
    }

    /// Refuses a value of another kind: what a widget would make of it differs from loader to compiler.
    void check(const FormWidget &widget, const FormProperty &property, const QMetaProperty &published) const
    {
        const QString &value = property.values.value(0);
        const QString &kind = property.kind;
        QString wanted;
        bool good = false;
        if (published.isEnumType()) {
            QStringList keys;
            for (int i = 0; i < published.enumerator().keyCount(); ++i)
                keys.append(QString::fromUtf8(published.enumerator().key(i)));
            wanted = QStringLiteral("one of ") + keys.join(QStringLiteral(", "));
            good = kind == u"enum" && keys.contains(value.section(QStringLiteral("::"), -1));
        } else {
            switch (published.typeId()) {
            case QMetaType::QString:
                wanted = QStringLiteral("a text");
                good = kind == u"string" || kind == u"cstring";
                break;
            case QMetaType::QStringList:
                wanted = QStringLiteral("a list of texts");
                good = kind == u"stringlist";
                break;
            case QMetaType::Bool:
                wanted = QStringLiteral("true or false");
                good = kind == u"bool" && (value == u"true" || value == u"false");
                break;
            case QMetaType::Int:
                wanted = QStringLiteral("a whole number");
                if (kind == u"number")
                    value.toInt(&good);
                break;
            default:
                wanted = QStringLiteral("a number");
                if (kind == u"number" || kind == u"double")
                    value.toDouble(&good);
                break;
            }
        }
        if (!good)
            fail(QStringLiteral("%1 of \"%2\" has to be %3, not <%4>%5")
                     .arg(property.name, widget.name, wanted, kind, value.left(40)));
    }

    QXmlStreamReader xml_;
    QString caption_;
    int depth_ = 0;
    int components_ = 0;
    bool found_ = false;
};

void write(QXmlStreamWriter &xml, const FormWidget &widget)
{
    xml.writeStartElement(QStringLiteral("widget"));
    xml.writeAttribute(QStringLiteral("class"), widget.component == nullptr
                                                    ? QStringLiteral("QWidget")
                                                    : QString::fromUtf8(widget.component->meta->className()));
    xml.writeAttribute(QStringLiteral("name"), widget.name);
    for (const FormProperty &property : widget.properties) {
        xml.writeStartElement(QStringLiteral("property"));
        xml.writeAttribute(QStringLiteral("name"), property.name);
        if (property.kind == u"stringlist") {
            xml.writeStartElement(property.kind);
            for (const QString &value : property.values)
                xml.writeTextElement(QStringLiteral("string"), value);
            xml.writeEndElement();
        } else {
            xml.writeTextElement(property.kind, property.values.value(0));
        }
        xml.writeEndElement();
    }
    for (const FormWidget &child : widget.children)
        write(xml, child);
    xml.writeEndElement();
}

/// Makes our components and plain widgets.
class ComponentLoader : public QUiLoader
{
public:
    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        const ComponentClass *component = componentClass(className);
        QWidget *widget = component == nullptr ? new QWidget(parent) : component->make(parent);
        widget->setObjectName(name);
        return widget;
    }
};

/// While it lives, Qt looks for plugins nowhere: a loader of forms would load all that it finds for the designer.
class NoPlugins
{
public:
    NoPlugins() : paths_(QCoreApplication::libraryPaths()) { QCoreApplication::setLibraryPaths({}); }
    ~NoPlugins() { QCoreApplication::setLibraryPaths(paths_); }
    NoPlugins(const NoPlugins &) = delete;
    NoPlugins &operator=(const NoPlugins &) = delete;

private:
    const QStringList paths_;
};

} // namespace

QByteArray reducedForm(const QByteArray &form, const QString &caption)
{
    const QString text = decoded(form, caption);
    if (hasTooManyAttributes(text))
        refuse(caption, QStringLiteral("it has an element with more than %1 attributes").arg(maxAttributes));
    const FormWidget outside = FormReader(text, caption).read();
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("ui"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("4.0"));
    write(xml, outside);
    xml.writeEndDocument();
    return bytes;
}

std::unique_ptr<QWidget> loadForm(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        refuse(fileName, file.errorString());
    const QByteArray bytes = file.read(maxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        refuse(fileName, file.errorString());
    if (bytes.isEmpty())
        refuse(fileName, QStringLiteral("it is empty"));
    if (bytes.size() > maxBytes)
        refuse(fileName, QStringLiteral("it is larger than %1 MiB").arg(maxBytes >> 20));
    QByteArray reduced = reducedForm(bytes, fileName);
    QBuffer buffer(&reduced);
    const NoPlugins noPlugins;
    ComponentLoader loader;
    loader.setTranslationEnabled(false);
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    if (!form)
        refuse(fileName, loader.errorString());
    return form;
}

} // namespace nuvo
