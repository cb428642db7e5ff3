// SPDX-License-Identifier: MIT
#include "engine/Leftout.h"

#include "engine/Recordload.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"

namespace nuvo {

void LeftOut::append(const LeftOut &later, qint64 recordsBefore)
{
    null += later.null;
    invalid += later.invalid;
    for (const qint64 ordinal : later.first) {
        if (first.size() < Ordinals)
            first.push_back(recordsBefore + ordinal);
    }
}

void LeftOutCount::add(std::span<TermReader> columns, TermReader &response, qint64 ordinal)
{
    add(0, response, ordinal);
    for (std::size_t j = 0; j < columns.size(); ++j)
        add(j + 1, columns[j], ordinal);
}

void LeftOutCount::add(std::size_t at, TermReader &term, qint64 ordinal)
{
    TermReader::Use use = TermReader::Use::Impossible;
    if (!unreadable_[at]) {
        try {
            use = term.UseOf();
            if (use == TermReader::Use::Possible)
                static_cast<void>(term.Value()); // a text that is no number
        } catch (const EConvertError &) {
            use = TermReader::Use::Impossible;
        } catch (const EPlatformError &) {
            unreadable_[at] = true;
        }
    }
    if (use == TermReader::Use::Possible)
        return;
    LeftOut &count = counts_[at];
    ++(use == TermReader::Use::Null ? count.null : count.invalid);
    if (count.first.size() < LeftOut::Ordinals)
        count.first.push_back(ordinal);
}

std::vector<LeftOut> countLeftOut(TDataSet &dataset, const ModelDefinitions &definitions, qint64 records)
{
    std::vector<TermReader> columns;
    columns.reserve(definitions.columns.size());
    for (const TIndepVar &column : definitions.columns)
        columns.emplace_back(column, dataset);
    TermReader response(definitions.response, dataset);
    LeftOutCount count(columns.size());
    dataset.First();
    for (qint64 ordinal = 1; ordinal <= records && !dataset.Eof(); ++ordinal) {
        count.add(columns, response, ordinal);
        dataset.Next();
    }
    return count.counts();
}

} // namespace nuvo
