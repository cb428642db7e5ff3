// SPDX-License-Identifier: MIT
#pragma once

namespace nuvo {
class Catalogue;
}

/// Plain datasets, and the editors of what every dataset is bound to.
namespace Datareg {

void Register(nuvo::Catalogue &catalogue);

} // namespace Datareg
