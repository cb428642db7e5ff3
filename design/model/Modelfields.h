// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>
#include <QStringList>

#include <vector>

class TDataSet;
class TField;

namespace nuvo {

enum class FieldKind;

/// A field that a model could be made of.
struct ModelField
{
    QString name;
    QString kind; ///< "number", "whole number", "text", …
    bool numeric = true;
};

/// The fields of a dataset in its order, or why they are not known.
struct NUVO_EXPORT ModelFields
{
    bool known = false;
    QString why{}; ///< of fields that are not known: a sentence for the person who misses them
    std::vector<ModelField> fields{};

    /// Upper and lower case alike; nullptr when there is none, and where fields are not known.
    const ModelField *find(const QString &name) const;
    /// Names of the fields that hold numbers.
    QStringList numericNames() const;
    /// Why a field cannot be used, as half a sentence: "holds no number (text)".
    static QString whyNot(const ModelField &field);
};

/// What a field holds, in a word or two.
NUVO_EXPORT QString fieldKind(const TField &field);
/// The same of a kind.
NUVO_EXPORT QString fieldKind(FieldKind kind);

/// The fields of a dataset; an error of the database becomes the reason why they are not known.
NUVO_EXPORT ModelFields modelFields(TDataSet &dataset);

} // namespace nuvo
