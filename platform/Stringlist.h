// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QStringList>

/// A list of strings whose indices are checked. Positions count from 0.
class NUVO_EXPORT TStringList
{
public:
    TStringList() = default;
    explicit TStringList(const QStringList &strings);
    TStringList(const TStringList &) = default;
    TStringList(TStringList &&) = default;
    TStringList &operator=(const TStringList &) = default;
    TStringList &operator=(TStringList &&) = default;
    virtual ~TStringList();

    /// How many strings there are.
    int Count() const { return int(strings_.size()); }
    /// \throws EStringListError for an index outside 0..Count()-1.
    const QString &Strings(int index) const;
    /// As Strings().
    const QString &operator[](int index) const { return Strings(index); }
    /// Replaces one string. \throws EStringListError for an index outside 0..Count()-1.
    void Put(int index, const QString &value);
    /// Appends and returns the new string's index.
    int Add(const QString &value);
    /// Inserts in front of index; index Count() appends. \throws EStringListError outside 0..Count().
    void Insert(int index, const QString &value);
    /// \throws EStringListError for an index outside 0..Count()-1.
    void Delete(int index);
    /// Drops all strings.
    void Clear();
    /// First position of a string, upper and lower case told apart; -1 when it is not there.
    int IndexOf(const QString &value) const;
    /// Becomes a copy of another list's strings, however many there are.
    void Assign(const TStringList &source);
    /// Becomes these strings.
    void Assign(const QStringList &source) { strings_ = source; }
    /// The strings as Qt takes them.
    const QStringList &ToQStringList() const { return strings_; }

private:
    void Check(int index, int limit) const;

    QStringList strings_;
};
