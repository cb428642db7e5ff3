// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Crossproducts.h"
#include "engine/kernel/Export.h"
#include "engine/kernel/Factors.h"
#include "engine/kernel/Lowparts.h"
#include "engine/kernel/Maxdata.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace nuvo {

class UsableRecords;

/// Where a load puts the observations that it finds.
struct ObservationBuffer
{
    double x[MaxControls][MaxObservations]{}; ///< column j at j - 1
    double y[MaxObservations]{};
    std::int64_t record[MaxObservations]{}; ///< ordinals in the dataset
    /// Low parts (engine/kernel/Lowparts.h): one for each observation, or none where the values are all there is.
    std::vector<double> xLow[MaxControls];
    std::vector<double> yLow;
};

/// A column of observations.
struct ObservedColumn
{
    const double *values = nullptr;
    /// What rounding to doubles left of each value, to be added to it; null where the values are all there is.
    const double *low = nullptr;
    /// 0 to 0 without observations; that of all records where the observations are a sample of more.
    ColumnRange range;
};

/// What a load made of the records: n observations of m control variables and the response, by columns, so that sums
/// run along memory. A value: copies share the numbers, and nobody changes these. Not to be used from several threads
/// at once where it came from a ColumnCache.
class NUVO_KERNEL_EXPORT Observations
{
public:
    /// None, of no control variables.
    Observations();
    /// The first n observations of m columns of a buffer that nobody writes to any more.
    Observations(std::shared_ptr<const ObservationBuffer> buffer, int n, int m);
    /// Of some of a buffer's columns, by their places there from 0, in this order.
    Observations(std::shared_ptr<const ObservationBuffer> buffer, int n, std::span<const int> columns);
    /// At records that are known already, with their ordinals, by the numbers of the columns and, last, of the
    /// response, which were asked for by UsableRecords::column().
    Observations(std::shared_ptr<UsableRecords> records, std::span<const int> numbers);
    /// From columns of equal lengths, 1 to 2500 values; the records are numbered from 1.
    static Observations of(const std::vector<std::vector<double>> &x, const std::vector<double> &y);

    /// Observations.
    int n() const { return n_; }
    /// Control variables.
    int m() const { return m_; }
    /// Column j, 1 to m; further ones, up to 10, are zeros.
    const ObservedColumn &x(int j) const { return x_[std::size_t(j)]; }
    /// The response.
    const ObservedColumn &y() const { return y_; }
    /// The number in the dataset, from 1, skipped records counted, of the record behind observation i, 1 to n.
    std::int64_t record(int i) const { return record_[i - 1]; }

    /// The same of another number of columns: the first ones, or with columns of zeros added.
    Observations ofColumns(int m) const;
    /// These of the columns, by their numbers, ascending.
    Observations only(std::span<const int> columns) const;

    /// The same with other ranges: of columns 1 to m, and of the response.
    Observations withRanges(std::span<const ColumnRange> x, ColumnRange y) const;

    /// The columns in order, the response last, as the sums take them, without and with their low parts.
    std::array<DataColumn, MaxParameters> columns() const;
    std::array<ExtendedColumn, MaxParameters> extendedColumns() const;
    /// Whether any of them has low parts.
    bool hasLowParts() const;
    /// Where cross products of the columns are kept from fit to fit, and their numbers there; null where they are
    /// not.
    UsableRecords *keptProducts() const { return keepsProducts_ ? kept_.get() : nullptr; }
    std::span<const int> numbers() const { return {numbers_.data(), std::size_t(m_) + 1}; }

private:
    int n_ = 0;
    int m_ = 0;
    std::array<ObservedColumn, MaxParameters> x_;
    ObservedColumn y_;
    const std::int64_t *record_;
    std::shared_ptr<const void> owner_;   ///< keeps the numbers
    std::shared_ptr<UsableRecords> kept_; ///< likewise
    bool keepsProducts_ = false;
    std::array<int, MaxParameters> numbers_{};
};

/// The observations as the numerics take them; the pointers hold as long as `observations` does.
NUVO_KERNEL_EXPORT ObservedColumns columnsOf(const Observations &observations);

/// The exponent e of a column that is worked on as its multiple by 2^-e, so that no product leaves the range of
/// doubles: 0, and nothing is done, for a column whose largest value is between 2^-200 and 2^200 or is no number.
NUVO_KERNEL_EXPORT int scaleOf(const ObservedColumn &column);

/// Means and sample standard deviations (divisor n - 1) of the columns, and of the response.
struct Spread
{
    std::array<double, MaxParameters> xBar{}; ///< of column j at j
    std::array<double, MaxParameters> xStdErr{};
    double yBar = 0;
    double yStdErr = 0;
};

/// As nuvo::means() and nuvo::standardDeviations(), to the last bit, but also where squares leave the range. The
/// deviations are taken from the means in `spread`.
NUVO_KERNEL_EXPORT void findMeans(const Observations &observations, Spread &spread);
/// The deviations; the means have been found.
NUVO_KERNEL_EXPORT void findDeviations(const Observations &observations, Spread &spread);

/// b(0) + b(1) x(i, 1) + ... + b(m) x(i, m), added in this order, for every observation.
NUVO_KERNEL_EXPORT void findFitted(const Observations &observations, const std::array<double, MaxParameters> &b,
                                   double *fitted);

} // namespace nuvo
