// SPDX-License-Identifier: MIT
#include "engine/kernel/Evensample.h"

#include <algorithm>
#include <limits>

namespace nuvo {

namespace {

// SplitMix64 (Steele, Lea and Flood, OOPSLA 2014).
std::uint64_t mixed(std::uint64_t z)
{
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
}

constexpr std::uint64_t goldenRatio = 0x9E3779B97F4A7C15;

} // namespace

EvenSample::EvenSample(int columns, int capacity, std::uint64_t seed)
    : columns_(std::size_t(columns)), capacity_(std::size_t(capacity)), seed_(mixed(seed * goldenRatio)),
      limit_(std::numeric_limits<std::uint64_t>::max())
{
}

double *EvenSample::take(std::uint64_t number, std::int64_t ordinal)
{
    if (number >= limit_)
        return nullptr;
    std::size_t place = rows_.size();
    if (place == capacity_) {
        limit_ = std::max(number, rows_.front().number);
        if (number == limit_)
            return nullptr;
        place = rows_.front().place;
        std::pop_heap(rows_.begin(), rows_.end(), isLess);
        rows_.back() = {number, ordinal, place};
    } else {
        rows_.push_back({number, ordinal, place});
        values_.resize(rows_.size() * columns_);
    }
    std::push_heap(rows_.begin(), rows_.end(), isLess);
    return &values_[place * columns_];
}

void EvenSample::add(std::span<const double *const> columns, std::size_t row, std::int64_t ordinal)
{
    ++seen_;
    double *const values = take(mixed(seed_ + std::uint64_t(ordinal) * goldenRatio), ordinal);
    if (values == nullptr)
        return;
    for (std::size_t j = 0; j < columns_; ++j)
        values[j] = columns[j][row];
}

// The place of the last row becomes that of the one dropped.
void EvenSample::dropLargest()
{
    const std::size_t freed = rows_.front().place;
    limit_ = rows_.front().number;
    std::pop_heap(rows_.begin(), rows_.end(), isLess);
    rows_.pop_back();
    const std::size_t last = rows_.size();
    if (freed != last) {
        const auto moved =
            std::find_if(rows_.begin(), rows_.end(), [last](const Row &one) { return one.place == last; });
        std::copy_n(&values_[last * columns_], columns_, &values_[freed * columns_]);
        moved->place = freed;
    }
    values_.resize(last * columns_);
}

// What both have of the numbers below the smaller limit is all that they have seen of them.
void EvenSample::merge(const EvenSample &other)
{
    seen_ += other.seen_;
    limit_ = std::min(limit_, other.limit_);
    while (!rows_.empty() && rows_.front().number >= limit_) {
        const std::uint64_t limit = limit_;
        dropLargest();
        limit_ = limit;
    }
    for (const Row &row : other.rows_) {
        if (double *const values = take(row.number, row.ordinal))
            std::copy_n(&other.values_[row.place * columns_], columns_, values);
    }
}

void EvenSample::shrink(int capacity)
{
    capacity_ = std::size_t(capacity);
    while (rows_.size() > capacity_)
        dropLargest();
    values_.shrink_to_fit();
}

void EvenSample::shift(std::int64_t ordinals)
{
    for (Row &row : rows_)
        row.ordinal += ordinals;
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
            result.columns[j].push_back(values_[row->place * columns_ + j]);
    }
    return result;
}

} // namespace nuvo
