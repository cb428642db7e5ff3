// SPDX-License-Identifier: MIT
#include "app/Fieldvalues.h"

#include "app/Model.h"
#include "app/Usage.h"
#include "engine/Transformations.h"
#include "platform/Errors.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuvo {
namespace {

[[noreturn]] void refuseForm(const QString &text)
{
    throw UsageError(QStringLiteral("--at is FIELD=VALUE[,FIELD=VALUE]..., not \"%1\".").arg(text));
}

/// The fields that the terms use, each once.
QStringList fieldsOf(const QList<Term> &controls)
{
    QStringList fields;
    for (const Term &term : controls) {
        for (const QString &field : {term.field1, term.field2}) {
            if (!field.isEmpty() && !fields.contains(field, Qt::CaseInsensitive))
                fields.append(field);
        }
    }
    return fields;
}

QString quotedList(const QStringList &fields)
{
    return u'"' + fields.join(QStringLiteral("\", \"")) + u'"';
}

/// The parts between commas, those in quotes aside.
QStringList partsOf(const QString &text)
{
    QStringList parts(1);
    bool quoted = false;
    for (const QChar c : text) {
        quoted = quoted != (c == u'"');
        if (c == u',' && !quoted)
            parts.append(QString());
        else
            parts.last() += c;
    }
    return parts;
}

/// A part's field, as it is called, and the text of its value.
std::pair<QString, QString> nameAndValue(const QString &part, const QString &text)
{
    const QString trimmed = part.trimmed();
    if (!trimmed.startsWith(u'"')) {
        const qsizetype sign = trimmed.indexOf(u'=');
        if (sign <= 0 || trimmed.contains(u'"'))
            refuseForm(text);
        return {trimmed.left(sign).trimmed(), trimmed.mid(sign + 1).trimmed()};
    }
    QString name;
    qsizetype at = 1;
    for (; at < trimmed.size(); ++at) {
        if (trimmed[at] == u'"' && (++at == trimmed.size() || trimmed[at] != u'"'))
            break;
        name += trimmed[at];
    }
    const QString rest = trimmed.mid(at).trimmed();
    if (name.isEmpty() || !rest.startsWith(u'='))
        refuseForm(text);
    return {name, rest.mid(1).trimmed()};
}

} // namespace

FieldValues parseFieldValues(const QString &text, const QList<Term> &controls)
{
    const QStringList fields = fieldsOf(controls);
    QStringList missing = fields;
    FieldValues values;
    if (!text.trimmed().isEmpty()) {
        for (const QString &part : partsOf(text)) {
            const auto [name, valueText] = nameAndValue(part, text);
            const auto isName = [&name = name](const QString &field) {
                return field.compare(name, Qt::CaseInsensitive) == 0;
            };
            const auto field = std::find_if(fields.begin(), fields.end(), isName);
            if (field == fields.end())
                throw UsageError(
                    fields.isEmpty()
                        ? QStringLiteral("--at names \"%1\", but there is no control variable.").arg(name)
                        : QStringLiteral("--at names \"%1\", which no control uses; they use %2.")
                              .arg(name, quotedList(fields)));
            if (missing.removeIf(isName) == 0)
                throw UsageError(QStringLiteral("--at names \"%1\" twice.").arg(name));
            bool ok = false;
            const double value = valueText.toDouble(&ok);
            if (!ok || !std::isfinite(value))
                throw UsageError(QStringLiteral("--at takes a number for \"%1\", not \"%2\".").arg(name, valueText));
            values.emplace_back(*field, value);
        }
    }
    if (!missing.isEmpty())
        throw UsageError(QStringLiteral("--at needs a value for %1 as well.").arg(quotedList(missing)));
    return values;
}

void checkFieldValues(const QList<Term> &controls, const FieldValues &values)
{
    for (const Term &control : controls) {
        const Transformation *const transformation = findKeyword(controlTransformations(), control.transformation);
        if (transformation == nullptr || control.field1.isEmpty())
            continue;
        try {
            if (termValue(definitionOf(control), values))
                continue;
        } catch (const EConvertError &) {
            continue;
        }
        throw UsageError(QStringLiteral("--at gives \"%1%2%3%4\" values that this term cannot take.")
                             .arg(transformation->before, control.field1, transformation->behind,
                                  control.field2 + control.exponent + control.scaleFactor));
    }
}

} // namespace nuvo
