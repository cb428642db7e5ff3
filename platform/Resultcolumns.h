// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Fieldtypes.h"
#include "platform/Sqltext.h"

#include <QVariantList>

#include <vector>

class QSqlQuery;

/// What is known of a statement's columns: by the driver, by their names, by their first values.
namespace nuvo {

/// The columns of a statement that was executed, as driver and database describe them.
std::vector<Column> columnsOf(const QSqlQuery &query, Dialect dialect);

/// Makes every name one of its own, upper and lower case alike: NAME, NAME_1, NAME_2.
void makeNamesUnique(std::vector<Column> &columns);

/// Gives a column without a declared type the kind of its values in these rows; it stays Unknown without any.
void takeKindsOfValues(std::vector<Column> &columns, const std::vector<QVariantList> &rows);

} // namespace nuvo
