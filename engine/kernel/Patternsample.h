// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Evensample.h"
#include "engine/kernel/Subsetsums.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace nuvo {

/// A sample for every fit that can be made of some controls and a response, from rows that pass by once: of the rows
/// in which these are usable, drawn as nuvo::EvenSample draws them, one sample for each pattern of usable controls.
/// What a fit of all controls uses, and whatever has room, is kept up to 2500 rows. Where there are many patterns the
/// others are kept in smaller samples, so that all of them together stay below 40 000 rows, 4 MB; the sample of a fit
/// of fewer controls, put together from those that include them, can then be smaller than 2500, and is no less even.
class NUVO_KERNEL_EXPORT PatternSample
{
public:
    /// For m controls, 0 to 10. Bit j of withLow says that column j has low parts, which are kept with the values.
    explicit PatternSample(int controls, std::uint32_t withLow = 0, std::uint64_t seed = 1);
    PatternSample(PatternSample &&) noexcept;
    PatternSample &operator=(PatternSample &&) noexcept;
    ~PatternSample();

    /// Offers rows as PatternSums::add() takes them, the first of them with this ordinal, the next with the next one.
    /// Rows without a usable response are passed over.
    void add(std::span<const double *const> columns, std::span<const std::uint32_t> usable, std::int64_t firstOrdinal)
    {
        add(columns, {}, usable, firstOrdinal);
    }
    void add(std::span<const double *const> columns, std::span<const double *const> low,
             std::span<const std::uint32_t> usable, std::int64_t firstOrdinal);
    /// Takes in what another one has seen.  \pre the same number of controls.
    void merge(const PatternSample &other);
    /// Adds to every ordinal.
    void shift(std::int64_t ordinals);

    /// The sample of a fit of these controls in the order of the ordinals: all the controls' columns and the
    /// response's, of which those of other controls hold anything, and behind them the low parts of those that have
    /// them.
    EvenSample::Rows rows(ControlSet set) const;

private:
    static constexpr std::size_t MostRows = 40000;

    EvenSample &sampleOf(ControlSet pattern);
    void makeRoom();

    int columns() const;

    int m_;
    std::uint32_t withLow_;
    std::uint64_t seed_;
    int capacity_ = MaxObservations;                   ///< but for the pattern of all
    std::vector<std::unique_ptr<EvenSample>> samples_; ///< by pattern
    std::size_t offeredSinceCount_ = 0;
};

} // namespace nuvo
