// SPDX-License-Identifier: MIT
#include "platform/Nearestname.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace nuvo {
namespace {

/// Insertions, deletions, replacements and swaps of neighbours that make the one of the other.
int slips(const QString &a, const QString &b)
{
    const auto rows = size_t(a.size()) + 1;
    const auto columns = size_t(b.size()) + 1;
    std::vector<std::vector<int>> least(rows, std::vector<int>(columns));
    for (size_t i = 0; i < rows; ++i) {
        for (size_t j = 0; j < columns; ++j) {
            if (i == 0 || j == 0) {
                least[i][j] = int(i + j);
                continue;
            }
            const QChar left = a[qsizetype(i) - 1];
            const QChar right = b[qsizetype(j) - 1];
            least[i][j] = std::min({least[i - 1][j] + 1, least[i][j - 1] + 1, least[i - 1][j - 1] + (left != right)});
            if (i > 1 && j > 1 && left == b[qsizetype(j) - 2] && a[qsizetype(i) - 2] == right)
                least[i][j] = std::min(least[i][j], least[i - 2][j - 2] + 1);
        }
    }
    return least.back().back();
}

} // namespace

QString perhaps(const QString &name, const QStringList &there)
{
    constexpr qsizetype longest = 64;
    constexpr qsizetype mostLooked = 1000;
    constexpr qsizetype shortName = 5;
    const QString wanted = name.toCaseFolded();
    if (wanted.size() < 3 || wanted.size() > longest)
        return {};
    int least = wanted.size() > shortName ? 3 : 2;
    QString nearest;
    for (const QString &one : there.first(std::min(there.size(), mostLooked))) {
        if (std::abs(one.size() - wanted.size()) >= least)
            continue;
        const int distance = slips(wanted, one.toCaseFolded());
        if (distance < least) {
            least = distance;
            nearest = one;
        }
    }
    return nearest.isEmpty() ? QString() : QStringLiteral(" (perhaps \"%1\")").arg(nearest);
}

} // namespace nuvo
