// SPDX-License-Identifier: MIT
#pragma once

#include "app/Format.h"

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>
#include <string>
#include <utility>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace nuvo {

/// How the command line knows a command: its usage and its options. Every command derives from it and reads its
/// options once the line is parsed. What an option holds that it must not hold is a UsageError of one sentence.
class CommandSyntax
{
public:
    /// \param program keeps the command and its options
    CommandSyntax(CLI::App &program, const char *name, const char *description, const char *usage,
                  const std::string &footer);

    const CLI::App *app() const { return app_; }

protected:
    /// An option with a value; a name without "--" is an argument by its place.
    CLI::Option *addValue(const char *name, const char *type, const char *help, const char *group = "Options");
    CLI::Option *addRequired(const char *name, const char *type, const char *help, const char *group = "Options");
    /// An option that can be given several times; read with optionTexts()
    CLI::Option *addValues(const char *name, const char *type, const char *help, const char *group = "Options");
    CLI::Option *addFlag(const char *name, const std::string &help);
    /// --database
    CLI::Option *addDatabase(const char *group = "Options");
    /// --format; read with outputFormat()
    CLI::Option *addFormat();

private:
    CLI::App *app_;
};

/// The usage that an application's help tells above its options, which are added afterwards.
void setUsage(CLI::App &app, const char *usage);

bool isGiven(const CLI::Option *option);
QString optionName(const CLI::Option *option);
/// The heading under which the help lists it.
QString optionGroup(const CLI::Option *option);
/// The value; empty when the option is not there.
QString optionText(const CLI::Option *option);
QStringList optionTexts(const CLI::Option *option);
std::optional<QString> optionalText(const CLI::Option *option);
std::optional<double> optionalNumber(const CLI::Option *option);
/// \pre the option is there
int wholeNumber(const CLI::Option *option, int least, int most);
OutputFormat outputFormat(const CLI::Option *option);
/// The name of a table that is to be made.
QString newTableName(const CLI::Option *option);

/// \throws UsageError with "--criterion is a, b or c, not "d"."
[[noreturn]] void refuseChoice(const CLI::Option *option, QStringList names);

/// The value that belongs to a name. \pre the option is there
template <class Value>
Value oneOf(const CLI::Option *option, std::initializer_list<std::pair<const char *, Value>> choices)
{
    QStringList names;
    for (const auto &[name, value] : choices) {
        if (optionText(option) == QLatin1StringView(name))
            return value;
        names.append(QString::fromLatin1(name));
    }
    refuseChoice(option, std::move(names));
}

} // namespace nuvo
