#include "app/Console.h"
#include "app/Fit.h"
#include "app/Ftable.h"
#include "app/Import.h"
#include "app/Json.h"
#include "app/Options.h"
#include "app/Run.h"
#include "app/Select.h"
#include "app/Usage.h"
#include "platform/Errors.h"

#include <QApplication>

#include <algorithm>
#include <new>

namespace {

enum ExitStatus { Success = 0, NoResult = 1, WrongCommandLine = 2, Failure = 3 };

/// Set as soon as the command line is read: whoever asked for JSON gets the error in it too.
bool wantsJson = false;

int fail(const QString &sentence)
{
    nuvo::writeErrorLine(QStringLiteral("nuvostat: ") + sentence);
    if (wantsJson) {
        nuvo::Json object;
        object["error"] = nuvo::jsonText(sentence);
        try {
            nuvo::writeOutput(nuvo::jsonLines(object));
        } catch (const EPlatformError &) { // said already, or about to be of no use
        }
    }
    return Failure;
}

/// How many arguments Qt gets to see: it would take "-platform" for its own where it is the value of an option.
constexpr int nameAlone = 1;

/// Components are widgets, so there must be a QApplication; nothing is ever drawn. `minimal` starts 4 ms earlier than
/// `offscreen`, and a desktop's theme has nothing to say here.
class Application
{
public:
    explicit Application(char **argv) : application_(count_, argv) {}

private:
    int count_ = [] {
        qputenv("QT_QPA_PLATFORM", "minimal");
        qunsetenv("QT_QPA_PLATFORMTHEME");
        return nameAlone;
    }();
    QApplication application_;
};

int runFit(char **argv, const nuvo::FitOptions &options)
{
    wantsJson = options.format == nuvo::OutputFormat::Json;
    const Application application(argv);
    const nuvo::FitResult result = nuvo::fit(options);
    nuvo::writeOutput(result.output);
    return result.fitted ? Success : NoResult;
}

int runSelect(char **argv, const nuvo::SelectOptions &options)
{
    wantsJson = options.format == nuvo::OutputFormat::Json;
    const Application application(argv);
    const nuvo::SelectResult result = nuvo::select(options);
    nuvo::writeOutput(result.output);
    return result.loaded ? Success : NoResult;
}

int runForm(char **argv, const nuvo::RunOptions &options)
{
    wantsJson = options.format == nuvo::OutputFormat::Json;
    const Application application(argv);
    const nuvo::RunResult result = nuvo::runForm(options);
    nuvo::writeOutput(result.output);
    return result.succeeded ? Success : NoResult;
}

/// For a command that makes something and says so in a line.
template <class Options>
int runMaker(char **argv, QString (*make)(const Options &), const Options &options)
{
    int count = nameAlone;
    const QCoreApplication application(count, argv);
    nuvo::writeOutput(make(options) + u'\n');
    return Success;
}

int run(int argc, char **argv)
{
    const nuvo::Command command = nuvo::parseCommandLine({argv + std::min(argc, 1), argv + argc});
    if (const auto *fit = std::get_if<nuvo::FitOptions>(&command))
        return runFit(argv, *fit);
    if (const auto *select = std::get_if<nuvo::SelectOptions>(&command))
        return runSelect(argv, *select);
    if (const auto *form = std::get_if<nuvo::RunOptions>(&command))
        return runForm(argv, *form);
    if (const auto *import = std::get_if<nuvo::ImportOptions>(&command))
        return runMaker(argv, nuvo::importCsv, *import);
    if (const auto *ftable = std::get_if<nuvo::FTableOptions>(&command))
        return runMaker(argv, nuvo::makeFTable, *ftable);
    nuvo::writeOutput(std::get<nuvo::PrintOptions>(command).text);
    return Success;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        nuvo::prepareProcess();
        return run(argc, argv);
    } catch (const nuvo::UsageError &error) {
        nuvo::writeErrorLine(QStringLiteral("nuvostat: ") + error.Message());
        return WrongCommandLine;
    } catch (const nuvo::Interrupted &interrupted) {
        return 128 + interrupted.signal;
    } catch (const EPlatformError &error) {
        return fail(error.Message());
    } catch (const std::bad_alloc &) {
        return fail(QStringLiteral("There is not enough memory."));
    } catch (const std::exception &error) {
        return fail(QString::fromLocal8Bit(error.what()));
    }
}
