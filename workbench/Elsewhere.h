// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Scan.h"

#include <optional>

namespace nuvo {

/// A component whose dataset, which the window waits for, may have the first records alone; the thread that reads
/// every record goes to where they are.
template <class Component>
class Elsewhere : public Component
{
public:
    /// \param every outlives it; nothing where the dataset has them all
    explicit Elsewhere(const std::optional<ScanSource> &every) : every_(every) {}

    ScanSource Source() const override { return every_ ? *every_ : Component::Source(); }

private:
    const std::optional<ScanSource> &every_;
};

} // namespace nuvo
