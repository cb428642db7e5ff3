// SPDX-License-Identifier: MIT
#include "engine/kernel/Patternsums.h"

#include "engine/kernel/Columnscale.h"
#include "engine/kernel/Lowparts.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <utility>

namespace nuvo {

namespace {

constexpr std::size_t BlockRows = 1024;
// Of all patterns together: where many occur, the fullest buffer is emptied before it is a whole block.
constexpr std::size_t BufferedRows = 32 * BlockRows;
// So many patterns keep the memory of their buffer for the next block.
constexpr int PatternsWithMemory = 16;

} // namespace

struct PatternSums::Sums
{
    explicit Sums(ControlSet pattern, int m)
    {
        for (int j = 0; j < m; ++j) {
            if ((pattern >> j & 1) != 0)
                source.push_back(j);
        }
        source.push_back(m);
        ranges.resize(source.size());
        buffer.resize(source.size());
        lowBuffer.resize(source.size());
    }

    bool has(int column) const { return std::binary_search(source.begin(), source.end(), column); }
    // The place of a control, or of the response as the last one, in the products.
    std::size_t placeOf(int column) const
    {
        return std::size_t(std::lower_bound(source.begin(), source.end(), column) - source.begin()) + 1;
    }

    std::vector<int> source; // the columns usable in it, from 0, the response last
    std::int64_t rows = 0;   // with those in the buffer
    CrossProducts products{};
    std::vector<ColumnRange> ranges; // where there are rows in the products
    std::vector<std::vector<double>> buffer;
    std::vector<std::vector<double>> lowBuffer; // empty of columns without low parts
};

PatternSums::PatternSums(int controls) : m_(controls), sums_(std::size_t(1) << controls) {}
PatternSums::PatternSums(PatternSums &&) noexcept = default;
PatternSums &PatternSums::operator=(PatternSums &&) noexcept = default;
PatternSums::~PatternSums() = default;

PatternSums::Sums &PatternSums::sumsOf(ControlSet pattern)
{
    std::unique_ptr<Sums> &sums = sums_[pattern];
    if (!sums) {
        sums = std::make_unique<Sums>(pattern, m_);
        ++patterns_;
    }
    return *sums;
}

// Keeps a column so that products of values as large as this one are in range.
void PatternSums::makeRange(int column, double largest)
{
    if (!(largest > 0))
        return;
    const std::size_t at = std::size_t(column);
    const int exponent = columnScale(largest);
    if (exponent != exponents_[at] && (!known_[at] || exponent > exponents_[at]))
        rescale(column, exponent);
    known_[at] = true;
}

void PatternSums::rescale(int column, int exponent)
{
    const int change = exponents_[std::size_t(column)] - exponent;
    exponents_[std::size_t(column)] = exponent;
    const auto scale = [change](DoubleDouble &value) {
        value = {std::scalbn(value.hi, change), std::scalbn(value.lo, change)};
    };
    for (const std::unique_ptr<Sums> &sums : sums_) {
        if (!sums || !sums->has(column))
            continue;
        const std::size_t at = sums->placeOf(column);
        for (std::size_t i = 0; i < sums->products.size(); ++i) {
            scale(sums->products[i][at]);
            scale(sums->products[at][i]);
        }
    }
}

// The sums of one block, added to those before.
void PatternSums::addBlock(Sums &sums, const double *const *columns, const double *const *low, int rows)
{
    const std::size_t count = sums.source.size();
    std::array<DataColumn, MaxParameters> operands;
    std::array<const double *, MaxParameters> lowParts{};
    std::array<ColumnRange, MaxParameters> ranges;
    std::vector<std::vector<double>> multiples;
    const auto multiple = [&](const double *column, int exponent) {
        std::vector<double> &values = multiples.emplace_back(column, column + rows);
        for (double &value : values)
            value = std::scalbn(value, -exponent);
        return values.data();
    };
    bool exact = true;
    for (std::size_t k = 0; k < count; ++k) {
        ranges[k] = minMax(columns[k], rows);
        operands[k] = {columns[k], ranges[k].largest()};
        if (low[k] != nullptr && !allExact(low[k], rows)) {
            lowParts[k] = low[k];
            exact = false;
        }
        makeRange(sums.source[k], operands[k].largest);
        const int exponent = exponents_[std::size_t(sums.source[k])];
        if (exponent == 0)
            continue;
        operands[k] = {multiple(columns[k], exponent), std::scalbn(operands[k].largest, -exponent)};
        lowParts[k] = lowParts[k] != nullptr ? multiple(lowParts[k], exponent) : nullptr;
    }
    CrossProducts block;
    if (exact) {
        crossProducts(std::span<const DataColumn>(operands.data(), count), rows, block);
    } else {
        std::array<ExtendedColumn, MaxParameters> extended;
        for (std::size_t k = 0; k < count; ++k)
            extended[k] = {operands[k], lowParts[k]};
        crossProducts(std::span<const ExtendedColumn>(extended.data(), count), rows, block);
    }
    addProducts(sums, block, ranges.data());
}

// Adds the products of rows, scaled as the columns are.
void PatternSums::addProducts(Sums &sums, const CrossProducts &products, const ColumnRange *ranges)
{
    const std::size_t count = sums.source.size();
    const bool first = sums.products[0][0] == 0;
    for (std::size_t k = 0; k < count; ++k) {
        ColumnRange &all = sums.ranges[k];
        all = first ? ranges[k] : ColumnRange{std::min(all.min, ranges[k].min), std::max(all.max, ranges[k].max)};
    }
    for (std::size_t i = 0; i <= count; ++i) {
        for (std::size_t j = i; j <= count; ++j) {
            sums.products[i][j] += products[i][j];
            sums.products[j][i] = sums.products[i][j];
        }
    }
}

void PatternSums::addTotals(ControlSet usable, const Totals &totals)
{
    if (totals.rows == 0)
        return;
    Sums &sums = sumsOf(usable);
    addBuffered(sums);
    sums.rows += totals.rows;
    CrossProducts products = totals.products;
    for (std::size_t k = 0; k < sums.source.size(); ++k) {
        makeRange(sums.source[k], totals.ranges[k].largest());
        const int change = totals.exponents[k] - exponents_[std::size_t(sums.source[k])];
        for (std::size_t i = 0; change != 0 && i <= sums.source.size(); ++i) {
            for (DoubleDouble *const value : {&products[i][k + 1], &products[k + 1][i]})
                *value = {std::scalbn(value->hi, change), std::scalbn(value->lo, change)};
        }
    }
    addProducts(sums, products, totals.ranges.data());
}

void PatternSums::addBuffered(Sums &sums)
{
    const std::size_t rows = sums.buffer[0].size();
    if (rows == 0)
        return;
    std::array<const double *, MaxParameters> columns;
    std::array<const double *, MaxParameters> low;
    for (std::size_t k = 0; k < sums.source.size(); ++k) {
        columns[k] = sums.buffer[k].data();
        low[k] = sums.lowBuffer[k].empty() ? nullptr : sums.lowBuffer[k].data();
    }
    addBlock(sums, columns.data(), low.data(), static_cast<int>(rows));
    buffered_ -= rows;
    for (auto *const buffer : {&sums.buffer, &sums.lowBuffer}) {
        for (std::vector<double> &column : *buffer) {
            column.clear();
            if (patterns_ > PatternsWithMemory)
                column.shrink_to_fit();
        }
    }
}

void PatternSums::addFullestBuffer()
{
    Sums *fullest = nullptr;
    for (const std::unique_ptr<Sums> &sums : sums_) {
        if (sums && (!fullest || sums->buffer[0].size() > fullest->buffer[0].size()))
            fullest = sums.get();
    }
    addBuffered(*fullest);
}

// Rows of one pattern. The blocks are those that the rows would make one by one; a whole one is not copied first.
void PatternSums::addRun(Sums &sums, std::span<const double *const> columns, std::span<const double *const> low,
                         std::size_t from, std::size_t to)
{
    sums.rows += static_cast<std::int64_t>(to - from);
    while (from < to) {
        const std::size_t own = sums.buffer[0].size();
        const std::size_t count = std::min({to - from, BlockRows - own, BufferedRows - buffered_});
        std::array<const double *, MaxParameters> rows;
        std::array<const double *, MaxParameters> lowRows{};
        for (std::size_t k = 0; k < sums.source.size(); ++k) {
            const std::size_t source = std::size_t(sums.source[k]);
            rows[k] = columns[source] + from;
            if (source < low.size() && low[source] != nullptr)
                lowRows[k] = low[source] + from;
        }
        from += count;
        if (count == BlockRows) {
            addBlock(sums, rows.data(), lowRows.data(), static_cast<int>(count));
            continue;
        }
        for (std::size_t k = 0; k < sums.source.size(); ++k) {
            sums.buffer[k].insert(sums.buffer[k].end(), rows[k], rows[k] + count);
            if (lowRows[k] != nullptr)
                sums.lowBuffer[k].insert(sums.lowBuffer[k].end(), lowRows[k], lowRows[k] + count);
        }
        buffered_ += count;
        if (own + count == BlockRows)
            addBuffered(sums);
        else if (buffered_ == BufferedRows)
            addFullestBuffer();
    }
}

void PatternSums::add(std::span<const double *const> columns, std::span<const double *const> low,
                      std::span<const std::uint32_t> usable)
{
    const std::uint32_t response = std::uint32_t(1) << m_;
    const std::uint32_t known = 2 * response - 1;
    for (std::size_t from = 0; from < usable.size();) {
        const std::uint32_t bits = usable[from] & known;
        std::size_t to = from + 1;
        while (to < usable.size() && (usable[to] & known) == bits)
            ++to;
        if ((bits & response) != 0)
            addRun(sumsOf(bits & ~response), columns, low, from, to);
        from = to;
    }
}

void PatternSums::merge(PatternSums &&other)
{
    for (const std::unique_ptr<Sums> &sums : other.sums_) {
        if (sums)
            other.addBuffered(*sums);
    }
    for (int column = 0; column <= m_; ++column) {
        const std::size_t at = std::size_t(column);
        if (other.known_[at] && (!known_[at] || exponents_[at] < other.exponents_[at]))
            rescale(column, other.exponents_[at]);
        if (other.exponents_[at] != exponents_[at])
            other.rescale(column, exponents_[at]);
        known_[at] = known_[at] || other.known_[at];
    }
    for (std::size_t pattern = 0; pattern < sums_.size(); ++pattern) {
        std::unique_ptr<Sums> theirs = std::move(other.sums_[pattern]);
        if (!theirs)
            continue;
        if (!sums_[pattern]) {
            sums_[pattern] = std::move(theirs);
            ++patterns_;
            continue;
        }
        Sums &ours = *sums_[pattern];
        addBuffered(ours);
        ours.rows += theirs->rows;
        addProducts(ours, theirs->products, theirs->ranges.data());
    }
    other.patterns_ = 0;
}

std::int64_t PatternSums::count(ControlSet set) const
{
    std::int64_t rows = 0;
    for (std::size_t pattern = 0; pattern < sums_.size(); ++pattern) {
        if (sums_[pattern] && (pattern & set) == set)
            rows += sums_[pattern]->rows;
    }
    return rows;
}

// Calls use() with the sums of each pattern that includes the set, in ascending order, and where the set's controls
// and the response stand in them; all rows are in the sums then.
template <class Use>
void PatternSums::forEachWith(ControlSet set, Use use)
{
    for (std::size_t pattern = 0; pattern < sums_.size(); ++pattern) {
        if (!sums_[pattern] || (pattern & set) != set)
            continue;
        Sums &sums = *sums_[pattern];
        addBuffered(sums);
        std::array<std::size_t, MaxParameters + 1> places{};
        std::size_t count = 1;
        for (ControlSet left = set; left != 0; left &= left - 1)
            places[count++] = sums.placeOf(std::countr_zero(left));
        places[count++] = sums.placeOf(m_);
        use(sums, std::span<const std::size_t>(places.data(), count));
    }
}

CrossProducts PatternSums::products(ControlSet set)
{
    CrossProducts total{};
    forEachWith(set, [&](const Sums &sums, std::span<const std::size_t> places) {
        for (std::size_t i = 0; i < places.size(); ++i)
            for (std::size_t j = 0; j < places.size(); ++j)
                total[i][j] += sums.products[places[i]][places[j]];
    });
    return total;
}

std::vector<PatternSums::Column> PatternSums::columns(ControlSet set)
{
    std::vector<Column> result;
    forEachWith(set, [&](const Sums &sums, std::span<const std::size_t> places) {
        const bool first = result.empty();
        result.resize(places.size() - 1);
        for (std::size_t k = 0; k < result.size(); ++k) {
            const ColumnRange &range = sums.ranges[places[k + 1] - 1];
            result[k].min = first ? range.min : std::min(result[k].min, range.min);
            result[k].max = first ? range.max : std::max(result[k].max, range.max);
        }
    });
    const CrossProducts total = products(set);
    const DoubleDouble n = total[0][0];
    ControlSet left = set;
    for (std::size_t k = 1; k <= result.size(); ++k, left &= left - 1) {
        const int exponent = this->exponent(left == 0 ? m_ : std::countr_zero(left));
        const DoubleDouble mean = total[0][k] / n;
        const DoubleDouble squares = total[k][k] - mean * total[0][k];
        result[k - 1].mean = std::scalbn(mean.hi, exponent);
        // What rounding leaves of equal values is no deviation.
        const bool equal = result[k - 1].min == result[k - 1].max;
        const double deviation = std::sqrt((equal ? 0 : std::max(0.0, squares.hi)) / (n.hi - 1));
        result[k - 1].deviation = std::scalbn(deviation, exponent);
    }
    return result;
}

std::vector<PatternSums::Pattern> PatternSums::patterns() const
{
    std::vector<Pattern> result;
    for (std::size_t pattern = 0; pattern < sums_.size(); ++pattern) {
        if (sums_[pattern])
            result.push_back({static_cast<ControlSet>(pattern), sums_[pattern]->rows});
    }
    return result;
}

} // namespace nuvo
