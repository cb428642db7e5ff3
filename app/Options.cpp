#include "app/Options.h"

#include "app/Usage.h"
#include "engine/Maxdata.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace nuvo {
namespace {

constexpr char programUsage[] = R"(Usage:
  nuvostat fit --database DB (--table NAME | --sql TEXT) --response TERM
           [--control TERM]... [OPTIONS]
  nuvostat import FILE.csv --database DB --table NAME [--replace]
  nuvostat ftable --database DB --table NAME [--denominators N] [--replace]
)";

constexpr char fitUsage[] = R"(Usage:
  nuvostat fit --database DB --table NAME [--filter EXPRESSION]
           [--order FIELD[,FIELD...]] VARIABLES [OPTIONS]
  nuvostat fit --database DB --sql TEXT VARIABLES [OPTIONS]
VARIABLES is --response TERM [--control TERM]...
)";

constexpr char importUsage[] = R"(Usage:
  nuvostat import FILE.csv --database DB --table NAME [--replace]
)";

constexpr char ftableUsage[] = R"(Usage:
  nuvostat ftable --database DB --table NAME [--denominators N] [--replace]
)";

constexpr char programFooter[] = R"(
DB is the path of an SQLite file, or a server: postgresql://user@host:port/name,
mysql://..., odbc:DSN. Passwords are left to the driver's own means, such as a
password file; they are never taken from the command line.

Examples:
  nuvostat import Longley.csv --database demo.db --table Longley
  nuvostat fit --database demo.db --table Longley --response y
           --control x2 --control x3
  nuvostat fit --help

Exit status: 0 every run came out; 1 a run came to no result; 2 the command line
is wrong; 3 the database, a table, a field or a conversion failed.)";

constexpr char fitFooter[] = R"(
TERM is one of these; F and G are fields, K and N are numbers:
  response  control   means
  F         F         the field's value
  Ln(F)     Ln(F)     natural logarithm
  1/(F)     1/F       inverse
            F^1/2     square root
            F^K       power
  F/N       F/N       divided by the number N
            F*G       product of two fields
            F/G       quotient of two fields
The K of a power is a whole number from 1; an odd one gives the power of the
absolute value with a minus sign, so use 1/F and F^1/2 where these are meant.
A field's name that holds an operator or is a number stands in double quotes, a
quote inside doubled: "GNP/cap"^2, "1999". The --control options become
ControlVar01, ControlVar02, ... in the order given; an empty one (--control "")
leaves its position undefined.

Examples:
  nuvostat fit --database demo.db --table Longley --response y
           --control x2 --control 'Ln(x3)' --matrices
  nuvostat fit --database postgresql://ann@localhost/shop --format json
           --sql 'SELECT price, size, age FROM houses WHERE price > 0'
           --response 'Ln(price)' --control size --control 'age^2')";

constexpr char importFooter[] = R"(
The first row names the columns. Cells are parted by commas, or by semicolons or
tabs when the first row has these and no comma; cells in double quotes may hold
anything. The text is UTF-8, or Windows-1252 where it is no UTF-8.

A column becomes whole numbers (64 bits) or floating-point numbers (with a
decimal point) when all its cells are, and texts otherwise; leading zeros make a
text, so that codes like 00123 stay as they are. An empty cell or NA is a null,
in quotes or not. A row with too few or too many cells is an error, and so is a
column without a name or with a name that is there already.

The table is made whole or not at all, in an SQLite file, which is made when it
is not there, or in a PostgreSQL database.

Examples:
  nuvostat import Longley.csv --database demo.db --table Longley
  nuvostat import sales.csv --database postgresql://ann@localhost/shop
           --table Sales --replace)";

constexpr char ftableFooter[] = R"(
The table holds quantiles of the F distribution, as the selection of variables
looks them up. Its key is Numerator (1 to 10) and Denominator (1 to N), the
degrees of freedom. The columns "1 Percent", "5 Percent" and "10 Percent" are
the values that are exceeded with that probability, "95 Percent" is the 95th
percentile.

The table is made whole or not at all, in an SQLite file, which is made when it
is not there, or in a PostgreSQL database.

Examples:
  nuvostat ftable --database demo.db --table Fdistribution
  nuvostat ftable --database postgresql://ann@localhost/shop
           --table Fdistribution --denominators 500 --replace)";

constexpr char databaseHelp[] = "SQLite file, or URL of a server";

/// CLI11's layout with a usage line of our own.
class HelpLayout : public CLI::Formatter
{
public:
    explicit HelpLayout(std::string usage) : usage_(std::move(usage))
    {
        column_width(28);
        label("Positionals", "Arguments");
    }
    std::string make_usage(const CLI::App *, std::string) const override { return usage_; }
    std::string make_description(const CLI::App *app) const override { return app->get_description() + "\n\n"; }

private:
    std::string usage_;
};

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

QString text(const CLI::Option *option)
{
    return option->empty() ? QString() : QString::fromStdString(option->results().back());
}

std::optional<QString> optionalText(const CLI::Option *option)
{
    return option->empty() ? std::nullopt : std::optional(text(option));
}

class CommandLine
{
public:
    CommandLine()
    {
        program_.description("Multiple linear regression on the tables and queries of a database.");
        program_.set_help_flag("--help", "Show this help; COMMAND --help shows a command's");
        program_.set_version_flag("--version", "nuvostat " NUVO_VERSION, "Show the version");
        program_.require_subcommand(1);
        program_.footer(programFooter);
        program_.formatter(std::make_shared<HelpLayout>(programUsage));

        fit_.app = program_.add_subcommand("fit", "Fit a regression and print its report");
        fit_.app->formatter(std::make_shared<HelpLayout>(fitUsage));
        fit_.app->footer(fitFooter);
        fit_.database = value(fit_.app, "--database", "DB", databaseHelp, "DATA")->required();
        fit_.table = value(fit_.app, "--table", "NAME", "A table or view of the database", "DATA");
        fit_.filter = value(fit_.app, "--filter", "EXPRESSION", "An SQL condition on the table's records", "DATA");
        fit_.order = value(fit_.app, "--order", "FIELD[,FIELD...]", "The order of the table's records", "DATA");
        fit_.sql = value(fit_.app, "--sql", "TEXT", "In place of a table: SELECT ...", "DATA");
        fit_.response = value(fit_.app, "--response", "TERM", "The response variable Y", "VARIABLES")->required();
        fit_.controls = value(fit_.app, "--control", "TERM", "A control variable X; up to ten of them", "VARIABLES");
        fit_.controls->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        fit_.description =
            value(fit_.app, "--description", "TEXT", "What it is about, for the report's head", "Options");
        fit_.message = value(fit_.app, "--message", "TEXT", "A message for the report's foot", "Options");
        fit_.warnings = flag(fit_.app, "--warnings", "Warn when records are too many to be used");
        fit_.matrices = flag(fit_.app, "--matrices", "Print the coefficients' covariances and correlations");
        fit_.progress = flag(fit_.app, "--progress", "Draw a progress bar on a terminal");
        fit_.format = value(fit_.app, "--format", "text|json", "What to print; text unless told", "Options");

        fit_.app->set_help_flag("--help", "Show this help");

        import_.app = program_.add_subcommand("import", "Make a table from a CSV file");
        import_.app->formatter(std::make_shared<HelpLayout>(importUsage));
        import_.app->footer(importFooter);
        import_.file = value(import_.app, "FILE.csv", "", "The file to read", "Options")->required();
        import_.database = value(import_.app, "--database", "DB", databaseHelp, "Options")->required();
        import_.table = value(import_.app, "--table", "NAME", "The table to make", "Options")->required();
        import_.replace = flag(import_.app, "--replace", "Replace a table that is there already");
        import_.app->set_help_flag("--help", "Show this help");

        ftable_.app = program_.add_subcommand("ftable", "Make a table of F quantiles");
        ftable_.app->formatter(std::make_shared<HelpLayout>(ftableUsage));
        ftable_.app->footer(ftableFooter);
        ftable_.database = value(ftable_.app, "--database", "DB", databaseHelp, "Options")->required();
        ftable_.table = value(ftable_.app, "--table", "NAME", "The table to make", "Options")->required();
        ftable_.denominators =
            value(ftable_.app, "--denominators", "N", "Up to how many; 2500 unless told", "Options");
        ftable_.replace = flag(ftable_.app, "--replace", "Replace a table that is there already");
        ftable_.app->set_help_flag("--help", "Show this help");
        for (CLI::App *command : {fit_.app, import_.app, ftable_.app})
            command->group("Commands");
    }
    // CLI11 keeps pointers into it.
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;

    Command parse(std::vector<std::string> arguments)
    {
        if (arguments.empty())
            throw UsageError(QStringLiteral("A command is missing: fit, import or ftable. See \"nuvostat --help\"."));
        const std::string name = arguments.front();
        const std::vector<CLI::App *> named =
            program_.get_subcommands([&name](const CLI::App *app) { return app->get_name() == name; });
        CLI::App *const command = named.empty() ? nullptr : named.front();
        if (command == nullptr && !name.starts_with('-'))
            throw UsageError(
                QStringLiteral("There is no command \"%1\", but fit, import and ftable. See \"nuvostat --help\".")
                    .arg(QString::fromStdString(name)));
        if (command == nullptr && name != "--help" && name != "--version")
            throw UsageError(QStringLiteral("There is no option \"%1\". See \"nuvostat --help\".")
                                 .arg(QString::fromStdString(name)));
        const QString hint = QStringLiteral(" See \"nuvostat %1 --help\".").arg(QString::fromStdString(name));
        try {
            if (command != nullptr)
                arguments = withEmptyValues(*command, arguments);
            std::reverse(arguments.begin(), arguments.end()); // as CLI11 wants them
            program_.parse(std::move(arguments));
            return command == fit_.app      ? Command(fitOptions())
                   : command == import_.app ? Command(importOptions())
                                            : Command(ftableOptions());
        } catch (const CLI::CallForHelp &) {
            return PrintOptions{QString::fromStdString((command == nullptr ? &program_ : command)->help())
                                    .replace(QStringLiteral("\n\n\n"), QStringLiteral("\n\n"))};
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
    static CLI::Option *value(CLI::App *command, const char *name, const char *type, const char *help,
                              const char *group)
    {
        return command->add_option(name, CLI::callback_t(), help)->type_name(type)->group(group);
    }

    static CLI::Option *flag(CLI::App *command, const char *name, const std::string &help)
    {
        return command->add_flag(name, help)->disable_flag_override();
    }

    QString tooMuch(const CLI::App *command) const
    {
        const std::vector<std::string> left = (command == nullptr ? &program_ : command)->remaining();
        const QString first = left.empty() ? QString() : QString::fromStdString(left.front());
        if (!first.startsWith(u'-'))
            return QStringLiteral("\"%1\" is one argument too many.").arg(first);
        return QStringLiteral("There is no option \"%1\".").arg(first);
    }

    /// CLI11 says only in its text which option it is about.
    QString mismatch(const CLI::App *command, const QString &told) const
    {
        for (const CLI::Option *option : command->get_options()) {
            const QString name = QString::fromStdString(option->get_name());
            if (option != fit_.controls && option->get_expected_min() > 0 && option->count() > 1)
                return QStringLiteral("%1 is there %2 times; it can be given once.").arg(name).arg(option->count());
            if (told.startsWith(name + u':'))
                return QStringLiteral("%1 needs a value.").arg(name);
        }
        return QStringLiteral("--%1 takes no value.").arg(told.section(u' ', 0, 0));
    }

    FitOptions fitOptions() const
    {
        FitOptions options;
        options.database = text(fit_.database);
        options.table = optionalText(fit_.table);
        options.sql = optionalText(fit_.sql);
        if (options.table && options.sql)
            throw UsageError(QStringLiteral("--table and --sql exclude each other."));
        if (!options.table && !options.sql)
            throw UsageError(QStringLiteral("--table or --sql is required."));
        if (options.sql && (!fit_.filter->empty() || !fit_.order->empty()))
            throw UsageError(
                QStringLiteral("--filter and --order belong to --table; a statement has its own WHERE and "
                               "ORDER BY."));
        options.filter = text(fit_.filter);
        options.order = text(fit_.order);
        options.response = parseResponse(text(fit_.response));
        if (fit_.controls->count() > MaxControls)
            throw UsageError(
                QStringLiteral("--control is there %1 times; a regression has up to %2 control variables.")
                    .arg(fit_.controls->count())
                    .arg(MaxControls));
        for (const std::string &control : fit_.controls->results())
            options.controls.append(parseControl(QString::fromStdString(control)));
        options.description = text(fit_.description);
        options.message = text(fit_.message);
        options.warnings = !fit_.warnings->empty();
        options.matrices = !fit_.matrices->empty();
        options.progress = !fit_.progress->empty();
        const QString format = fit_.format->empty() ? QStringLiteral("text") : text(fit_.format);
        if (format != u"text" && format != u"json")
            throw UsageError(QStringLiteral("--format is text or json, not \"%1\".").arg(format));
        options.format = format == u"json" ? OutputFormat::Json : OutputFormat::Text;
        return options;
    }

    static QString newTableName(const CLI::Option *table)
    {
        if (text(table).isEmpty())
            throw UsageError(QStringLiteral("--table needs a name."));
        return text(table);
    }

    ImportOptions importOptions() const
    {
        return {text(import_.file), text(import_.database), newTableName(import_.table), !import_.replace->empty()};
    }

    FTableOptions ftableOptions() const
    {
        FTableOptions options;
        options.database = text(ftable_.database);
        options.table = newTableName(ftable_.table);
        if (!ftable_.denominators->empty()) {
            const QString typed = text(ftable_.denominators);
            bool ok = false;
            options.denominators = typed.toInt(&ok);
            if (!ok || options.denominators < 1 || options.denominators > MaxDenominators)
                throw UsageError(QStringLiteral("--denominators is a whole number from 1 to %1, not \"%2\".")
                                     .arg(QString::number(MaxDenominators), typed));
        }
        options.replace = !ftable_.replace->empty();
        return options;
    }

    struct Fit
    {
        CLI::App *app = nullptr;
        CLI::Option *database = nullptr;
        CLI::Option *table = nullptr;
        CLI::Option *filter = nullptr;
        CLI::Option *order = nullptr;
        CLI::Option *sql = nullptr;
        CLI::Option *response = nullptr;
        CLI::Option *controls = nullptr;
        CLI::Option *description = nullptr;
        CLI::Option *message = nullptr;
        CLI::Option *warnings = nullptr;
        CLI::Option *matrices = nullptr;
        CLI::Option *progress = nullptr;
        CLI::Option *format = nullptr;
    };
    struct Import
    {
        CLI::App *app = nullptr;
        CLI::Option *file = nullptr;
        CLI::Option *database = nullptr;
        CLI::Option *table = nullptr;
        CLI::Option *replace = nullptr;
    };
    struct FTable
    {
        CLI::App *app = nullptr;
        CLI::Option *database = nullptr;
        CLI::Option *table = nullptr;
        CLI::Option *denominators = nullptr;
        CLI::Option *replace = nullptr;
    };

    CLI::App program_;
    Fit fit_;
    Import import_;
    FTable ftable_;
};

} // namespace

Command parseCommandLine(std::vector<std::string> arguments)
{
    return CommandLine().parse(std::move(arguments));
}

} // namespace nuvo
