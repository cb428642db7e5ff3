// SPDX-License-Identifier: MIT
#pragma once

#include "app/Program.h"
#include "support/Databases.h"

#include <gtest/gtest.h>

#include <memory>

/// The arguments of a fit on a database.
QStringList fitArguments(const QString &database, const QStringList &more);
/// The Longley regression on the sample database.
QStringList longley(const QStringList &more = {});
Outcome fitLongley(const QStringList &more = {});

/// Fits on each kind of database.
class Fitting : public testing::TestWithParam<TestDatabase::Backend>
{
protected:
    Outcome fit(const QStringList &arguments);
    Json fitJson(const QStringList &arguments);
    /// Table t with columns id, y, a, b, name; b may be null.
    void makeTable(const QStringList &rows);

    std::unique_ptr<TestDatabase> database_ = TestDatabase::make(GetParam());
};
