// SPDX-License-Identifier: MIT
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "platform/Version.h"
#include "workbench/Language.h"
#include "workbench/Mainwindow.h"
#include "workbench/Sittingfolder.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

void addOptions(QCommandLineParser &parser)
{
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({QStringLiteral("language"),
                      QCoreApplication::translate("Main", "Speak this language: de or en. Otherwise the system's."),
                      QCoreApplication::translate("Main", "code")});
    parser.addPositionalArgument(
        QStringLiteral("files"),
        QCoreApplication::translate("Main",
                                    "CSV files, SQLite databases or forms to open, or the address of a server."),
        QCoreApplication::translate("Main", "[files…]"));
}

/// The language that is asked for, before there is one that anything could be told in.
QString languageIn(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    parser.parse(arguments);
    return parser.value(QStringLiteral("language"));
}

/// Qt itself would end the program with a core dump. What is asked for by name is Qt's to judge.
bool hasDisplay(int argc, char **argv)
{
#ifdef Q_OS_LINUX
    const bool isChosen =
        qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || std::any_of(argv + 1, argv + argc, [](const char *argument) {
            return QLatin1StringView(argument).endsWith(QLatin1StringView("-platform"));
        });
    return isChosen || !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return argv[argc] == nullptr; // there always is one
#endif
}

} // namespace

int main(int argc, char **argv)
{
    // What is only told needs no display.
    const bool onlyTells = std::any_of(argv + 1, argv + argc, [](const char *argument) {
        const QLatin1StringView text(argument);
        return text == QLatin1StringView("--help") || text == QLatin1StringView("-h") ||
               text == QLatin1StringView("--version") || text == QLatin1StringView("-v");
    });
    const bool isBlind = !hasDisplay(argc, argv);
    const std::unique_ptr<QCoreApplication> application = onlyTells || isBlind
                                                              ? std::make_unique<QCoreApplication>(argc, argv)
                                                              : std::make_unique<QApplication>(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Nuvo"));
    QCoreApplication::setApplicationName(QStringLiteral("nuvo-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(NUVO_VERSION_TEXT));
    const QStringList arguments = QCoreApplication::arguments();
    const QString wanted = languageIn(arguments);
    const bool isKnown = wanted.isEmpty() || nuvo::Language::known().contains(wanted);
    const nuvo::Language language(isKnown ? wanted : QString());
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "Main", "A workbench for people with a table and a question: linear regression on "
                "CSV files and databases."));
    addOptions(parser);
    parser.process(arguments);
    if (!isKnown) {
        std::fprintf(stderr, "%s\n",
                     qPrintable(QCoreApplication::translate("Main", "There is no language \"%1\" here: %2.")
                                    .arg(wanted, nuvo::Language::known().join(QStringLiteral(", ")))));
        return 2;
    }
    if (isBlind) {
        std::fprintf(
            stderr, "%s\n",
            qPrintable(QCoreApplication::translate(
                "Main", "There is no display here that a window could be shown on. The program nuvostat does "
                        "the same from the command line.")));
        return 1;
    }
    QGuiApplication::setDesktopFileName(QStringLiteral("nuvo-workbench"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Nuvo Workbench"));
    QGuiApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral("nuvo-workbench"), QIcon(QStringLiteral(":/icons/nuvo-workbench.svg"))));
    try {
        const nuvo::SittingFolder sitting(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
        nuvo::MainWindow window(sitting.path());
        window.show();
        if (!sitting.warning().isEmpty())
            window.Warn(sitting.warning());
        window.OpenSoon(parser.positionalArguments());
        return QApplication::exec();
    } catch (const EPlatformError &error) {
        MessageDlg(error.Message(), TMsgDlgType::mtError);
        return 1;
    }
}
