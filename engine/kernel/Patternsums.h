// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Subsetsums.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace nuvo {

/// The sums behind every fit that can be made of some controls and a response, from any number of rows read once.
///
/// A fit uses the rows in which the response and its own controls are usable. So sums of products are kept for each
/// pattern of usable controls that occurs, of the controls usable in it, and those of a fit are added up from the
/// patterns that include its controls. Rows without a usable response are in no fit and are passed over.
///
/// Rows of a pattern are gathered into blocks of 1024 (fewer where there are more than 32 patterns), a block's sums
/// are those of nuvo::crossProducts() with the block's own largest values, and blocks are added in double-double. The
/// error of a sum of products of n rows in B blocks is below (2^-91 + B 2^-104) n |a| |b| with the largest |a| and
/// |b|: up to ten million rows, what a sum over 2500 is good to; on ordinary data 2^-98. Nothing is shifted:
/// deviations of 1 around 1e8 keep 13 digits and more. Sums depend on the order of the rows, not on the portions they
/// come in. A column with values out of the ordinary is kept as its multiple by a power of two, 2^-exponent, so that
/// its products stay within the range of doubles; see nuvo::columnScale().
///
/// Memory: 3 KB for each pattern, 2^10 at most, and at most 7 MB, 14 MB with low parts, for rows that wait for their
/// block.
class NUVO_KERNEL_EXPORT PatternSums
{
public:
    /// For m controls, 0 to 10.
    explicit PatternSums(int controls);
    PatternSums(PatternSums &&) noexcept;
    PatternSums &operator=(PatternSums &&) noexcept;
    ~PatternSums();

    int controls() const { return m_; }

    /// Adds rows: columns[j] holds the values of control j + 1, the last one those of the response; in usable[i] bit
    /// j stands for columns[j]. A value that is not usable is not looked at; one that is has to be finite.
    void add(std::span<const double *const> columns, std::span<const std::uint32_t> usable)
    {
        add(columns, {}, usable);
    }
    /// The same with the columns' low parts (engine/kernel/Lowparts.h): null for a column without, the same columns
    /// at every call.
    void add(std::span<const double *const> columns, std::span<const double *const> low,
             std::span<const std::uint32_t> usable);

    /// What is known of rows of a pattern that somebody else has added up.
    struct Totals
    {
        std::int64_t rows = 0;
        /// Of the constant, the pattern's controls in ascending order and the response.
        CrossProducts products{};
        std::vector<ColumnRange> ranges; ///< of these controls and the response
        /// Of these controls and the response: the products are those of the columns' multiples by 2^-exponent.
        std::array<int, MaxParameters> exponents{};
    };
    /// Adds rows of one pattern, all with a usable response.
    void addTotals(ControlSet usable, const Totals &totals);

    /// Adds what another one has seen, which is left empty. Which of the two is added to which makes no difference.
    /// \pre the same number of controls.
    void merge(PatternSums &&other);

    /// How many rows a fit of these controls has.
    std::int64_t count(ControlSet set) const;

    /// The sums for such a fit: of the constant, the set's controls in ascending order and the response; the rest is
    /// 0. A column with another exponent than 0 is its multiple there.
    CrossProducts products(ControlSet set);
    /// Of control j + 1, or of the response at m; may change with every row added.
    int exponent(int j) const { return exponents_[std::size_t(j)]; }

    /// What is known of a column without its values.
    struct Column
    {
        double min = 0;
        double max = 0;
        double mean = 0;
        double deviation = 0; ///< with n - 1; a NaN for one row
    };
    /// Of the set's controls in ascending order and the response, over the rows of such a fit; mean and deviation
    /// from the sums, rounded last. Empty when there is no row.
    std::vector<Column> columns(ControlSet set);

    /// The patterns that occur, with their numbers of rows, in ascending order.
    struct Pattern
    {
        ControlSet usable;
        std::int64_t rows;
    };
    std::vector<Pattern> patterns() const;

private:
    struct Sums;

    Sums &sumsOf(ControlSet pattern);
    void addBlock(Sums &sums, const double *const *columns, const double *const *low, int rows);
    void addProducts(Sums &sums, const CrossProducts &products, const ColumnRange *ranges);
    void makeRange(int column, double largest);
    void rescale(int column, int exponent);
    void addBuffered(Sums &sums);
    void addFullestBuffer();
    void addRun(Sums &sums, std::span<const double *const> columns, std::span<const double *const> low,
                std::size_t from, std::size_t to);
    template <class Use>
    void forEachWith(ControlSet set, Use use);

    int m_;
    std::array<int, MaxParameters> exponents_{};
    std::array<bool, MaxParameters> known_{}; ///< whether a value other than 0 was among the column's
    std::vector<std::unique_ptr<Sums>> sums_; ///< by pattern
    int patterns_ = 0;
    std::size_t buffered_ = 0; ///< rows in all buffers
};

} // namespace nuvo
