// SPDX-License-Identifier: MIT
#include "engine/kernel/Patternsample.h"

#include <bit>

namespace nuvo {

PatternSample::PatternSample(int controls, std::uint32_t withLow, std::uint64_t seed)
    : m_(controls), withLow_(withLow), seed_(seed), samples_(std::size_t(1) << controls)
{
}

PatternSample::PatternSample(PatternSample &&) noexcept = default;
PatternSample &PatternSample::operator=(PatternSample &&) noexcept = default;
PatternSample::~PatternSample() = default;

int PatternSample::columns() const
{
    return m_ + 1 + std::popcount(withLow_);
}

EvenSample &PatternSample::sampleOf(ControlSet pattern)
{
    std::unique_ptr<EvenSample> &sample = samples_[pattern];
    if (!sample) {
        const bool all = pattern + 1 == samples_.size();
        sample = std::make_unique<EvenSample>(columns(), all ? MaxObservations : capacity_, seed_);
    }
    return *sample;
}

void PatternSample::add(std::span<const double *const> columns, std::span<const double *const> low,
                        std::span<const std::uint32_t> usable, std::int64_t firstOrdinal)
{
    std::vector<const double *> all(columns.begin(), columns.end());
    for (std::uint32_t left = withLow_; left != 0; left &= left - 1)
        all.push_back(low[std::size_t(std::countr_zero(left))]);
    const std::uint32_t response = std::uint32_t(1) << m_;
    for (std::size_t row = 0; row < usable.size(); ++row) {
        if ((usable[row] & response) != 0)
            sampleOf(usable[row] & (response - 1)).add(all, row, firstOrdinal + std::int64_t(row));
    }
    offeredSinceCount_ += usable.size();
    if (offeredSinceCount_ >= MaxObservations)
        makeRoom();
}

// Halves the room of all patterns but that of all controls, until they keep to what is allowed.
void PatternSample::makeRoom()
{
    offeredSinceCount_ = 0;
    const auto kept = [this] {
        std::size_t rows = 0;
        for (const std::unique_ptr<EvenSample> &sample : samples_)
            rows += sample ? std::size_t(sample->size()) : 0;
        return rows;
    };
    while (kept() > MostRows && capacity_ > 1) {
        capacity_ /= 2;
        for (std::size_t pattern = 0; pattern + 1 < samples_.size(); ++pattern) {
            if (samples_[pattern])
                samples_[pattern]->shrink(capacity_);
        }
    }
}

void PatternSample::merge(const PatternSample &other)
{
    for (std::size_t pattern = 0; pattern < samples_.size(); ++pattern) {
        if (other.samples_[pattern])
            sampleOf(ControlSet(pattern)).merge(*other.samples_[pattern]);
    }
    makeRoom();
}

void PatternSample::shift(std::int64_t ordinals)
{
    for (const std::unique_ptr<EvenSample> &sample : samples_) {
        if (sample)
            sample->shift(ordinals);
    }
}

EvenSample::Rows PatternSample::rows(ControlSet set) const
{
    EvenSample together(columns(), MaxObservations, seed_);
    for (std::size_t pattern = 0; pattern < samples_.size(); ++pattern) {
        if (samples_[pattern] && (pattern & set) == set)
            together.merge(*samples_[pattern]);
    }
    return together.sorted();
}

} // namespace nuvo
