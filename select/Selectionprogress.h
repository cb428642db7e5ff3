#pragma once

#include "platform/Export.h"

#include <QString>

namespace nuvo {

/// Who is told how far a model selection has come: a TGaugeDlg, or something else that takes the same.
class NUVO_EXPORT SelectionProgress
{
public:
    virtual ~SelectionProgress();

    virtual void Show() = 0;
    /// Paints the present state at once.
    virtual void Repaint() = 0;
    virtual void Close() = 0;
    /// Percentage of the pass under way (of the whole search, where it has only one), 0..100.
    virtual void SetGaugeProgress(unsigned short progress) = 0;
    virtual void SetGaugeText(const QString &text) = 0;
    /// Days and fractions of a day, as of the last SetGaugeProgress; 0 before the first.
    virtual double ProcessedTime() const = 0;
    /// Whether the person asked to end the search. It is asked before each candidate.
    virtual bool Stopped() const = 0;
};

} // namespace nuvo
