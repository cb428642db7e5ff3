// SPDX-License-Identifier: MIT
#include "app/Console.h"

#include "platform/Errors.h"
#include "platform/Messages.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace nuvo {
namespace {

std::atomic<bool> held{false};
std::atomic<int> remembered{0};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

/// Seconds until a signal that is held back has to be noticed, as what waits for a server may wait without end, and
/// those that undoing may take then. The database itself takes back what is not committed.
constexpr unsigned noticeTime = 3;
constexpr unsigned undoTime = 30;

/// What a signal discards. A handler can do little more than read memory that does not move.
constexpr size_t mostDiscarded = 4;
std::array<std::array<char, PATH_MAX>, mostDiscarded> discarded;
std::atomic<size_t> discardedCount{0};

void discard()
{
    for (size_t i = 0; i < discardedCount; ++i) {
        if (::unlink(discarded[i].data()) != 0)
            ::rmdir(discarded[i].data());
    }
}

extern "C" void onSignal(int signal)
{
    int none = 0;
    if (!held || !remembered.compare_exchange_strong(none, signal)) {
        discard();
        ::_exit(128 + (none != 0 ? none : signal));
    }
    ::alarm(noticeTime);
}

constexpr std::array endingSignals = {SIGINT, SIGTERM, SIGHUP, SIGALRM};

void endWith(int signal)
{
    struct sigaction action = {};
    // Whoever started the program without it (nohup, a background job) does not want it to end so.
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

/// Writes all of it; errno of the failure, or 0.
int writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.constData() + written, size_t(bytes.size() - written));
        if (count >= 0)
            written += count;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

void prepareProcess()
{
    // A database or a CSV file must not be opened as standard output. Read-only, so that writing still fails.
    while (true) {
        const int descriptor = ::open("/dev/null", O_RDONLY);
        if (descriptor > STDERR_FILENO)
            ::close(descriptor);
        if (descriptor < 0 || descriptor > STDERR_FILENO)
            break;
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    for (const int signal : endingSignals)
        endWith(signal);
    // The encoding alone: each of the others is a file to open and says what "C" says without one.
    for (const char *category :
         {"LANG", "LANGUAGE", "LC_ALL", "LC_NUMERIC", "LC_TIME", "LC_COLLATE", "LC_MONETARY", "LC_MESSAGES",
          "LC_PAPER", "LC_NAME", "LC_ADDRESS", "LC_TELEPHONE", "LC_MEASUREMENT", "LC_IDENTIFICATION"})
        ::unsetenv(category);
    ::setenv("LC_CTYPE", "C.UTF-8", 1);
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
        if (type != QtFatalMsg) {
            // Our own categories are silent until somebody asks for them with QT_LOGGING_RULES.
            if (qstrncmp(context.category, "nuvo.", 5) == 0)
                writeErrorLine(text);
            return;
        }
        writeErrorLine(QStringLiteral("nuvostat: %1").arg(text));
        ::_exit(3); // instead of abort()
    });
}

void writeOutput(const QString &text)
{
    const int error = writeAll(STDOUT_FILENO, text.toUtf8());
    if (error != 0 && error != EPIPE)
        throw EPlatformError(QStringLiteral("Standard output cannot be written: %1.")
                                 .arg(QString::fromLocal8Bit(std::strerror(error))));
}

void writeErrorLine(const QString &line)
{
    QString text = line;
    text.replace(QStringLiteral("\n\r"), QStringLiteral(" ")).replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    writeErrorText(withoutControls(text) + u'\n');
}

void writeErrorText(const QString &text)
{
    writeAll(STDERR_FILENO, text.toUtf8());
}

int outputWidth()
{
    winsize size = {};
    if (::isatty(STDOUT_FILENO) == 0 || ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0)
        return 80;
    return std::max<int>(80, size.ws_col);
}

bool errorIsTerminal()
{
    return ::isatty(STDERR_FILENO) != 0;
}

void discardOnSignal(const QStringList &paths)
{
    discardedCount = 0;
    size_t count = 0;
    for (const QString &path : paths.first(std::min(paths.size(), qsizetype(mostDiscarded)))) {
        const QByteArray bytes = path.toLocal8Bit();
        if (size_t(bytes.size()) < discarded[count].size())
            std::copy_n(bytes.constData(), bytes.size() + 1, discarded[count++].begin());
    }
    discardedCount = count;
}

SignalPause::SignalPause()
{
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : endingSignals)
        sigaddset(&ending, signal);
    pthread_sigmask(SIG_BLOCK, &ending, &before_);
}

SignalPause::~SignalPause()
{
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

InterruptHold::InterruptHold()
{
    held = true;
}

InterruptHold::~InterruptHold()
{
    held = false;
    ::alarm(0);
}

bool InterruptHold::hasCome() const
{
    return remembered != 0;
}

void InterruptHold::check() const
{
    if (!hasCome())
        return;
    ::alarm(undoTime);
    throw Interrupted{remembered};
}

} // namespace nuvo
