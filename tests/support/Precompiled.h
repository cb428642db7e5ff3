// SPDX-License-Identifier: MIT
// What nearly every test includes, read once for all of them.
#include "cmake/Precompiled.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>
