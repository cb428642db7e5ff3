// SPDX-License-Identifier: MIT
#include "design/model/Modelfields.h"

#include "design/model/Modelwords.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"

#include <type_traits>

namespace nuvo {

const ModelField *ModelFields::find(const QString &name) const
{
    const ModelField *alike = nullptr;
    for (const ModelField &field : fields) {
        if (field.name == name)
            return &field;
        if (alike == nullptr && field.name.compare(name, Qt::CaseInsensitive) == 0)
            alike = &field;
    }
    return alike;
}

QStringList ModelFields::numericNames() const
{
    QStringList names;
    for (const ModelField &field : fields) {
        if (field.numeric)
            names += field.name;
    }
    return names;
}

QString ModelFields::whyNot(const ModelField &field)
{
    return QStringLiteral("holds no number (%1)").arg(field.kind);
}

QString fieldKind(FieldKind kind)
{
    switch (kind) {
    case FieldKind::Unknown:
    case FieldKind::Float:
        return ModelWords::tr("number");
    case FieldKind::Currency:
        return ModelWords::tr("money");
    case FieldKind::Integer:
    case FieldKind::Smallint:
    case FieldKind::Word:
    case FieldKind::AutoInc:
    case FieldKind::Largeint:
        return ModelWords::tr("whole number");
    case FieldKind::Bits:
        return ModelWords::tr("bits");
    case FieldKind::Boolean:
        return ModelWords::tr("yes or no");
    case FieldKind::Date:
        return ModelWords::tr("date");
    case FieldKind::Time:
        return ModelWords::tr("time");
    case FieldKind::DateTime:
        return ModelWords::tr("date and time");
    case FieldKind::Blob:
        return ModelWords::tr("binary");
    case FieldKind::String:
    case FieldKind::Memo:
        break;
    }
    return ModelWords::tr("text");
}

QString fieldKind(const TField &field)
{
    const auto is = [&field]<class Field>(std::type_identity<Field>) {
        return dynamic_cast<const Field *>(&field) != nullptr;
    };
    FieldKind kind = FieldKind::String;
    if (is(std::type_identity<TCurrencyField>()))
        kind = FieldKind::Currency;
    else if (is(std::type_identity<TIntegerField>()))
        kind = FieldKind::Integer;
    else if (is(std::type_identity<TNumericField>()))
        kind = FieldKind::Float;
    else if (is(std::type_identity<TBooleanField>()))
        kind = FieldKind::Boolean;
    else if (is(std::type_identity<TDateField>()))
        kind = FieldKind::Date;
    else if (is(std::type_identity<TTimeField>()))
        kind = FieldKind::Time;
    else if (is(std::type_identity<TDateTimeField>()))
        kind = FieldKind::DateTime;
    else if (is(std::type_identity<BitStringField>()))
        kind = FieldKind::Bits;
    else if (is(std::type_identity<TBlobField>()) && !is(std::type_identity<TMemoField>()))
        kind = FieldKind::Blob;
    return fieldKind(kind);
}

ModelFields modelFields(TDataSet &dataset)
{
    ModelFields all;
    try {
        for (int i = 0; i < dataset.FieldCount(); ++i) {
            const TField &field = dataset.Fields(i);
            all.fields.push_back({field.FieldName(), fieldKind(field), field.IsNumeric()});
        }
        all.known = true;
    } catch (const EPlatformError &error) {
        all.fields.clear();
        all.why = error.Message();
    }
    return all;
}

} // namespace nuvo
