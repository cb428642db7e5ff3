#include "engine/kernel/Evensample.h"

#include <algorithm>
#include <utility>

namespace nuvo {

EvenSample::EvenSample(int columns, int capacity, std::uint64_t seed)
    : columns_(std::size_t(columns)), capacity_(std::size_t(capacity)), state_(seed)
{
}

// A whole number from 0 to limit - 1: SplitMix64 (Steele, Lea and Flood, OOPSLA 2014), scaled down by the high half
// of a product. With limits far below 2^64 no value is preferred by more than one part in 2^40.
std::uint64_t EvenSample::below(std::uint64_t limit)
{
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    z ^= z >> 31;
    // limit is below 2^63, so that neither half product overflows
    const std::uint64_t high = (z >> 32) * (limit >> 32);
    const std::uint64_t middle = (z >> 32) * (limit & 0xFFFFFFFF);
    const std::uint64_t other = (z & 0xFFFFFFFF) * (limit >> 32);
    const std::uint64_t low = (z & 0xFFFFFFFF) * (limit & 0xFFFFFFFF);
    const std::uint64_t carried = (middle & 0xFFFFFFFF) + (other & 0xFFFFFFFF) + (low >> 32);
    return high + (middle >> 32) + (other >> 32) + (carried >> 32);
}

void EvenSample::add(std::span<const double *const> columns, std::size_t row, std::int64_t ordinal)
{
    ++seen_;
    std::size_t place = rows_.size();
    if (place == capacity_) {
        place = below(static_cast<std::uint64_t>(seen_));
        if (place >= capacity_)
            return;
    } else {
        rows_.push_back({0, std::vector<double>(columns_)});
    }
    rows_[place].ordinal = ordinal;
    for (std::size_t j = 0; j < columns_; ++j)
        rows_[place].values[j] = columns[j][row];
}

// Row by row as if drawn from all that both have seen, without putting back: which of the two it is from goes by how
// many of theirs are left, and what each has kept is drawn from evenly.
void EvenSample::merge(const EvenSample &other)
{
    std::vector<Row> ours = std::move(rows_);
    std::vector<Row> theirs = other.rows_;
    auto oursLeft = static_cast<std::uint64_t>(seen_);
    auto theirsLeft = static_cast<std::uint64_t>(other.seen_);
    seen_ += other.seen_;
    rows_.clear();
    while (rows_.size() < capacity_ && oursLeft + theirsLeft > 0) {
        const bool fromOurs = below(oursLeft + theirsLeft) < oursLeft;
        std::vector<Row> &from = fromOurs ? ours : theirs;
        --(fromOurs ? oursLeft : theirsLeft);
        const std::size_t drawn = below(from.size());
        rows_.push_back(std::move(from[drawn]));
        if (drawn + 1 != from.size())
            from[drawn] = std::move(from.back());
        from.pop_back();
    }
}

EvenSample::Rows EvenSample::sorted() const
{
    std::vector<const Row *> order;
    for (const Row &row : rows_)
        order.push_back(&row);
    std::sort(order.begin(), order.end(), [](const Row *a, const Row *b) { return a->ordinal < b->ordinal; });
    Rows result;
    result.columns.resize(columns_);
    for (const Row *row : order) {
        result.ordinals.push_back(row->ordinal);
        for (std::size_t j = 0; j < columns_; ++j)
            result.columns[j].push_back(row->values[j]);
    }
    return result;
}

} // namespace nuvo
