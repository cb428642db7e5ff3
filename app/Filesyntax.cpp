// SPDX-License-Identifier: MIT
#include "app/Filesyntax.h"

#include "app/Usage.h"

namespace nuvo {
namespace {

constexpr int mostShown = 1000;

char separatorOf(const CLI::Option *option)
{
    const QString text = optionText(option);
    if (text == u"tab" || text == u"\\t")
        return '\t';
    const bool one = text.size() == 1 && text[0].unicode() < 0x80;
    // What numbers, names and quoted cells are written with parts no cells.
    if (!one || text[0].isLetterOrNumber() || QStringLiteral("\"'.+-_\n\r").contains(text[0]) || text[0].isNull())
        throw UsageError(QStringLiteral("%1 is one character, such as \",\", \";\" or \"|\", or \"tab\", not \"%2\".")
                             .arg(optionName(option), text));
    return char(text[0].unicode());
}

} // namespace

void FileSyntax::addFile(const char *help, const char *group)
{
    file_ = addValue("FILE.csv", "", help);
    separator_ = addValue("--separator", "CHAR", "What parts the cells: \",\", \";\", tab, ...", group);
    decimal_ = addValue("--decimal", ".|,", "The decimal sign of its numbers", group);
    encoding_ = addValue("--encoding", "NAME", "utf-8, utf-16le, utf-16be, windows-1252, latin-1", group);
    nulls_ = addValues("--null", "TEXT", "A cell that stands for a missing value, beside NA", group);
    head_ = addValue("--head", "N", "Show what is understood and N records; no more", group);
}

std::optional<CsvOptions> FileSyntax::readFile() const
{
    if (!hasFile()) {
        for (const CLI::Option *option : {separator_, decimal_, encoding_, nulls_, head_}) {
            if (isGiven(option))
                throw UsageError(
                    QStringLiteral("%1 belongs to a CSV file, and none is named.").arg(optionName(option)));
        }
        return {};
    }
    CsvOptions options;
    options.file = optionText(file_);
    if (isGiven(separator_))
        options.corrections.separator = separatorOf(separator_);
    if (isGiven(decimal_))
        options.corrections.decimal = oneOf<char>(decimal_, {{".", '.'}, {",", ','}});
    if (isGiven(encoding_))
        options.corrections.encoding = oneOf<CsvEncoding>(encoding_, csvEncodings);
    for (const QString &null : optionTexts(nulls_))
        options.corrections.nulls.push_back(null.trimmed().toStdString());
    if (isGiven(head_))
        options.head = wholeNumber(head_, 0, mostShown);
    return options;
}

} // namespace nuvo
