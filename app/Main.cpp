// SPDX-License-Identifier: MIT
#include "app/Commandline.h"
#include "app/Console.h"
#include "app/Csvtable.h"
#include "app/Json.h"
#include "app/Startup.h"
#include "app/Usage.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "platform/Modal.h"

#include <QApplication>

#include <algorithm>
#include <memory>
#include <new>

#include <unistd.h>

namespace {

enum ExitStatus { Success = 0, NoResult = 1, WrongCommandLine = 2, Failure = 3 };

/// Set as soon as the command line is read: whoever asked for JSON gets the error in it too.
bool wantsJson = false;

int fail(const QString &sentence)
{
    nuvo::writeErrorLine(QStringLiteral("nuvostat: ") + sentence);
    if (wantsJson) {
        try {
            nuvo::Json object;
            object["error"] = nuvo::jsonText(sentence);
            nuvo::writeOutput(nuvo::jsonLines(object));
        } catch (const std::exception &) { // said already, or about to be of no use
        }
    }
    return Failure;
}

/// How many arguments Qt gets to see: it would take "-platform" for its own where it is the value of an option.
constexpr int nameAlone = 1;

/// The one way in which Qt says that it cannot reach a display is to end the program.
void onNoDisplay(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type == QtFatalMsg)
        ::_exit(fail(QStringLiteral("--show needs a display, and none can be reached.")));
}

/// Components are widgets, so there must be a QApplication.
std::unique_ptr<QApplication> makeApplication(char **argv, bool show, bool fonts)
{
    static int count = nameAlone;
    if (show) {
        const QtMessageHandler before = qInstallMessageHandler(onNoDisplay);
        auto application = std::make_unique<QApplication>(count, argv);
        qInstallMessageHandler(before);
        return application;
    }
    // `minimal` starts 4 ms earlier than `offscreen` but has no fonts; a desktop's theme has nothing to say here.
    qputenv("QT_QPA_PLATFORM", fonts ? "offscreen" : "minimal");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    return std::make_unique<QApplication>(count, argv);
}

/// For a command whose runs come to a result or not.
template <class Options>
int runComponents(char **argv, bool (*perform)(const Options &), const Options &options, bool show = false,
                  bool fonts = false)
{
    wantsJson = options.format == nuvo::OutputFormat::Json;
    if constexpr (requires { options.database; })
        nuvo::prepareDriver(options.database);
    const auto application = makeApplication(argv, show, fonts);
    if (show && !nuvo::somebodyCanAnswer())
        return fail(QStringLiteral("--show needs a display, but Qt's platform is \"%1\".")
                        .arg(QGuiApplication::platformName()));
    return perform(options) ? Success : NoResult;
}

/// For a command that makes something and says so in a line.
template <class Options>
int runMaker(char **argv, QString (*make)(const Options &), const Options &options)
{
    int count = nameAlone;
    const QCoreApplication application(count, argv);
    nuvo::prepareDriver(options.database);
    const QString made = nuvo::withoutControls(make(options));
    try {
        nuvo::writeOutput(made + u'\n');
    } catch (const EPlatformError &error) { // what was made stays, and standard error says so
        throw EPlatformError(error.Message() + u' ' + made);
    }
    return Success;
}

/// The CSV file of which a command is to show what is understood, and no more.
const nuvo::CsvOptions *headAsked(const nuvo::Command &command)
{
    const nuvo::CsvOptions *csv = nullptr;
    if (const auto *fit = std::get_if<nuvo::FitOptions>(&command))
        csv = fit->csv ? &*fit->csv : nullptr;
    else if (const auto *select = std::get_if<nuvo::SelectOptions>(&command))
        csv = select->csv ? &*select->csv : nullptr;
    else if (const auto *import = std::get_if<nuvo::ImportOptions>(&command))
        csv = &import->csv;
    return csv != nullptr && csv->head ? csv : nullptr;
}

int run(int argc, char **argv)
{
    const nuvo::Command command = nuvo::parseCommandLine({argv + std::min(argc, 1), argv + argc});
    if (const nuvo::CsvOptions *csv = headAsked(command)) {
        nuvo::writeOutput(nuvo::headOf(*csv));
        return Success;
    }
    if (const auto *fit = std::get_if<nuvo::FitOptions>(&command))
        return runComponents(argv, nuvo::fit, *fit, fit->show,
                             !fit->saveReport.isEmpty() || !fit->savePlots.isEmpty());
    if (const auto *select = std::get_if<nuvo::SelectOptions>(&command))
        return runComponents(argv, nuvo::select, *select);
    if (const auto *form = std::get_if<nuvo::RunOptions>(&command))
        return runComponents(argv, nuvo::runForm, *form);
    if (const auto *import = std::get_if<nuvo::ImportOptions>(&command))
        return runMaker(argv, nuvo::importCsv, *import);
    if (const auto *ftable = std::get_if<nuvo::FTableOptions>(&command))
        return runMaker(argv, nuvo::makeFTable, *ftable);
    if (const auto *samples = std::get_if<nuvo::SamplesOptions>(&command))
        return runMaker(argv, nuvo::makeSamples, *samples);
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
        nuvo::writeErrorText(error.Lines());
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
