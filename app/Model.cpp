// SPDX-License-Identifier: MIT
#include "app/Model.h"

#include <QRegularExpression>

namespace nuvo {
namespace {

TDependentVar response(const Term &term)
{
    TDependentVar definition;
    definition.SetTransformation(term.transformation);
    definition.SetField(term.field1);
    if (!term.scaleFactor.isNull())
        definition.SetScaleFactor(term.scaleFactor);
    return definition;
}

} // namespace

TIndepVar definitionOf(const Term &control)
{
    TIndepVar definition;
    definition.SetTransformation(control.transformation);
    if (!control.field1.isNull())
        definition.SetField1(control.field1);
    if (!control.field2.isNull())
        definition.SetField2(control.field2);
    if (!control.exponent.isNull())
        definition.SetExponent(control.exponent);
    if (!control.scaleFactor.isNull())
        definition.SetScaleFactor(control.scaleFactor);
    return definition;
}

QStringList fieldsOf(const ModelOptions &options)
{
    QStringList fields{options.response.field1};
    for (const Term &control : options.controls)
        fields += {control.field1, control.field2};
    return fields;
}

QString writtenOtherwise(const QString &message, const ModelOptions &options)
{
    static const QRegularExpression call(QStringLiteral("^(\\w+)\\s*\\("));
    for (const QString &field : fieldsOf(options)) {
        if (field.isEmpty() || !message.startsWith(QStringLiteral("No field \"%1\"").arg(field)))
            continue;
        const QString function = call.match(field).captured(1).toLower();
        if (function == u"log" || function == u"ln")
            return QStringLiteral(" A natural logarithm is written Ln(F).");
        if (function == u"sqrt")
            return QStringLiteral(" A square root is written F^1/2.");
        if (field.contains(u':'))
            return QStringLiteral(" A product is written F*G.");
        if (field.contains(u',') || field.contains(u'+'))
            return QStringLiteral(" --control is given once for each control variable.");
    }
    return {};
}

void defineModel(TDataSet &dataset, TRegression &regression, const ModelOptions &options)
{
    dataset.SetDatabaseName(options.database);
    for (qsizetype i = 0; i < options.controls.size(); ++i)
        regression.SetControl(int(i) + 1, definitionOf(options.controls[i]));
    regression.SetResponse(response(options.response));
    regression.SetDescription(options.description);
    regression.SetUseOfRecords(options.records);
}

} // namespace nuvo
