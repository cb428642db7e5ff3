// SPDX-License-Identifier: MIT
#pragma once

namespace nuvo {

/// What a column of a file or of a new table holds.
enum class ColumnType { Whole, Floating, Text };

} // namespace nuvo
