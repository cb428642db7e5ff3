// SPDX-License-Identifier: MIT
#include "select/Choice.h"

namespace nuvo {

int Choice::modelCount() const
{
    return int(isOptimal() ? subsets.bySize.size() : search.path.size());
}

std::optional<ControlSet> Choice::model(int index) const
{
    if (index < 1 || index > modelCount())
        return {};
    const std::size_t at = std::size_t(index) - 1;
    return isOptimal() ? subsets.bySize[at].controls : search.path[at].model;
}

Choice::Transformations Choice::transformationsOf(ControlSet model) const
{
    Transformations result;
    result.fill(QStringLiteral("Undefined"));
    for (std::size_t j = 0; j < positions.size(); ++j) {
        const std::size_t at = std::size_t(positions[j]) - 1;
        if (model & (ControlSet(1) << j))
            result[at] = transformations[at];
    }
    return result;
}

QStringList Choice::terms(ControlSet set) const
{
    QStringList result;
    for (int j = 1; j <= count(); ++j) {
        if (set & (ControlSet(1) << (j - 1)))
            result.append(term(j));
    }
    return result;
}

} // namespace nuvo
