// SPDX-License-Identifier: MIT
#include "engine/Observations.h"

#include "engine/kernel/Columnscale.h"
#include "engine/kernel/Usablerecords.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuvo {

namespace {

constexpr double zeros[MaxObservations] = {};

ObservedColumn observed(const double *values, const std::vector<double> &low, int n)
{
    const bool exact = low.empty() || allExact(low.data(), n);
    return {values, exact ? nullptr : low.data(), n > 0 ? minMax(values, n) : ColumnRange()};
}

/// A column times 2^-exponent.
std::vector<double> scaled(const double *values, int n, int exponent)
{
    std::vector<double> result(static_cast<std::size_t>(n));
    std::transform(values, values + n, result.begin(), [&](double value) { return std::scalbn(value, -exponent); });
    return result;
}

using Pointers = std::array<const double *, MaxParameters>;

/// The columns in order, the response last.
Pointers pointersTo(const Observations &observations)
{
    Pointers pointers{};
    for (int j = 1; j <= observations.m(); ++j)
        pointers[std::size_t(j - 1)] = observations.x(j).values;
    pointers[std::size_t(observations.m())] = observations.y().values;
    return pointers;
}

} // namespace

Observations::Observations() : y_{zeros, nullptr, {}}, record_(nullptr)
{
    x_.fill({zeros, nullptr, {}});
}

Observations::Observations(std::shared_ptr<const ObservationBuffer> buffer, int n, int m) : Observations()
{
    n_ = n;
    m_ = m;
    for (int j = 1; j <= m; ++j)
        x_[std::size_t(j)] = observed(buffer->x[j - 1], buffer->xLow[j - 1], n);
    y_ = observed(buffer->y, buffer->yLow, n);
    record_ = buffer->record;
    owner_ = std::move(buffer);
}

Observations::Observations(std::shared_ptr<const ObservationBuffer> buffer, int n, std::span<const int> columns)
    : Observations()
{
    n_ = n;
    m_ = int(columns.size());
    for (std::size_t j = 0; j < columns.size(); ++j)
        x_[j + 1] = observed(buffer->x[columns[j]], buffer->xLow[columns[j]], n);
    y_ = observed(buffer->y, buffer->yLow, n);
    record_ = buffer->record;
    owner_ = std::move(buffer);
}

Observations::Observations(std::shared_ptr<UsableRecords> records, std::span<const int> numbers) : Observations()
{
    n_ = records->count();
    m_ = int(numbers.size()) - 1;
    if (n_ == 0)
        return;
    record_ = records->ordinals().data();
    std::copy(numbers.begin(), numbers.end(), numbers_.begin());
    for (std::size_t j = 0; j < numbers.size(); ++j) {
        const UsableRecords::View view = records->column(numbers[j]);
        ObservedColumn &column = j + 1 < numbers.size() ? x_[j + 1] : y_;
        column = {view.values, view.low, *view.range};
    }
    kept_ = std::move(records);
    keepsProducts_ = true;
}

Observations Observations::of(const std::vector<std::vector<double>> &x, const std::vector<double> &y)
{
    auto buffer = std::make_shared<ObservationBuffer>();
    for (std::size_t j = 0; j < x.size(); ++j)
        std::copy(x[j].begin(), x[j].end(), buffer->x[j]);
    std::copy(y.begin(), y.end(), buffer->y);
    for (std::size_t i = 0; i < y.size(); ++i)
        buffer->record[i] = std::int64_t(i) + 1;
    return {std::move(buffer), int(y.size()), int(x.size())};
}

Observations Observations::ofColumns(int m) const
{
    Observations result = *this;
    if (m == m_)
        return result;
    for (int j = m + 1; j <= m_; ++j)
        result.x_[std::size_t(j)] = {zeros, nullptr, {}};
    result.m_ = m;
    result.keepsProducts_ = false;
    return result;
}

Observations Observations::only(std::span<const int> columns) const
{
    Observations result = *this;
    result.m_ = int(columns.size());
    result.numbers_[columns.size()] = numbers_[std::size_t(m_)];
    for (std::size_t j = 0; j < std::size_t(m_); ++j) {
        const bool kept = j < columns.size();
        result.x_[j + 1] = kept ? x_[std::size_t(columns[j])] : ObservedColumn{zeros, nullptr, {}};
        if (kept)
            result.numbers_[j] = numbers_[std::size_t(columns[j]) - 1];
    }
    return result;
}

Observations Observations::withRanges(std::span<const ColumnRange> x, ColumnRange y) const
{
    Observations result = *this;
    for (std::size_t j = 0; j < std::size_t(m_); ++j)
        result.x_[j + 1].range = x[j];
    result.y_.range = y;
    return result;
}

std::array<DataColumn, MaxParameters> Observations::columns() const
{
    std::array<DataColumn, MaxParameters> result;
    for (int j = 1; j <= m_; ++j)
        result[std::size_t(j - 1)] = {x(j).values, x(j).range.largest()};
    result[std::size_t(m_)] = {y_.values, y_.range.largest()};
    return result;
}

std::array<ExtendedColumn, MaxParameters> Observations::extendedColumns() const
{
    const std::array<DataColumn, MaxParameters> rounded = columns();
    std::array<ExtendedColumn, MaxParameters> result;
    for (int j = 1; j <= m_; ++j)
        result[std::size_t(j - 1)] = {rounded[std::size_t(j - 1)], x(j).low};
    result[std::size_t(m_)] = {rounded[std::size_t(m_)], y_.low};
    return result;
}

bool Observations::hasLowParts() const
{
    return y_.low || std::any_of(x_.begin(), x_.end(), [](const ObservedColumn &column) { return column.low; });
}

ObservedColumns columnsOf(const Observations &observations)
{
    ObservedColumns columns;
    columns.n = observations.n();
    columns.m = observations.m();
    for (int j = 1; j <= columns.m; ++j) {
        columns.x[std::size_t(j)] = observations.x(j).values;
        columns.xLow[std::size_t(j)] = observations.x(j).low;
    }
    columns.y = observations.y().values;
    columns.yLow = observations.y().low;
    return columns;
}

int scaleOf(const ObservedColumn &column)
{
    return columnScale(column.range.largest());
}

void findMeans(const Observations &observations, Spread &spread)
{
    const std::size_t count = std::size_t(observations.m()) + 1;
    const Pointers columns = pointersTo(observations);
    double result[MaxParameters];
    means({columns.data(), count}, observations.n(), result);
    for (std::size_t j = 0; j < count; ++j) {
        const ObservedColumn &column = j + 1 < count ? observations.x(int(j) + 1) : observations.y();
        if (const int exponent = scaleOf(column)) {
            const std::vector<double> values = scaled(column.values, observations.n(), exponent);
            const double *const pointer = values.data();
            means({&pointer, 1}, observations.n(), &result[j]);
            result[j] = std::scalbn(result[j], exponent);
        }
    }
    std::copy_n(result, count - 1, spread.xBar.begin() + 1);
    spread.yBar = result[count - 1];
}

void findDeviations(const Observations &observations, Spread &spread)
{
    const std::size_t count = std::size_t(observations.m()) + 1;
    const Pointers columns = pointersTo(observations);
    double mean[MaxParameters];
    std::copy_n(spread.xBar.begin() + 1, count - 1, mean);
    mean[count - 1] = spread.yBar;
    double result[MaxParameters];
    standardDeviations({columns.data(), count}, mean, observations.n(), result);
    for (std::size_t j = 0; j < count; ++j) {
        const ObservedColumn &column = j + 1 < count ? observations.x(int(j) + 1) : observations.y();
        if (const int exponent = scaleOf(column)) {
            const std::vector<double> values = scaled(column.values, observations.n(), exponent);
            const double *const pointer = values.data();
            const double centre = std::scalbn(mean[j], -exponent);
            standardDeviations({&pointer, 1}, &centre, observations.n(), &result[j]);
            result[j] = std::scalbn(result[j], exponent);
        }
    }
    std::copy_n(result, count - 1, spread.xStdErr.begin() + 1);
    spread.yStdErr = result[count - 1];
}

void findFitted(const Observations &observations, const std::array<double, MaxParameters> &b, double *fitted)
{
    const int n = observations.n();
    std::fill_n(fitted, n, b[0]);
    for (int j = 1; j <= observations.m(); ++j) {
        const double *const x = observations.x(j).values;
        const double slope = b[std::size_t(j)];
        for (int i = 0; i < n; ++i)
            fitted[i] += slope * x[i];
    }
}

} // namespace nuvo
