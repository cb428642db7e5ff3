// SPDX-License-Identifier: MIT
#include "app/Syntax.h"

#include "app/Usage.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace nuvo {
namespace {

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

} // namespace

void setUsage(CLI::App &app, const char *usage)
{
    app.formatter(std::make_shared<HelpLayout>(usage));
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
