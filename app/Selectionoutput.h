// SPDX-License-Identifier: MIT
#pragma once

#include "app/Format.h"
#include "app/Json.h"
#include "app/Messagelog.h"

class TCorvane;

namespace nuvo {

/// What a run has left, the messages left out. \pre the component is bound and its dataset is open
Json jsonSelection(TCorvane &selection);
/// The steps, one a line, the report of the run, and the page or the report of the model that was chosen. \pre as
/// above
QString textSelection(TCorvane &selection, OutputFormat format);
/// Whether a message is the report that textSelection() and jsonSelection() have.
bool isOwnReport(const TCorvane &selection, const Message &message);

} // namespace nuvo
