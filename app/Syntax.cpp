// SPDX-License-Identifier: MIT
#include "app/Syntax.h"

#include "app/Usage.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <vector>

namespace nuvo {
namespace {

/// A layout of our own: CLI11's changes from version to version, and breaks the lines of what is laid out already.
class HelpLayout : public CLI::FormatterBase
{
public:
    explicit HelpLayout(std::string usage) : usage_(std::move(usage)) {}

    std::string make_help(const CLI::App *app, std::string, CLI::AppFormatMode) const override
    {
        std::string text = app->get_description() + "\n\n" + usage_;
        text +=
            group("Arguments", app->get_options([](const CLI::Option *option) { return option->get_positional(); }));
        for (const std::string &name : app->get_groups())
            text += group(name, app->get_options([&name](const CLI::Option *option) {
                return option->nonpositional() && option->get_group() == name;
            }));
        std::string commands;
        for (const CLI::App *command : app->get_subcommands({}))
            commands += line(command->get_name(), command->get_description());
        if (!commands.empty())
            text += "\nCommands:\n" + commands;
        return text + app->get_footer() + '\n';
    }

private:
    static std::string group(const std::string &name, const std::vector<const CLI::Option *> &options)
    {
        std::string text;
        for (const CLI::Option *option : options) {
            const bool isValue = option->get_type_size() != 0 && !option->get_type_name().empty();
            text += line(option->get_name(option->get_positional(), true) +
                             (isValue ? ' ' + option->get_type_name() : std::string()) +
                             (option->get_required() ? " REQUIRED" : ""),
                         option->get_description());
        }
        return text.empty() ? text : '\n' + name + ":\n" + text;
    }

    static std::string line(const std::string &name, const std::string &meaning)
    {
        constexpr std::size_t column = 28;
        const std::string left = "  " + name;
        const std::string gap =
            left.size() < column ? std::string(column - left.size(), ' ') : '\n' + std::string(column, ' ');
        return left + gap + meaning + '\n';
    }

    std::string usage_;
};

} // namespace

void setUsage(CLI::App &app, const char *usage)
{
    app.formatter(std::make_shared<HelpLayout>(usage));
    app.option_defaults()->group("Options"); // newer versions of CLI11 write it in capitals
}

CommandSyntax::CommandSyntax(CLI::App &program, const char *name, const char *description, const char *usage,
                             const std::string &footer)
    : app_(program.add_subcommand(name, description))
{
    setUsage(*app_, usage);
    app_->footer(footer);
    app_->set_help_flag("-h,--help", "Show this help");
    app_->group("Commands");
}

CLI::Option *CommandSyntax::addValue(const char *name, const char *type, const char *help, const char *group)
{
    return app_->add_option(name, CLI::callback_t(), help)->type_name(type)->group(group);
}

CLI::Option *CommandSyntax::addRequired(const char *name, const char *type, const char *help, const char *group)
{
    return addValue(name, type, help, group)->required();
}

CLI::Option *CommandSyntax::addValues(const char *name, const char *type, const char *help, const char *group)
{
    return addValue(name, type, help, group)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option *CommandSyntax::addFlag(const char *name, const std::string &help)
{
    return app_->add_flag(name, help)->disable_flag_override();
}

CLI::Option *CommandSyntax::addDatabase(const char *group)
{
    return addRequired("--database", "DB", "SQLite file, or URL of a server", group);
}

CLI::Option *CommandSyntax::addFormat()
{
    return addValue("--format", "text|report|json", "What to print; text unless told");
}

bool isGiven(const CLI::Option *option)
{
    return !option->empty();
}

QString optionName(const CLI::Option *option)
{
    return QString::fromStdString(option->get_name());
}

QString optionGroup(const CLI::Option *option)
{
    return QString::fromStdString(option->get_group());
}

QString optionText(const CLI::Option *option)
{
    return option->empty() ? QString() : QString::fromStdString(option->results().back());
}

QStringList optionTexts(const CLI::Option *option)
{
    QStringList texts;
    for (const std::string &text : option->results())
        texts.append(QString::fromStdString(text));
    return texts;
}

std::optional<QString> optionalText(const CLI::Option *option)
{
    return option->empty() ? std::nullopt : std::optional(optionText(option));
}

std::optional<double> optionalNumber(const CLI::Option *option)
{
    if (option->empty())
        return std::nullopt;
    bool ok = false;
    const double value = optionText(option).toDouble(&ok);
    if (!ok)
        throw UsageError(QStringLiteral("%1 is a number, not \"%2\".").arg(optionName(option), optionText(option)));
    return value;
}

int wholeNumber(const CLI::Option *option, int least, int most)
{
    bool ok = false;
    const int number = optionText(option).toInt(&ok);
    if (!ok || number < least || number > most)
        throw UsageError(
            QStringLiteral("%1 is a whole number from %2 to %3, not \"%4\".")
                .arg(optionName(option), QString::number(least), QString::number(most), optionText(option)));
    return number;
}

OutputFormat outputFormat(const CLI::Option *option)
{
    if (option->empty())
        return OutputFormat::Text;
    return oneOf<OutputFormat>(
        option, {{"text", OutputFormat::Text}, {"report", OutputFormat::Report}, {"json", OutputFormat::Json}});
}

QString newTableName(const CLI::Option *option)
{
    if (optionText(option).isEmpty())
        throw UsageError(QStringLiteral("--table needs a name."));
    return optionText(option);
}

void refuseChoice(const CLI::Option *option, QStringList names)
{
    const QString last = names.takeLast();
    throw UsageError(QStringLiteral("%1 is %2 or %3, not \"%4\".")
                         .arg(optionName(option), names.join(QStringLiteral(", ")), last, optionText(option)));
}

} // namespace nuvo
