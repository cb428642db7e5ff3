#pragma once

#include "platform/Export.h"

#include <memory>

class TRegression;

namespace nuvo {

/// Makes many loads and fits of one regression quick while it lives, with other definitions among the same ones each
/// time, as choosing a model does: a term is transformed once over the records, a cross product of two columns is
/// formed once for all candidates that have the same usable records. What ReLoad() and Execute() give, say and throw
/// stays the same to the last bit.
///
/// It holds as long as the rows are the same snapshot, and begins anew when the dataset was opened or read anew, when
/// the response changed or a new term came up. Loads are made from the records, as without it, while ShowLoadProgress
/// is on, where a term raises, and where a load has to go beyond the first 32768 records with a valid response. At
/// most 31 terms and the 32 sets of usable records asked for last are kept: 10 MB with ten terms, 30 MB at most.
///
/// The dataset stays wherever the records were read to; at the end it goes where the last load would have left it.
/// No load progress is made.
class NUVO_EXPORT ColumnCache
{
public:
    /// A regression that has one already goes on with that one.
    explicit ColumnCache(TRegression &regression);
    ColumnCache(const ColumnCache &) = delete;
    ColumnCache &operator=(const ColumnCache &) = delete;
    /// The regression may be gone. What was loaded last stays with it.
    ~ColumnCache();

private:
    friend class ::TRegression;
    class Private;

    /// Loads what the regression's columns are; false, with nothing done, where the records have to be asked.
    /// \throws EDatabaseError when fetching fails.
    bool Load();

    std::unique_ptr<Private> d_;
};

} // namespace nuvo
