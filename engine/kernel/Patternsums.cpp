#include "engine/kernel/Patternsums.h"

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
    }

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

// The sums of one block, added to those before.
void PatternSums::addBlock(Sums &sums, const double *const *columns, int rows)
{
    const std::size_t count = sums.source.size();
    std::array<DataColumn, MaxParameters> operands;
    const bool first = sums.products[0][0] == 0;
    for (std::size_t k = 0; k < count; ++k) {
        const ColumnRange range = minMax(columns[k], rows);
        ColumnRange &all = sums.ranges[k];
        all = first ? range : ColumnRange{std::min(all.min, range.min), std::max(all.max, range.max)};
        operands[k] = {columns[k], range.largest()};
    }
    CrossProducts block;
    crossProducts(std::span<const DataColumn>(operands.data(), count), rows, block);
    for (std::size_t i = 0; i <= count; ++i) {
        for (std::size_t j = i; j <= count; ++j) {
            sums.products[i][j] += block[i][j];
            sums.products[j][i] = sums.products[i][j];
        }
    }
}

void PatternSums::addBuffered(Sums &sums)
{
    const std::size_t rows = sums.buffer[0].size();
    if (rows == 0)
        return;
    std::array<const double *, MaxParameters> columns;
    for (std::size_t k = 0; k < sums.source.size(); ++k)
        columns[k] = sums.buffer[k].data();
    addBlock(sums, columns.data(), static_cast<int>(rows));
    buffered_ -= rows;
    for (std::vector<double> &column : sums.buffer) {
        column.clear();
        if (patterns_ > PatternsWithMemory)
            column.shrink_to_fit();
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
void PatternSums::addRun(Sums &sums, std::span<const double *const> columns, std::size_t from, std::size_t to)
{
    sums.rows += static_cast<std::int64_t>(to - from);
    while (from < to) {
        const std::size_t own = sums.buffer[0].size();
        const std::size_t count = std::min({to - from, BlockRows - own, BufferedRows - buffered_});
        std::array<const double *, MaxParameters> rows;
        for (std::size_t k = 0; k < sums.source.size(); ++k)
            rows[k] = columns[std::size_t(sums.source[k])] + from;
        from += count;
        if (count == BlockRows) {
            addBlock(sums, rows.data(), static_cast<int>(count));
            continue;
        }
        for (std::size_t k = 0; k < sums.source.size(); ++k)
            sums.buffer[k].insert(sums.buffer[k].end(), rows[k], rows[k] + count);
        buffered_ += count;
        if (own + count == BlockRows)
            addBuffered(sums);
        else if (buffered_ == BufferedRows)
            addFullestBuffer();
    }
}

void PatternSums::add(std::span<const double *const> columns, std::span<const std::uint32_t> usable)
{
    const std::uint32_t response = std::uint32_t(1) << m_;
    const std::uint32_t known = 2 * response - 1;
    for (std::size_t from = 0; from < usable.size();) {
        const std::uint32_t bits = usable[from] & known;
        std::size_t to = from + 1;
        while (to < usable.size() && (usable[to] & known) == bits)
            ++to;
        if ((bits & response) != 0)
            addRun(sumsOf(bits & ~response), columns, from, to);
        from = to;
    }
}

void PatternSums::merge(PatternSums &&other)
{
    for (std::size_t pattern = 0; pattern < sums_.size(); ++pattern) {
        std::unique_ptr<Sums> theirs = std::move(other.sums_[pattern]);
        if (!theirs)
            continue;
        other.addBuffered(*theirs);
        if (!sums_[pattern]) {
            sums_[pattern] = std::move(theirs);
            ++patterns_;
            continue;
        }
        Sums &ours = *sums_[pattern];
        addBuffered(ours);
        ours.rows += theirs->rows;
        for (std::size_t k = 0; k < ours.ranges.size(); ++k) {
            ours.ranges[k].min = std::min(ours.ranges[k].min, theirs->ranges[k].min);
            ours.ranges[k].max = std::max(ours.ranges[k].max, theirs->ranges[k].max);
        }
        for (std::size_t i = 0; i < ours.products.size(); ++i)
            for (std::size_t j = 0; j < ours.products.size(); ++j)
                ours.products[i][j] += theirs->products[i][j];
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
    for (std::size_t k = 1; k <= result.size(); ++k) {
        const DoubleDouble mean = total[0][k] / n;
        const DoubleDouble squares = total[k][k] - mean * total[0][k];
        result[k - 1].mean = mean.hi;
        // What rounding leaves of equal values is no deviation.
        const bool equal = result[k - 1].min == result[k - 1].max;
        result[k - 1].deviation = std::sqrt((equal ? 0 : std::max(0.0, squares.hi)) / (n.hi - 1));
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
