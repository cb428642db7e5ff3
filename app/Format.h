// SPDX-License-Identifier: MIT
#pragma once

namespace nuvo {

/// The report is the one of the report window; the text tells as much and may tell more.
enum class OutputFormat { Text, Report, Json };

} // namespace nuvo
