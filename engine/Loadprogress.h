#pragma once

#include <QString>

/// What a load tells about its progress; the window behind it is not the engine's business.
class LoadProgress
{
public:
    virtual ~LoadProgress() = default;
    virtual void Show() = 0;
    /// Whether anybody sees it. While nobody does, a caller need not build texts.
    virtual bool Shown() const = 0;
    /// Percentage of the records walked, 0..100.
    virtual void SetGaugeProgress(unsigned short progress) = 0;
    virtual void SetGaugeText(const QString &text) = 0;
    /// Whether the person asked to end the load (Escape on the shown dialog).
    virtual bool Stopped() const = 0;
};
