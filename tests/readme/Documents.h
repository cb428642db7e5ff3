// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <ostream>
#include <string>
#include <vector>

/// Reading the documents of the project, in which commands, programs and links are shown.
namespace documents {

/// The folder of the sources.
QString root();

/// The lines of a file; a test failure when it cannot be read.
QStringList linesOf(const QString &path);

/// A fenced block of a Markdown file.
struct Block
{
    QString language;
    /// The line in front of the fence.
    QString heading;
    QStringList lines;
};
std::vector<Block> blocksOf(const QStringList &text);

/// What a console block shows: a command after "$ " and the lines that it prints.
struct Command
{
    QString text;
    QStringList output;
};
std::vector<Command> commandsOf(const Block &block);

/// A shown line "..." stands for any lines, "..." within a line for any text.
bool matches(const QStringList &shown, const QString &printed);

/// Whether the lines stand in a program one after the other, as they are or all of them further in.
bool isPartOf(const QStringList &shown, const QStringList &program);

/// Documents that are read one after the other, so that a command can use what an earlier one has made.
struct Tour
{
    std::string name;
    /// Paths from the root; of the guide all pages in the order of its index.
    QStringList pages;
    /// Whether its reader begins in an empty folder, with the program alone.
    bool bare = false;
};
std::vector<Tour> tours();
/// How GoogleTest shows one.
void PrintTo(const Tour &tour, std::ostream *stream);

/// Every Markdown file of the project, with its path.
QStringList allPages();

/// The names that the headings of a page have as the end of a link: small letters, blanks as '-'.
QStringList anchorsOf(const QStringList &text);

} // namespace documents
