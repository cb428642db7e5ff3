// SPDX-License-Identifier: MIT
#include "engine/Serversums.h"

#include "engine/Serversource.h"
#include "platform/Errors.h"
#include "platform/Serversession.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <utility>

namespace nuvo {

namespace {

using Row = std::vector<double>;

/// Records of one pattern.
struct PatternRecords
{
    std::int64_t rows = 0;
    std::vector<ColumnRange> ranges; ///< by term
    std::vector<double> sums;        ///< likewise
    CrossProducts shifted{};         ///< of the columns of the sums, where they are usable
    std::int64_t added = 0;          ///< rows behind these
};

ColumnRange joined(const ColumnRange &a, const ColumnRange &b)
{
    return {std::min(a.min, b.min), std::max(a.max, b.max)};
}

/// Where the values of a term lie, of the records that the response can use.
struct TermRecords
{
    double count = 0; ///< that it can use
    ColumnRange range;
    bool always = true; ///< whether every record can use it
    // Of the pattern that counts most: what every term can use is in every fit; else the one with the most records.
    bool inEveryFit = false;
    double mostCount = 0;
    double mostMean = 0;
    ColumnRange mostRange;

    void add(double records, double sum, ColumnRange of, bool complete)
    {
        range = count == 0 ? of : joined(range, of);
        count += records;
        if (complete == inEveryFit ? records <= mostCount : inEveryFit)
            return;
        inEveryFit = complete;
        mostCount = records;
        mostMean = sum / records;
        mostRange = of;
    }
};

} // namespace

class ServerReader::Private
{
public:
    explicit Private(RecordRequest what) : request(std::move(what)), m(int(request.columns.size())) {}

    RecordSums read();

    const RecordRequest request;
    const int m;
    ServerSession session;
    std::atomic<qint64> sampled{0};
    std::atomic<double> done{0};
    std::vector<qint64> received;

private:
    const QString &caption() const { return source_.caption; }
    void describe();
    std::vector<Row> rows(const QString &sql, qint64 most = -1);
    [[noreturn]] void failAtPart(const EDatabaseError &error);
    void readCounts(RecordSums &result);
    void chooseColumns();
    void readProducts();
    void correct();
    bool takeResidualsOf(const Combination &combination, PatternRecords &all);
    void addTo(PatternSums &sums) const;
    void readSample(RecordSums &result);
    void readSample(RecordSums &result, bool partly, int most);
    ControlSet everyTerm() const { return (ControlSet(2) << m) - 1; }

    ServerRecords source_;
    std::unique_ptr<ServerStatements> statements_;
    std::map<ControlSet, PatternRecords> patterns_; ///< with the response's bit
    std::vector<TermRecords> terms_;
    std::vector<ServerStatements::Column> used_; ///< the columns of the sums
};

void ServerReader::Private::describe()
{
    source_ = ServerRecords::of(session.connection(), request.source);
    const SqlNumbers sql(session.connection().dialect());
    const SqlFields fields = [&](const QString &name) { return source_.field(name, sql); };
    std::vector<SqlTerm> terms;
    for (const TIndepVar &column : request.columns)
        terms.push_back(sqlTerm(column, sql, fields));
    terms.push_back(sqlTerm(request.response, sql, fields));
    statements_ =
        std::make_unique<ServerStatements>(std::move(terms), source_.whole, source_.parts, source_.condition, sql);
}

std::vector<Row> ServerReader::Private::rows(const QString &sql, qint64 most)
{
    try {
        std::vector<Row> result = session.rows(sql, source_.values, caption(), most);
        received.push_back(qint64(result.size()));
        return result;
    } catch (const EDatabaseError &error) {
        if (session.cancelled() || source_.parts.empty() || session.isLost())
            throw;
        failAtPart(error);
    }
}

/// Which part of the table it was.
void ServerReader::Private::failAtPart(const EDatabaseError &error)
{
    for (const ServerSource &part : statements_->sources()) {
        const QString why = session.whyNot(statements_->probe(part));
        if (!why.isEmpty())
            throw EDatabaseError(QStringLiteral("Cannot read %1: its %2: %3.").arg(caption(), part.caption, why));
    }
    throw error;
}

void ServerReader::Private::readCounts(RecordSums &result)
{
    const ControlSet response = ControlSet(1) << m;
    std::vector<std::int64_t> lacking(size_t(m) + 1);
    std::vector<std::int64_t> unusable(size_t(m) + 1);
    terms_.resize(size_t(m) + 1);
    result.total = 0;
    for (const Row &row : rows(statements_->counts())) {
        *result.total += std::int64_t(row[1]);
        const auto pattern = ControlSet(row[0]);
        const double count = row[1];
        PatternRecords &records = patterns_[pattern];
        const bool first = records.rows == 0;
        records.rows += std::int64_t(count);
        records.ranges.resize(terms_.size());
        records.sums.resize(terms_.size());
        for (size_t term = 0; term < terms_.size(); ++term) {
            const double *const of = &row[ServerStatements::kCountsBefore + term * ServerStatements::kCountsPerTerm];
            if ((pattern >> term & 1) == 0) {
                // Where nothing else can be wrong with it, something is lacking.
                lacking[term] += std::int64_t(std::isnan(of[3]) ? count : of[3]);
                unusable[term] += std::int64_t(count);
                terms_[term].always = false;
                continue;
            }
            const ColumnRange range{of[1], of[2]};
            records.ranges[term] = first ? range : joined(records.ranges[term], range);
            records.sums[term] += of[0];
        }
    }
    for (const auto &[pattern, records] : patterns_) {
        for (size_t term = 0; term < terms_.size() && (pattern & response) != 0; ++term) {
            if ((pattern >> term & 1) != 0)
                terms_[term].add(double(records.rows), records.sums[term], records.ranges[term],
                                 pattern == everyTerm());
        }
    }
    for (size_t k = 0; k <= size_t(m); ++k) {
        const size_t term = k == 0 ? size_t(m) : k - 1;
        LeftOut &left = result.leftOut.emplace_back();
        left.null = lacking[term];
        left.invalid = unusable[term] - lacking[term];
    }
}

/// The columns of the sums: the terms that are usable anywhere beside the response.
void ServerReader::Private::chooseColumns()
{
    // Where a subquery is not worked out once, every product has its columns shifted anew.
    const std::vector<ServerSource> &sources = statements_->sources();
    const bool nested =
        std::all_of(sources.begin(), sources.end(), [](const ServerSource &source) { return source.nested; });
    for (size_t term = 0; term < terms_.size(); ++term) {
        const TermRecords &records = terms_[term];
        if (records.count == 0)
            continue;
        if (!std::isfinite(records.mostMean) || !std::isfinite(records.range.largest()))
            throw EDatabaseError(QStringLiteral("The sums over %1 leave the range of numbers.").arg(caption()));
        const bool asItIs = !nested && ColumnShift::isDispensable(records.mostMean, records.mostRange, records.range,
                                                                  statements_->terms()[term].whole);
        used_.push_back({int(term),
                         asItIs ? ColumnShift() : ColumnShift::of(records.mostMean, records.mostRange, records.range),
                         records.always});
    }
}

void ServerReader::Private::readProducts()
{
    const ControlSet response = ControlSet(1) << m;
    ControlSet always = response;
    for (const ServerStatements::Column &column : used_)
        always |= column.always ? ControlSet(1) << column.term : 0;
    const size_t count = used_.size();
    for (const Row &row : rows(statements_->products(used_))) {
        PatternRecords &records = patterns_[ControlSet(row[0]) | always];
        if (row[1] == 0)
            continue; // nothing at all
        records.added += std::int64_t(row[1]);
        records.shifted[0][0] += row[1];
        size_t at = 2 + count;
        for (size_t i = 1; i <= count; ++i) {
            records.shifted[0][i] += row[1 + i];
            records.shifted[i][0] = records.shifted[0][i];
            for (size_t j = i; j <= count; ++j) {
                records.shifted[i][j] += row[at++];
                records.shifted[j][i] = records.shifted[i][j];
            }
        }
    }
    for (const auto &[pattern, records] : patterns_) {
        if ((pattern & response) != 0 && records.added != records.rows)
            throw EDatabaseError(
                QStringLiteral("The records of %1 changed while they were added up.").arg(caption()));
    }
}

/// Of the records that every term can use.
void ServerReader::Private::correct()
{
    const auto found = patterns_.find(everyTerm());
    if (found == patterns_.end() || found->second.rows == 0)
        return;
    PatternRecords &all = found->second;
    for (Combination near = nearlyDependent(all.shifted, m, 1); near.column != 0;
         near = nearlyDependent(all.shifted, m, near.column + 1))
        takeResidualsOf(near, all);
    takeResidualsOf(firstSolution(all.shifted, m), all);
}

bool ServerReader::Private::takeResidualsOf(const Combination &combination, PatternRecords &all)
{
    std::vector<DoubleDouble> residuals(used_.size() + 1);
    double count = 0;
    for (const Row &row : rows(statements_->residuals(used_, combination))) {
        if (row[0] == 0)
            continue;
        count += row[0];
        for (size_t j = 0; j < residuals.size(); ++j)
            residuals[j] += row[1 + j];
    }
    if (count != double(all.rows))
        throw EDatabaseError(QStringLiteral("The records of %1 changed while they were added up.").arg(caption()));
    takeResiduals(all.shifted, m, combination, residuals);
    return true;
}

void ServerReader::Private::addTo(PatternSums &sums) const
{
    const ControlSet response = ControlSet(1) << m;
    for (const auto &[pattern, records] : patterns_) {
        if ((pattern & response) == 0)
            continue;
        std::vector<ColumnShift> shifts;
        std::vector<size_t> places{0};
        PatternSums::Totals totals;
        totals.rows = records.rows;
        for (size_t i = 0; i < used_.size(); ++i) {
            const int term = used_[i].term;
            if ((pattern >> term & 1) == 0)
                continue;
            totals.exponents[shifts.size()] = used_[i].shift.exponent;
            shifts.push_back(used_[i].shift);
            places.push_back(i + 1);
            totals.ranges.push_back(records.ranges[size_t(term)]);
        }
        CrossProducts shifted{};
        for (size_t i = 0; i < places.size(); ++i)
            for (size_t j = 0; j < places.size(); ++j)
                shifted[i][j] = records.shifted[places[i]][places[j]];
        totals.products = unshifted(shifted, shifts);
        sums.addTotals(pattern & ~response, totals);
    }
}

void ServerReader::Private::readSample(RecordSums &result)
{
    const ControlSet response = ControlSet(1) << m;
    std::int64_t all = 0;
    std::int64_t partly = 0;
    for (const auto &[pattern, records] : patterns_) {
        if ((pattern & response) != 0)
            (pattern == everyTerm() ? all : partly) += records.rows;
    }
    if (all > 0)
        readSample(result, false, MaxObservations);
    // A fit of fewer terms has more records to choose from; they are of use where the others do not fill the sample.
    if (partly > 0 && result.read < MaxObservations)
        readSample(result, true, MaxObservations);
}

void ServerReader::Private::readSample(RecordSums &result, bool partly, int most)
{
    std::vector<std::vector<double>> columns(size_t(m) + 1);
    std::vector<std::uint32_t> usable;
    for (const Row &row : rows(statements_->sample(most, partly), most)) {
        usable.push_back(std::uint32_t(row[0]));
        for (size_t term = 0; term < columns.size(); ++term)
            columns[term].push_back(row[1 + term]);
    }
    std::vector<const double *> values;
    values.reserve(columns.size());
    for (const std::vector<double> &column : columns)
        values.push_back(column.data());
    result.sample.add(values, usable, result.read + 1);
    result.read += std::int64_t(usable.size());
    sampled = result.read;
}

RecordSums ServerReader::Private::read()
{
    RecordSums result(m);
    session.open(request.source.databaseName);
    describe();
    readCounts(result);
    done = 0.3;
    chooseColumns();
    if (!used_.empty()) {
        readProducts();
        done = 0.65;
        correct();
        done = 0.95;
        addTo(result.sums);
        readSample(result);
    }
    done = 1;
    return result;
}

ServerReader::ServerReader(RecordRequest request) : d_(std::make_unique<Private>(std::move(request))) {}

ServerReader::~ServerReader() = default;

std::optional<RecordSums> ServerReader::read()
{
    try {
        RecordSums result = d_->read();
        d_->session.close();
        if (!d_->session.cancelled())
            return result;
    } catch (const EPlatformError &) {
        d_->session.close();
        if (!d_->session.cancelled())
            throw;
    }
    return {};
}

void ServerReader::cancel()
{
    d_->session.cancel();
}

qint64 ServerReader::records() const
{
    return d_->sampled;
}

double ServerReader::share() const
{
    return d_->done;
}

const std::vector<qint64> &ServerReader::rowsReceived() const
{
    return d_->received;
}

bool addsUp(const QString &databaseName)
{
    Connection connection;
    connection.openBeside(databaseName);
    return connection.dialect() != Dialect::Sqlite;
}

} // namespace nuvo
