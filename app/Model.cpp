#include "app/Model.h"

namespace nuvo {
namespace {

TIndepVar control(const Term &term)
{
    TIndepVar definition;
    definition.SetTransformation(term.transformation);
    if (!term.field1.isNull())
        definition.SetField1(term.field1);
    if (!term.field2.isNull())
        definition.SetField2(term.field2);
    if (!term.exponent.isNull())
        definition.SetExponent(term.exponent);
    if (!term.scaleFactor.isNull())
        definition.SetScaleFactor(term.scaleFactor);
    return definition;
}

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

void defineModel(TDataSet &dataset, TRegression &regression, const ModelOptions &options)
{
    dataset.SetDatabaseName(options.database);
    for (qsizetype i = 0; i < options.controls.size(); ++i)
        regression.SetControl(int(i) + 1, control(options.controls[i]));
    regression.SetResponse(response(options.response));
    regression.SetDescription(options.description);
}

} // namespace nuvo
