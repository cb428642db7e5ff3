// SPDX-License-Identifier: MIT
#pragma once

namespace nuvo {
class Catalogue;
}

/// The regression components and the editors of their definitions.
namespace Mlr32reg {

void Register(nuvo::Catalogue &catalogue);

} // namespace Mlr32reg
