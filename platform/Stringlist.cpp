// SPDX-License-Identifier: MIT
#include "platform/Stringlist.h"

#include "platform/Errors.h"

TStringList::TStringList(const QStringList &strings) : strings_(strings) {}

TStringList::~TStringList() = default;

const QString &TStringList::Strings(int index) const
{
    Check(index, Count());
    return strings_.at(index);
}

void TStringList::Put(int index, const QString &value)
{
    // The same text again leaves what copies of the list share.
    if (Strings(index) != value)
        strings_[index] = value;
}

int TStringList::Add(const QString &value)
{
    strings_.append(value);
    return Count() - 1;
}

void TStringList::Insert(int index, const QString &value)
{
    Check(index, Count() + 1);
    strings_.insert(index, value);
}

void TStringList::Delete(int index)
{
    Check(index, Count());
    strings_.removeAt(index);
}

void TStringList::Clear()
{
    strings_.clear();
}

int TStringList::IndexOf(const QString &value) const
{
    return int(strings_.indexOf(value));
}

void TStringList::Assign(const TStringList &source)
{
    if (!strings_.isSharedWith(source.strings_))
        strings_ = source.strings_;
}

void TStringList::Check(int index, int limit) const
{
    if (index < 0 || index >= limit)
        throw EStringListError(
            QStringLiteral("No position %1 in a list of %2 strings, which count from 0.").arg(index).arg(Count()));
}
