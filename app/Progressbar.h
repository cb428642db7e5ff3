// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nuvo {

/// A bar on standard error, taken away at the end; nothing where standard error is no terminal.
class ProgressBar
{
public:
    ProgressBar();
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;
    ~ProgressBar();

    /// Whether anybody sees it.
    bool shown() const { return shown_; }
    /// \param percent of 100, with the text that belongs to it
    void draw(int percent, const QString &text);
    /// Draws when the percentage is another one than before.
    void update(int percent, const QString &text);

private:
    bool shown_;
    int drawn_ = -1;
};

} // namespace nuvo
