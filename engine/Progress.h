// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nuvo {

/// Who is told how far something is that takes long: a load, a model selection, a scan. A dialog, a line of a
/// terminal, a test. The window behind it is not the business of those who tell.
class Progress
{
public:
    virtual ~Progress() = default;

    /// The work begins.
    virtual void Show() = 0;
    /// Whether anybody sees it. While nobody does, a caller need not build texts.
    virtual bool Shown() const { return true; }
    /// Paints the present state at once.
    virtual void Repaint() {}
    /// The work has ended, well or not.
    virtual void Close() {}
    /// Percentage of what is under way, 0..100: of the records of a load, of a pass of a selection (of the whole
    /// search, where it has only one).
    virtual void SetGaugeProgress(unsigned short progress) = 0;
    /// What is being done, in words.
    virtual void SetGaugeText(const QString &text) = 0;
    /// Days and fractions of a day that the work has taken, as of the last SetGaugeProgress; 0 before the first, and
    /// where no clock runs.
    virtual double ProcessedTime() const { return 0; }
    /// Whether the person asked to end the work (Escape on a shown dialog). A load asks at each record, a selection
    /// before each candidate.
    virtual bool Stopped() const = 0;
};

} // namespace nuvo
