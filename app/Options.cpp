#include "app/Options.h"

#include "app/Usage.h"
#include "engine/kernel/Maxdata.h"
#include "present/Reportdocument.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <utility>

namespace nuvo {
namespace {

constexpr char programUsage[] = R"(Usage:
  nuvostat fit --database DB (--table NAME | --sql TEXT) --response TERM
           [--control TERM]... [OPTIONS]
  nuvostat select METHOD --database DB (--table NAME | --sql TEXT)
           --response TERM [--control TERM]... [OPTIONS]
  nuvostat run FORM.ui [--format text|json]
  nuvostat import FILE.csv --database DB --table NAME [--replace]
  nuvostat ftable --database DB --table NAME [--denominators N] [--replace]
)";

constexpr char fitUsage[] = R"(Usage:
  nuvostat fit --database DB --table NAME [--filter EXPRESSION]
           [--order FIELD[,FIELD...]] VARIABLES [OPTIONS]
  nuvostat fit --database DB --sql TEXT VARIABLES [OPTIONS]
VARIABLES is --response TERM [--control TERM]...
)";

constexpr char selectUsage[] = R"(Usage:
  nuvostat select METHOD --database DB --table NAME [--filter EXPRESSION]
           [--order FIELD[,FIELD...]] VARIABLES [OPTIONS]
  nuvostat select METHOD --database DB --sql TEXT VARIABLES [OPTIONS]
METHOD is optimal, stepwise, backward or forward.
VARIABLES is --response TERM [--control TERM]...
)";

constexpr char runUsage[] = R"(Usage:
  nuvostat run FORM.ui [--format text|json]
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
  nuvostat select stepwise --database demo.db --table Longley --response y
           --control x2 --control x3 --control x4
  nuvostat select --help

Exit status: 0 every run came out; 1 a run came to no result; 2 the command line
is wrong; 3 the database, a table, a field, a form, a conversion or a file that
is to be written failed.)";

constexpr char termHelp[] = R"(
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
)";

constexpr char fitFooter[] = R"(
Report and plots are written when a fit came out, each file whole or not at all,
before anything is printed; that needs no display. A report's .png is a picture
of the report window. The plots are scatter-x1.png,
residual-order.png, residual-x1.png, residual-response.png, residual-fitted.png,
ecdf.png and so on, 327 x 185 pixels.

Examples:
  nuvostat fit --database demo.db --table Longley --response y
           --control x2 --control 'Ln(x3)' --matrices
  nuvostat fit --database postgresql://ann@localhost/shop --format json
           --sql 'SELECT price, size, age FROM houses WHERE price > 0'
           --response 'Ln(price)' --control size --control 'age^2'
  nuvostat fit --database demo.db --table Longley --response y --control x2
           --save-report longley.pdf --save-plots plots)";

constexpr char selectFooter[] = R"(
The methods start from a fit with all variables and leave the model that they
choose, which is printed after their steps and their report:
  optimal   fits every subset and keeps the best --models by --criterion; one
            place always goes to the model with all variables, so ask for more
            than one
  stepwise  adds the variable with the smallest residual mean square while its
            partial F is above --f-in, and takes out those whose squared t is
            below --f-out
  backward  takes out one variable after the other while F is above --f
  forward   adds one variable after the other while F is above --f
The thresholds come from an F table (--f-table, made by nuvostat ftable) where
one is given: from its column "95 Percent", and for the variables that stepwise
adds from the column --f-percent; where that column is missing or not named,
--f-out stands in. What is not given is the component's default: nondominated,
one model, and 4 for each threshold.

Examples:
  nuvostat select stepwise --database demo.db --table Longley --response y
           --control x2 --control x3 --control x4 --f-in 3.5 --f-out 3
  nuvostat select optimal --database demo.db --table Longley --response y
           --control x2 --control x3 --criterion min-s2 --models 5)";

constexpr char runFooter[] = R"(
FORM.ui is a form of Qt Designer with our components on it. In the form's order
every regression component is opened, loaded and fitted, then every selection
component is run. Nothing else of the form is made, and no file is opened
because the form names it, except the databases of its components; a relative
path of a database starts in the working directory, as it does in a program.

Examples:
  nuvostat run longley.ui
  nuvostat run longley.ui --format json)";

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
        program_.set_help_flag("-h,--help", "Show this help; COMMAND --help shows a command's");
        program_.set_version_flag("--version", "nuvostat " NUVO_VERSION, "Show the version");
        program_.require_subcommand(1);
        program_.footer(programFooter);
        program_.formatter(std::make_shared<HelpLayout>(programUsage));

        fit_.app =
            command("fit", "Fit a regression and print its report", fitUsage, std::string(termHelp) + fitFooter);
        addModel(fit_);
        fit_.message = value(fit_.app, "--message", "TEXT", "A message for the report's foot", "Options");
        fit_.warnings = flag(fit_.app, "--warnings", "Warn when records are too many to be used");
        fit_.matrices = flag(fit_.app, "--matrices", "Print the coefficients' covariances and correlations");

        fit_.saveReport =
            value(fit_.app, "--save-report", "FILE", "Write the report: .pdf, .html, .txt or .png", "Options");
        fit_.savePlots =
            value(fit_.app, "--save-plots", "DIR", "Write all plots as PNG; makes DIR if need be", "Options");
        fit_.show = flag(fit_.app, "--show", "Show the report in a window, until it is closed");

        select_.app =
            command("select", "Choose a regression's variables", selectUsage, std::string(termHelp) + selectFooter);
        select_.method =
            value(select_.app, "METHOD", "", "optimal, stepwise, backward or forward", "Method")->required();
        addModel(select_);
        select_.criterion = value(select_.app, "--criterion", "NAME", "nondominated, min-s2 or max-f", "optimal");
        select_.models = value(select_.app, "--models", "N", "How many models to keep, up to 20", "optimal");
        select_.fIn = value(select_.app, "--f-in", "X", "The threshold to enter", "stepwise");
        select_.fOut = value(select_.app, "--f-out", "X", "The threshold to stay", "stepwise");
        select_.fPercent =
            value(select_.app, "--f-percent", "COLUMN", "\"1 Percent\", \"5 Percent\" or \"10 Percent\"", "stepwise");
        select_.f = value(select_.app, "--f", "X", "The threshold", "backward and forward");
        select_.fTable = value(select_.app, "--f-table", "NAME", "A table of F quantiles in the same database",
                               "stepwise, backward and forward");

        run_.app = command("run", "Fit and select what a form of Qt Designer holds", runUsage, runFooter);
        run_.form = value(run_.app, "FORM.ui", "", "The form to load", "Options")->required();
        run_.format = value(run_.app, "--format", "text|json", "What to print; text unless told", "Options");

        import_.app = command("import", "Make a table from a CSV file", importUsage, importFooter);
        import_.file = value(import_.app, "FILE.csv", "", "The file to read", "Options")->required();
        import_.database = value(import_.app, "--database", "DB", databaseHelp, "Options")->required();
        import_.table = value(import_.app, "--table", "NAME", "The table to make", "Options")->required();
        import_.replace = flag(import_.app, "--replace", "Replace a table that is there already");

        ftable_.app = command("ftable", "Make a table of F quantiles", ftableUsage, ftableFooter);
        ftable_.database = value(ftable_.app, "--database", "DB", databaseHelp, "Options")->required();
        ftable_.table = value(ftable_.app, "--table", "NAME", "The table to make", "Options")->required();
        ftable_.denominators =
            value(ftable_.app, "--denominators", "N", "Up to how many; 2500 unless told", "Options");
        ftable_.replace = flag(ftable_.app, "--replace", "Replace a table that is there already");
    }
    // CLI11 keeps pointers into it.
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;

    Command parse(std::vector<std::string> arguments)
    {
        if (arguments.empty())
            throw UsageError(
                QStringLiteral("A command is missing: %1. See \"nuvostat --help\".").arg(commandNames(" or ")));
        const std::string name = arguments.front();
        const std::vector<CLI::App *> named =
            program_.get_subcommands([&name](const CLI::App *app) { return app->get_name() == name; });
        CLI::App *const command = named.empty() ? nullptr : named.front();
        if (command == nullptr && !name.starts_with('-'))
            throw UsageError(QStringLiteral("There is no command \"%1\", but %2. See \"nuvostat --help\".")
                                 .arg(QString::fromStdString(name), commandNames(" and ")));
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
    /// What fit and select have in common.
    struct Model
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
        CLI::Option *progress = nullptr;
        CLI::Option *format = nullptr;
    };

    CLI::App *command(const char *name, const char *description, const char *usage, const std::string &footer)
    {
        CLI::App *app = program_.add_subcommand(name, description);
        app->formatter(std::make_shared<HelpLayout>(usage));
        app->footer(footer);
        app->set_help_flag("-h,--help", "Show this help");
        app->group("Commands");
        return app;
    }

    static void addModel(Model &model)
    {
        model.database = value(model.app, "--database", "DB", databaseHelp, "DATA")->required();
        model.table = value(model.app, "--table", "NAME", "A table or view of the database", "DATA");
        model.filter = value(model.app, "--filter", "EXPRESSION", "An SQL condition on the table's records", "DATA");
        model.order = value(model.app, "--order", "FIELD[,FIELD...]", "The order of the table's records", "DATA");
        model.sql = value(model.app, "--sql", "TEXT", "In place of a table: SELECT ...", "DATA");
        model.response = value(model.app, "--response", "TERM", "The response variable Y", "VARIABLES")->required();
        model.controls =
            value(model.app, "--control", "TERM", "A control variable X; up to ten of them", "VARIABLES");
        model.controls->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        model.description =
            value(model.app, "--description", "TEXT", "What it is about, for the report's head", "Options");
        model.progress = flag(model.app, "--progress", "Draw a progress bar on a terminal");
        model.format = value(model.app, "--format", "text|json", "What to print; text unless told", "Options");
    }

    /// "fit, select or run"
    QString commandNames(const char *last) const
    {
        QStringList names;
        for (const CLI::App *app : program_.get_subcommands({}))
            names.append(QString::fromStdString(app->get_name()));
        const QString end = names.takeLast();
        return names.join(QStringLiteral(", ")) + QString::fromLatin1(last) + end;
    }

    Command read(const CLI::App *command) const
    {
        if (command == fit_.app)
            return fitOptions();
        if (command == select_.app)
            return selectOptions();
        if (command == run_.app)
            return RunOptions{text(run_.form), outputFormat(run_.format)};
        if (command == import_.app)
            return importOptions();
        return ftableOptions();
    }

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
            if (option->get_multi_option_policy() != CLI::MultiOptionPolicy::TakeAll &&
                option->get_expected_min() > 0 && option->count() > 1)
                return QStringLiteral("%1 is there %2 times; it can be given once.").arg(name).arg(option->count());
            if (told.startsWith(name + u':'))
                return QStringLiteral("%1 needs a value.").arg(name);
        }
        return QStringLiteral("--%1 takes no value.").arg(told.section(u' ', 0, 0));
    }

    static OutputFormat outputFormat(const CLI::Option *option)
    {
        const QString format = option->empty() ? QStringLiteral("text") : text(option);
        if (format != u"text" && format != u"json")
            throw UsageError(QStringLiteral("--format is text or json, not \"%1\".").arg(format));
        return format == u"json" ? OutputFormat::Json : OutputFormat::Text;
    }

    static void readModel(const Model &model, ModelOptions &options)
    {
        options.database = text(model.database);
        options.table = optionalText(model.table);
        options.sql = optionalText(model.sql);
        if (options.table && options.sql)
            throw UsageError(QStringLiteral("--table and --sql exclude each other."));
        if (!options.table && !options.sql)
            throw UsageError(QStringLiteral("--table or --sql is required."));
        if (options.sql && (!model.filter->empty() || !model.order->empty()))
            throw UsageError(
                QStringLiteral("--filter and --order belong to --table; a statement has its own WHERE and "
                               "ORDER BY."));
        options.filter = text(model.filter);
        options.order = text(model.order);
        options.response = parseResponse(text(model.response));
        if (model.controls->count() > MaxControls)
            throw UsageError(
                QStringLiteral("--control is there %1 times; a regression has up to %2 control variables.")
                    .arg(model.controls->count())
                    .arg(MaxControls));
        for (const std::string &control : model.controls->results())
            options.controls.append(parseControl(QString::fromStdString(control)));
        options.description = text(model.description);
        options.progress = !model.progress->empty();
        options.format = outputFormat(model.format);
    }

    FitOptions fitOptions() const
    {
        FitOptions options;
        readModel(fit_, options);
        options.message = text(fit_.message);
        options.warnings = !fit_.warnings->empty();
        options.matrices = !fit_.matrices->empty();
        options.saveReport = text(fit_.saveReport);
        if (!fit_.saveReport->empty() && !isReportFile(options.saveReport))
            throw UsageError(
                QStringLiteral("--save-report takes a name that ends in .pdf, .html, .txt or .png, not \"%1\".")
                    .arg(options.saveReport));
        options.savePlots = text(fit_.savePlots);
        if (!fit_.savePlots->empty() && options.savePlots.isEmpty())
            throw UsageError(QStringLiteral("--save-plots takes the name of a directory, not an empty text."));
        options.show = !fit_.show->empty();
        return options;
    }

    SelectOptions selectOptions() const
    {
        using Method = SelectOptions::Method;
        SelectOptions options;
        options.method = oneOf<Method>(select_.method, {{"optimal", Method::Optimal},
                                                        {"stepwise", Method::Stepwise},
                                                        {"backward", Method::Backward},
                                                        {"forward", Method::Forward}});
        readModel(select_, options);
        refuseForeign({select_.criterion, select_.models}, options.method == Method::Optimal);
        refuseForeign({select_.fIn, select_.fOut, select_.fPercent}, options.method == Method::Stepwise);
        refuseForeign({select_.f}, options.method == Method::Backward || options.method == Method::Forward);
        refuseForeign({select_.fTable}, options.method != Method::Optimal);
        if (!select_.criterion->empty())
            options.criterion =
                oneOf<TOptimizationType>(select_.criterion, {{"nondominated", TOptimizationType::Nondominated},
                                                             {"min-s2", TOptimizationType::MinSsquared},
                                                             {"max-f", TOptimizationType::MaxFValue}});
        if (!select_.models->empty())
            options.models = wholeNumber(select_.models, INT_MIN, INT_MAX);
        options.f = number(select_.f);
        options.fIn = number(select_.fIn);
        options.fOut = number(select_.fOut);
        options.fPercent = optionalText(select_.fPercent);
        options.fTable = optionalText(select_.fTable);
        return options;
    }

    void refuseForeign(std::initializer_list<const CLI::Option *> options, bool belong) const
    {
        for (const CLI::Option *option : options) {
            if (!belong && !option->empty())
                throw UsageError(QStringLiteral("%1 belongs to %2, not to %3.")
                                     .arg(QString::fromStdString(option->get_name()),
                                          QString::fromStdString(option->get_group()), text(select_.method)));
        }
    }

    template <class Value>
    static Value oneOf(const CLI::Option *option, std::initializer_list<std::pair<const char *, Value>> choices)
    {
        QStringList names;
        for (const auto &[name, value] : choices) {
            if (text(option) == QLatin1StringView(name))
                return value;
            names.append(QString::fromLatin1(name));
        }
        const QString last = names.takeLast();
        throw UsageError(QStringLiteral("%1 is %2 or %3, not \"%4\".")
                             .arg(QString::fromStdString(option->get_name()), names.join(QStringLiteral(", ")), last,
                                  text(option)));
    }

    static int wholeNumber(const CLI::Option *option, int least, int most)
    {
        bool ok = false;
        const int number = text(option).toInt(&ok);
        if (!ok || number < least || number > most)
            throw UsageError(QStringLiteral("%1 is a whole number from %2 to %3, not \"%4\".")
                                 .arg(QString::fromStdString(option->get_name()), QString::number(least),
                                      QString::number(most), text(option)));
        return number;
    }

    static std::optional<double> number(const CLI::Option *option)
    {
        if (option->empty())
            return std::nullopt;
        bool ok = false;
        const double value = text(option).toDouble(&ok);
        if (!ok)
            throw UsageError(QStringLiteral("%1 is a number, not \"%2\".")
                                 .arg(QString::fromStdString(option->get_name()), text(option)));
        return value;
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
        if (!ftable_.denominators->empty())
            options.denominators = wholeNumber(ftable_.denominators, 1, MaxDenominators);
        options.replace = !ftable_.replace->empty();
        return options;
    }

    struct Fit : Model
    {
        CLI::Option *message = nullptr;
        CLI::Option *warnings = nullptr;
        CLI::Option *matrices = nullptr;
        CLI::Option *saveReport = nullptr;
        CLI::Option *savePlots = nullptr;
        CLI::Option *show = nullptr;
    };
    struct Select : Model
    {
        CLI::Option *method = nullptr;
        CLI::Option *criterion = nullptr;
        CLI::Option *models = nullptr;
        CLI::Option *f = nullptr;
        CLI::Option *fIn = nullptr;
        CLI::Option *fOut = nullptr;
        CLI::Option *fPercent = nullptr;
        CLI::Option *fTable = nullptr;
    };
    struct Run
    {
        CLI::App *app = nullptr;
        CLI::Option *form = nullptr;
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
    Select select_;
    Run run_;
    Import import_;
    FTable ftable_;
};

} // namespace

Command parseCommandLine(std::vector<std::string> arguments)
{
    return CommandLine().parse(std::move(arguments));
}

} // namespace nuvo
