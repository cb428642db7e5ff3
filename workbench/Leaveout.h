// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Modelstate.h"

#include <optional>
#include <set>

class QWidget;

namespace nuvo {

class Task;

/// The state without some of its records: its filter, and a condition that is true of all others. A record is told
/// from the others by a field that has its value nowhere else, whole numbers and texts before other numbers, or by
/// all fields together; the database is asked whether it is so, on a connection of its own: in any thread. \param
/// records ordinals, as the state's records come
/// \throws EPlatformError for a query, for a record that the database has twice, where the task was ended, and as the
/// database does
/// \pre state.hasData()
ModelState leavingOut(const ModelState &state, const std::set<qint64> &records, Task &task);
/// The same, while the window lives; nothing where the person ended it.
std::optional<ModelState> leavingOut(QWidget &window, const ModelState &state, const std::set<qint64> &records);

} // namespace nuvo
