// SPDX-License-Identifier: MIT
#include "app/Commandline.h"

#include "app/Usage.h"
#include "platform/Nearestname.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <tuple>

namespace nuvo {
namespace {

constexpr char programUsage[] = R"(Usage:
  nuvostat fit --database DB (--table NAME | --sql TEXT) --response TERM
           [--control TERM]... [OPTIONS]
  nuvostat select METHOD --database DB (--table NAME | --sql TEXT)
           --response TERM [--control TERM]... [OPTIONS]
  nuvostat run FORM.ui [--format text|report|json]
  nuvostat fit FILE.csv --response TERM [--control TERM]... [OPTIONS]
  nuvostat select METHOD FILE.csv --response TERM [--control TERM]...
           [OPTIONS]
  nuvostat fit FILE.csv --head N
  nuvostat import FILE.csv --database DB --table NAME [--replace]
  nuvostat ftable --database DB --table NAME [--denominators N] [--replace]
  nuvostat samples DIR
)";

constexpr char programFooter[] = R"(
DB is the path of an SQLite file, or a server: postgresql://user@host:port/name,
mysql://..., odbc:DSN. Passwords are left to the driver's own means, such as a
password file; they are never taken from the command line.

Examples:
  nuvostat samples demo
  nuvostat fit demo/Cement.csv --response Heat --control Aluminate
  nuvostat import Longley.csv --database demo.db --table Longley
  nuvostat fit --database demo.db --table Longley --response y
           --control x2 --control x3
  nuvostat select stepwise --database demo.db --table Longley --response y
           --control x2 --control x3 --control x4
  nuvostat select --help

Exit status: 0 every run came out; 1 a run came to no result; 2 the command line
is wrong; 3 the database, a table, a field, a form, a conversion or a file that
is to be written failed.)";

constexpr char beginning[] = R"(
To begin:
  nuvostat samples demo
      writes a sample database, a CSV file and a form into the folder "demo"
  nuvostat fit demo/Cement.csv --response Heat --control Aluminate
      fits a CSV file; --head 5 in place of the variables shows what is in it
  nuvostat fit --database demo/samples.db --table Longley --response TOTEMP
           --control GNP --control UNEMP
      fits a table of a database
  nuvostat --help
      tells the rest
)";

/// Whether a command has an option of this name that takes a value.
bool takesValue(const CLI::App &command, const std::string &argument)
{
    const CLI::Option *option = command.get_option_no_throw(argument);
    return option != nullptr && option->get_expected_min() > 0;
}

/// CLI11 takes the next argument as the value of "--control=", where the empty text is meant.
std::vector<std::string> withEmptyValues(const CLI::App &command, const std::vector<std::string> &arguments)
{
    std::vector<std::string> result;
    bool isValue = false;
    for (const std::string &argument : arguments) {
        if (!isValue && argument.ends_with('=') && takesValue(command, argument.substr(0, argument.size() - 1))) {
            result.push_back(argument.substr(0, argument.size() - 1));
            result.emplace_back();
            continue;
        }
        isValue = !isValue && argument.starts_with("--") && takesValue(command, argument);
        result.push_back(argument);
    }
    return result;
}

class CommandLine
{
public:
    CommandLine()
    {
        setUsage(program_, programUsage);
        program_.description("Multiple linear regression on the tables and queries of a database.");
        program_.set_help_flag("-h,--help", "Show this help; COMMAND --help shows a command's");
        program_.set_version_flag("--version", "nuvostat " NUVO_VERSION, "Show the version");
        program_.require_subcommand(1);
        program_.footer(programFooter);
    }
    // CLI11 keeps pointers into it.
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;

    Command parse(std::vector<std::string> arguments)
    {
        if (arguments.empty())
            throw UsageError(QStringLiteral("A command is missing: %1.").arg(commandNames(" or ")),
                             QLatin1String(beginning));
        const std::string name = arguments.front();
        const std::vector<CLI::App *> named =
            program_.get_subcommands([&name](const CLI::App *app) { return app->get_name() == name; });
        CLI::App *const command = named.empty() ? nullptr : named.front();
        if (command == nullptr && !name.starts_with('-'))
            throw UsageError(QStringLiteral("There is no command \"%1\"%2, but %3. See \"nuvostat --help\".")
                                 .arg(QString::fromStdString(name), perhaps(QString::fromStdString(name), commands()),
                                      commandNames(" and ")));
        if (command == nullptr && name != "-h" && name != "--help" && name != "--version")
            throw UsageError(QStringLiteral("There is no option \"%1\". See \"nuvostat --help\".")
                                 .arg(QString::fromStdString(name)));
        const QString hint = QStringLiteral(" See \"nuvostat %1 --help\".").arg(QString::fromStdString(name));
        try {
            if (command != nullptr)
                arguments = withEmptyValues(*command, arguments);
            std::reverse(arguments.begin(), arguments.end()); // as CLI11 wants them
            program_.parse(std::move(arguments));
            return read(command);
        } catch (const CLI::CallForHelp &) {
            return PrintOptions{QString::fromStdString((command == nullptr ? &program_ : command)->help())};
        } catch (const CLI::CallForVersion &version) {
            return PrintOptions{QString::fromUtf8(version.what()) + u'\n'};
        } catch (const CLI::ExtrasError &) {
            throw UsageError(tooMuch(command) + hint);
        } catch (const CLI::ArgumentMismatch &error) {
            throw UsageError(mismatch(command, QString::fromUtf8(error.what())) + hint);
        } catch (const CLI::ParseError &error) {
            throw UsageError(QString::fromUtf8(error.what()) + u'.' + hint);
        } catch (const UsageError &error) {
            throw UsageError(error.Message() + hint);
        }
    }

private:
    QStringList commands() const
    {
        QStringList names;
        for (const CLI::App *app : program_.get_subcommands({}))
            names.append(QString::fromStdString(app->get_name()));
        return names;
    }

    /// "fit, select or run"
    QString commandNames(const char *last) const
    {
        QStringList names = commands();
        const QString end = names.takeLast();
        return names.join(QStringLiteral(", ")) + QString::fromLatin1(last) + end;
    }

    Command read(const CLI::App *app) const
    {
        Command asked;
        const auto readIf = [&](const auto &command) {
            if (command.app() == app)
                asked = command.read();
        };
        std::apply([&](const auto &...command) { (readIf(command), ...); }, commands_);
        return asked;
    }

    /// What is often meant where one control variable is followed by another.
    static QString severalControls(const CLI::App *command)
    {
        const CLI::Option *control = command == nullptr ? nullptr : command->get_option_no_throw("--control");
        return control != nullptr && control->count() > 0
                   ? QStringLiteral("; --control is given once for each control variable")
                   : QString();
    }

    QString tooMuch(const CLI::App *command) const
    {
        const std::vector<std::string> left = (command == nullptr ? &program_ : command)->remaining();
        const QString first = left.empty() ? QString() : QString::fromStdString(left.front());
        if (!first.startsWith(u'-'))
            return QStringLiteral("\"%1\" is one argument too many%2.").arg(first, severalControls(command));
        QStringList options;
        for (const CLI::Option *option : (command == nullptr ? &program_ : command)->get_options())
            options.append(optionName(option));
        return QStringLiteral("There is no option \"%1\"%2.").arg(first, perhaps(first, options));
    }

    /// CLI11 says only in its text which option it is about.
    QString mismatch(const CLI::App *command, const QString &told) const
    {
        for (const CLI::Option *option : command->get_options()) {
            const QString name = optionName(option);
            if (option->get_multi_option_policy() != CLI::MultiOptionPolicy::TakeAll &&
                option->get_expected_min() > 0 && option->count() > 1)
                return QStringLiteral("%1 is there %2 times; it can be given once.").arg(name).arg(option->count());
            if (told.startsWith(name + u':'))
                return QStringLiteral("%1 needs a value.").arg(name);
        }
        return QStringLiteral("--%1 takes no value.").arg(told.section(u' ', 0, 0));
    }

    CLI::App program_;
    // In this order the help lists them: a braced list is evaluated from left to right.
    std::tuple<FitCommand, SelectCommand, RunCommand, ImportCommand, FTableCommand, SamplesCommand> commands_{
        FitCommand(program_),    SelectCommand(program_), RunCommand(program_),
        ImportCommand(program_), FTableCommand(program_), SamplesCommand(program_)};
};

} // namespace

Command parseCommandLine(std::vector<std::string> arguments)
{
    return CommandLine().parse(std::move(arguments));
}

} // namespace nuvo
