// SPDX-License-Identifier: MIT
#include "app/Formreader.h"

#include "app/Components.h"
#include "platform/Component.h"
#include "platform/Errors.h"
#include "platform/Formfolder.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QStringDecoder>
#include <QWidget>
#include <QXmlStreamReader>

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
    QByteArray name;
    QVariant value;
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
        const QString kind = xml_.name().toString();
        QStringList texts;
        if (kind == u"stringlist") {
            for (const int list = depth_; nextChild(list);)
                texts.append(readText());
        } else {
            texts.append(readText());
        }
        // A connection string of ODBC can name the library to load.
        if (name == u"DatabaseName" && texts.value(0).startsWith(u"odbc:", Qt::CaseInsensitive) &&
            texts[0].contains(u'='))
            fail(QStringLiteral("DatabaseName of \"%1\" is a connection string; a form can only name a data source, "
                                "odbc:NAME")
                     .arg(widget.name));
        widget.properties.push_back({name.toUtf8(), valueOf(widget, meta->property(index), kind, texts)});
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
    QVariant valueOf(const FormWidget &widget, const QMetaProperty &published, const QString &kind,
                     const QStringList &texts) const
    {
        const QString text = texts.value(0);
        const auto inCase = [](bool good, auto value) { return good ? QVariant(value) : QVariant(); };
        bool ok = false;
        QString wanted;
        QVariant value;
        if (published.isEnumType()) {
            QStringList keys;
            for (int i = 0; i < published.enumerator().keyCount(); ++i)
                keys.append(QString::fromUtf8(published.enumerator().key(i)));
            wanted = QStringLiteral("one of ") + keys.join(QStringLiteral(", "));
            const qsizetype key = keys.indexOf(text.section(QStringLiteral("::"), -1));
            if (kind == u"enum" && key >= 0)
                value = published.enumerator().value(int(key));
        } else {
            switch (published.typeId()) {
            case QMetaType::QString:
                wanted = QStringLiteral("a text");
                value = inCase(kind == u"string" || kind == u"cstring", text);
                break;
            case QMetaType::QStringList:
                wanted = QStringLiteral("a list of texts");
                value = inCase(kind == u"stringlist", texts);
                break;
            case QMetaType::Bool:
                wanted = QStringLiteral("true or false");
                value = inCase(kind == u"bool" && (text == u"true" || text == u"false"), text == u"true");
                break;
            case QMetaType::Int: {
                wanted = QStringLiteral("a whole number");
                const int number = text.toInt(&ok);
                value = inCase(ok && kind == u"number", number);
                break;
            }
            default: {
                // A compiler of forms reads <number> as a whole number, and 2.5 there as 0.
                wanted = QStringLiteral("a number");
                const double number = kind == u"number" ? text.toInt(&ok) : text.toDouble(&ok);
                value = inCase(ok && (kind == u"number" || kind == u"double"), number);
                break;
            }
            }
        }
        if (!value.isValid())
            fail(QStringLiteral("%1 of \"%2\" has to be %3, not <%4>%5")
                     .arg(QString::fromUtf8(published.name()), widget.name, wanted, kind, text.left(40)));
        return value;
    }

    QXmlStreamReader xml_;
    QString caption_;
    int depth_ = 0;
    int components_ = 0;
    bool found_ = false;
};

/// Makes a widget as a program built with the form designer does: it has its name and its properties before the next
/// one is there.
QWidget *make(const FormWidget &form, QWidget *parent)
{
    QWidget *widget = form.component == nullptr ? new QWidget(parent) : form.component->make(parent);
    widget->setObjectName(form.name);
    for (const FormProperty &property : form.properties)
        widget->setProperty(property.name.constData(), property.value);
    for (const FormWidget &child : form.children)
        make(child, widget);
    return widget;
}

} // namespace

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
    const QString text = decoded(bytes, fileName);
    if (hasTooManyAttributes(text))
        refuse(fileName, QStringLiteral("it has an element with more than %1 attributes").arg(maxAttributes));
    const FormWidget outside = FormReader(text, fileName).read();
    auto form = std::make_unique<QWidget>();
    setFormFolder(*form, QFileInfo(fileName).absolutePath());
    for (const FormWidget &widget : outside.children)
        make(widget, form.get());
    return form;
}

} // namespace nuvo
