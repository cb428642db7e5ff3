#include "app/Console.h"
#include "app/Import.h"
#include "app/Options.h"
#include "app/Usage.h"
#include "platform/Errors.h"

#include <QCoreApplication>

#include <new>

namespace {

enum ExitStatus { Success = 0, NoResult = 1, WrongCommandLine = 2, Failure = 3 };

int fail(const QString &sentence)
{
    nuvo::writeErrorLine(QStringLiteral("nuvostat: %1").arg(sentence));
    return Failure;
}

int runImport(int argc, char **argv, const nuvo::ImportOptions &options)
{
    const QCoreApplication application(argc, argv);
    nuvo::writeOutput(nuvo::importCsv(options) + u'\n');
    return Success;
}

int run(int argc, char **argv)
{
    const nuvo::Command command = nuvo::parseCommandLine({argv + 1, argv + argc});
    if (const auto *import = std::get_if<nuvo::ImportOptions>(&command))
        return runImport(argc, argv, *import);
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
        nuvo::writeErrorLine(QStringLiteral("nuvostat: %1").arg(error.Message()));
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
