// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <csignal>

namespace nuvo {

/// What the process as a whole needs before anything else: the three standard streams are open, a closed pipe and a
/// file-size limit are errors of the write and not the end, the locale is C with UTF-8, Qt's own warnings are silent
/// (what goes wrong is said by the program in its own words), and Ctrl-C ends with status 130.
void prepareProcess();

/// Writes to standard output. A pipe that nobody reads any more takes the rest in silence.
/// \throws EPlatformError when writing fails for another reason.
void writeOutput(const QString &text);

/// Writes one line to standard error, line breaks within it turned into blanks.
void writeErrorLine(const QString &line);

/// Writes a text to standard error as it stands.
void writeErrorText(const QString &text);

/// Columns of the terminal on standard output, at least 80; 80 where it is no terminal.
int outputWidth();
bool errorIsTerminal();

/// Files, and the folder that they are in as the last one, which a signal that ends the program removes first. At
/// most four, which replace those named before.
void discardOnSignal(const QStringList &paths);

/// While one lives, signals that end the program wait: for what must not be torn apart, and takes no time.
class SignalPause
{
public:
    SignalPause();
    ~SignalPause();
    SignalPause(const SignalPause &) = delete;
    SignalPause &operator=(const SignalPause &) = delete;

private:
    sigset_t before_;
};

/// Thrown by InterruptHold::check().
struct Interrupted
{
    int signal;
};

/// While one lives, the first signal that would end the program is only remembered, so that what was begun can be
/// undone; a second one ends it at once, and so do three seconds in which nobody asks with check(), as what waits for
/// a server may wait without end. One at a time.
class InterruptHold
{
public:
    InterruptHold();
    ~InterruptHold();
    InterruptHold(const InterruptHold &) = delete;
    InterruptHold &operator=(const InterruptHold &) = delete;

    bool hasCome() const;
    /// \throws Interrupted when a signal has come.
    void check() const;
};

} // namespace nuvo
