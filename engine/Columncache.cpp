// SPDX-License-Identifier: MIT
#include "engine/Columncache.h"

#include "engine/Termreader.h"
#include "engine/kernel/Usablerecords.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

namespace nuvo {

namespace {

constexpr int MaxRecords = 32768;
constexpr int MaxTerms = UsableRecords::MaxColumns - 1;
constexpr std::size_t MaxSets = 32;
constexpr std::size_t MaxCombinations = 4096;

using Bits = std::vector<std::uint64_t>;

/// \pre `at` was the last one, or is the one behind it.
void setBit(Bits &bits, int at, bool value)
{
    if (std::size_t(at / 64) == bits.size())
        bits.push_back(0);
    bits[std::size_t(at / 64)] |= std::uint64_t(value) << (at % 64);
}

/// The same strings; those in which terms usually differ first.
bool sameDefinition(const QStringList &a, const QStringList &b)
{
    if (a.isSharedWith(b))
        return true;
    return a.size() == b.size() && (a.size() < 3 || a[2] == b[2]) && a == b;
}

} // namespace

/// A record is kept when the response accepts it: no others can become observations. Of a term is known which of
/// these it accepts and what it makes of them, up to the first record at which it raises. Numbers of terms and of
/// their columns count from 1; 0 is the response.
class ColumnCache::Private
{
public:
    Private(TDataSet &source, std::span<const TIndepVar> terms) : dataset(source)
    {
        for (const TIndepVar &definition : terms) {
            if (definition.Transformation() != u"Undefined")
                termFor(definition);
        }
    }

    std::optional<LoadedRecords> load(const ModelDefinitions &definitions);
    void put(LoadedRecords &&loaded) { put_ = std::move(loaded); }
    void standBehind();
    void forgetPlace() { lastWalked_ = -1; }

private:
    struct Term
    {
        explicit Term(const TIndepVar &source) { definition.Assign(source); }

        TIndepVar definition;
        std::optional<TermReader> reader;
        Bits valid;                 ///< of the records kept
        std::vector<double> values; ///< of the records kept
        std::vector<double> low;    ///< of the values, where these have low parts
        bool hasLow = false;        ///< the values have low parts
        bool acceptsAll = true;
        bool raised = false; ///< and so nothing is known of further records
    };

    int termFor(const TIndepVar &definition);
    void forget();
    bool isCurrent(const TDependentVar &response) const;
    bool begin(const TDependentVar &response);
    void goOn();
    void readRecord();
    void readTerm(Term &term, bool kept);
    const Term &term(int number) const { return *terms_[std::size_t(number) - 1]; }
    bool raises(std::span<const int> numbers) const;
    std::uint64_t keyOf(std::span<const int> numbers) const;
    std::shared_ptr<UsableRecords> recordsFor(std::span<const int> numbers);
    std::optional<UsableRecords> choose(std::span<const int> numbers);
    std::shared_ptr<UsableRecords> known(UsableRecords &&records);
    std::shared_ptr<UsableRecords> usedLast(const std::shared_ptr<UsableRecords> &set);

    TDataSet &dataset;

    std::vector<std::unique_ptr<Term>> terms_; // number 1 first
    int lastFound_ = 0;

    // The records read.
    qint64 opening_ = -1; // -1: none
    TDependentVar response_;
    std::optional<TermReader> responseReader_;
    std::vector<double> responses_; // of the records kept
    std::vector<double> responsesLow_;
    std::vector<int> position_; // of the records kept, among all
    int read_ = 0;
    bool atEnd_ = false;
    bool blocked_ = false; // reading on would raise

    // What loads made of them.
    std::vector<std::shared_ptr<UsableRecords>> sets_; // asked for last at the end
    /// By the terms that do not accept all; empty where the records have to be asked. Reading on changes none of
    /// them: the walks had ended before.
    std::unordered_map<std::uint64_t, std::shared_ptr<UsableRecords>> byTerms_;
    int lastWalked_ = -1; // by the last load, where that was one of these
    std::optional<LoadedRecords> put_;
};

/// The number of a term. A new one makes everything begin anew.
int ColumnCache::Private::termFor(const TIndepVar &definition)
{
    const QStringList &strings = definition.ToQStringList();
    const int count = int(terms_.size());
    // Columns come in the order of their terms; mostly the strings are the very same ones.
    const auto find = [&](auto same) {
        for (int tried = 0; tried < count; ++tried) {
            const int at = (lastFound_ + tried) % count;
            if (same(terms_[std::size_t(at)]->definition.ToQStringList()))
                return at;
        }
        return -1;
    };
    int at = find([&](const QStringList &known) { return known.isSharedWith(strings); });
    if (at < 0) {
        at = find([&](const QStringList &known) { return sameDefinition(known, strings); });
        if (at >= 0)
            terms_[std::size_t(at)]->definition.Assign(definition);
    }
    if (at >= 0) {
        lastFound_ = at + 1;
        return at + 1;
    }
    terms_.push_back(std::make_unique<Term>(definition));
    forget();
    return count + 1;
}

void ColumnCache::Private::forget()
{
    opening_ = -1;
    sets_.clear();
    byTerms_.clear();
}

bool ColumnCache::Private::isCurrent(const TDependentVar &response) const
{
    return opening_ == dataset.Opening() && sameDefinition(response_.ToQStringList(), response.ToQStringList());
}

/// Goes to the first record; false where the response is no definition, which the records' own way reports.
bool ColumnCache::Private::begin(const TDependentVar &response)
{
    forget();
    response_.Assign(response);
    try {
        responseReader_.emplace(response_, dataset);
    } catch (const EPlatformError &) {
        return false;
    }
    responses_.clear();
    responsesLow_.clear();
    position_.clear();
    for (const std::unique_ptr<Term> &term : terms_) {
        term->reader.emplace(term->definition, dataset);
        term->valid.clear();
        term->values.clear();
        term->values.reserve(MaxObservations);
        term->hasLow = term->reader->HasLowPart();
        term->low.clear();
        term->acceptsAll = true;
        term->raised = false;
    }
    read_ = 0;
    dataset.First();
    atEnd_ = dataset.Eof();
    blocked_ = false;
    opening_ = dataset.Opening();
    return true;
}

/// Moves to the record to be read next.
void ColumnCache::Private::goOn()
{
    const qint64 distance = read_ + 1 - dataset.RecNo();
    if (dataset.MoveBy(distance) != distance)
        throw EDatabaseError(
            QStringLiteral("Record %1 of %2 is not there any more; others have changed what it reads.")
                .arg(read_ + 1)
                .arg(dataset.Caption()));
}

void ColumnCache::Private::readTerm(Term &term, bool kept)
{
    if (term.raised)
        return;
    try {
        const bool valid = term.reader->Valid();
        if (!kept)
            return;
        const double value = valid ? term.reader->Value() : 0;
        if (term.hasLow)
            term.low.push_back(valid ? term.reader->LowPart(value) : 0);
        term.values.push_back(value);
        setBit(term.valid, int(position_.size()) - 1, valid);
        term.acceptsAll = term.acceptsAll && valid;
    } catch (const EPlatformError &) {
        term.raised = true;
    }
}

/// Reads the current record and goes to the next one.
void ColumnCache::Private::readRecord()
{
    bool kept = false;
    double value = 0;
    double low = 0;
    try {
        kept = responseReader_->Valid();
        if (kept)
            value = responseReader_->Value();
        if (kept && responseReader_->HasLowPart())
            low = responseReader_->LowPart(value);
    } catch (const EPlatformError &) {
        blocked_ = true;
        return;
    }
    if (kept) {
        responses_.push_back(value);
        if (responseReader_->HasLowPart())
            responsesLow_.push_back(low);
        position_.push_back(read_);
    }
    for (const std::unique_ptr<Term> &term : terms_)
        readTerm(*term, kept);
    dataset.Next();
    ++read_;
    atEnd_ = dataset.Eof();
}

/// Whether reading on would raise for these terms, perhaps.
bool ColumnCache::Private::raises(std::span<const int> numbers) const
{
    return blocked_ ||
           std::any_of(numbers.begin(), numbers.end(), [this](int number) { return term(number).raised; });
}

/// The records that these terms accept; none where they have to be asked themselves.
std::optional<UsableRecords> ColumnCache::Private::choose(std::span<const int> numbers)
{
    std::size_t count = position_.size();
    for (const int number : numbers)
        count = std::min(count, term(number).values.size());
    // A bit for each of 64 records.
    const auto accepted = [&](std::size_t word) {
        std::uint64_t bits = ~std::uint64_t(0);
        for (const int number : numbers)
            bits &= term(number).valid[word];
        return bits;
    };
    std::vector<int> chosen;
    chosen.reserve(std::min<std::size_t>(count, MaxObservations));
    for (std::size_t first = 0; first < count; first += 64) {
        std::uint64_t bits = accepted(first / 64);
        if (count - first < 64)
            bits &= (std::uint64_t(1) << (count - first)) - 1;
        for (; bits != 0 && chosen.size() < MaxObservations; bits &= bits - 1)
            chosen.push_back(int(first) + std::countr_zero(bits));
    }
    const auto readsOn = [&] {
        return chosen.size() < MaxObservations && !atEnd_ && position_.size() < MaxRecords && !raises(numbers);
    };
    if (readsOn())
        goOn();
    while (readsOn()) {
        const std::size_t at = position_.size();
        readRecord();
        if (at < position_.size() && !raises(numbers) && (accepted(at / 64) >> (at % 64) & 1) != 0)
            chosen.push_back(int(at));
    }
    if (chosen.size() < MaxObservations && (!atEnd_ || raises(numbers)))
        return {};
    const int walked = chosen.size() == MaxObservations ? position_[std::size_t(chosen.back())] + 1 : read_;
    std::vector<std::int64_t> ordinals(chosen.size());
    std::transform(chosen.begin(), chosen.end(), ordinals.begin(),
                   [this](int record) { return std::int64_t(position_[std::size_t(record)]) + 1; });
    return UsableRecords(std::move(chosen), walked, int(terms_.size()) + 1, std::move(ordinals));
}

std::uint64_t ColumnCache::Private::keyOf(std::span<const int> numbers) const
{
    std::uint64_t key = 0;
    for (const int number : numbers)
        key |= std::uint64_t(!term(number).acceptsAll || term(number).raised) << number;
    return key;
}

/// The records that these terms accept; null where they have to be asked themselves.
std::shared_ptr<UsableRecords> ColumnCache::Private::recordsFor(std::span<const int> numbers)
{
    const auto found = byTerms_.find(keyOf(numbers));
    if (found != byTerms_.end())
        return found->second ? usedLast(found->second) : nullptr;
    std::optional<UsableRecords> chosen;
    try {
        chosen = choose(numbers);
    } catch (...) {
        forget();
        throw;
    }
    if (byTerms_.size() == MaxCombinations)
        byTerms_.clear();
    const std::shared_ptr<UsableRecords> records = chosen ? known(std::move(*chosen)) : nullptr;
    byTerms_[keyOf(numbers)] = records;
    return records;
}

std::shared_ptr<UsableRecords> ColumnCache::Private::known(UsableRecords &&records)
{
    for (const std::shared_ptr<UsableRecords> &set : sets_) {
        if (set->walked() == records.walked() && set->records() == records.records())
            return usedLast(set);
    }
    if (sets_.size() == MaxSets) {
        std::erase_if(byTerms_, [this](const auto &entry) { return entry.second == sets_.front(); });
        sets_.erase(sets_.begin());
    }
    sets_.push_back(std::make_shared<UsableRecords>(std::move(records)));
    return sets_.back();
}

std::shared_ptr<UsableRecords> ColumnCache::Private::usedLast(const std::shared_ptr<UsableRecords> &set)
{
    if (set != sets_.back()) {
        const auto at = std::find(sets_.begin(), sets_.end(), set);
        std::rotate(at, at + 1, sets_.end());
    }
    return sets_.back();
}

std::optional<LoadedRecords> ColumnCache::Private::load(const ModelDefinitions &definitions)
{
    lastWalked_ = -1;
    if (put_)
        return std::exchange(put_, std::nullopt);
    if (!dataset.Active())
        return {};
    if (terms_.size() > MaxTerms - MaxControls) {
        terms_.clear();
        forget();
    }
    const std::size_t m = definitions.columns.size();
    std::array<int, MaxParameters> numbers{}; // the response's last, 0
    for (std::size_t j = 0; j < m; ++j)
        numbers[j] = termFor(definitions.columns[j]);
    if (!isCurrent(definitions.response) && !begin(definitions.response))
        return {};
    const std::shared_ptr<UsableRecords> records = recordsFor({numbers.data(), m});
    if (!records)
        return {};
    lastWalked_ = records->walked();
    if (records->count() > 0) {
        for (std::size_t j = 0; j < m; ++j)
            records->column(numbers[j], term(numbers[j]).values, term(numbers[j]).low);
        records->column(0, responses_, responsesLow_);
    }
    LoadedRecords loaded{Observations(records, {numbers.data(), m + 1}), records->walked()};
    loaded.more = records->walked() < read_ || !atEnd_;
    return loaded;
}

/// Puts the dataset where the last load would have left it: behind the last record that it walked.
void ColumnCache::Private::standBehind()
{
    if (lastWalked_ < 0 || !dataset.Active() || dataset.Opening() != opening_)
        return;
    const bool ends = atEnd_ && lastWalked_ == read_;
    if (dataset.Eof() == ends && dataset.RecNo() == (ends ? lastWalked_ : lastWalked_ + 1))
        return;
    const ControlsOff quiet(dataset);
    if (ends) {
        dataset.Last();
    } else {
        dataset.First();
        dataset.MoveBy(lastWalked_);
    }
}

ColumnCache::ColumnCache(TDataSet &dataset, std::span<const TIndepVar> terms)
    : d_(std::make_unique<Private>(dataset, terms))
{
}

ColumnCache::~ColumnCache() = default;

std::optional<LoadedRecords> ColumnCache::load(const ModelDefinitions &definitions)
{
    return d_->load(definitions);
}

void ColumnCache::put(LoadedRecords loaded)
{
    d_->put(std::move(loaded));
}

void ColumnCache::standBehind()
{
    d_->standBehind();
}

void ColumnCache::forgetPlace()
{
    d_->forgetPlace();
}

} // namespace nuvo
