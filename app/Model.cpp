// SPDX-License-Identifier: MIT
#include "app/Model.h"

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
