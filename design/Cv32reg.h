// SPDX-License-Identifier: MIT
#pragma once

namespace nuvo {
class Catalogue;
}

/// The components that select models, and the editors of what they refer to.
namespace Cv32reg {

void Register(nuvo::Catalogue &catalogue);

} // namespace Cv32reg
