// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <vector>

/// What a finished run of the program left.
struct Outcome
{
    int status = -1; ///< -1 when a signal ended it
    QString out;
    QString err;
};

/// The program that is tested, started with these arguments; an empty working directory is the test's own.
std::unique_ptr<QProcess> startProgram(const QStringList &arguments, const QString &directory = {});
/// Waits until the program answers to Ctrl-C in its own way.
void waitForSignalHandler(const QProcess &process);
Outcome finish(QProcess &process);
Outcome runProgram(const QStringList &arguments, const QString &directory = {});
/// A shell command in which $nuvostat stands for the program.
Outcome runShell(const QString &command, const QString &directory = {});

// The JSON that the program prints, its members in order.
using Json = nlohmann::ordered_json;
Json parsed(const Outcome &outcome);
std::vector<std::string> keys(const Json &object);
QString text(const Json &value);

/// A report with the date, the time of day and the processing time of which it tells set to fixed ones.
QString withoutTimes(QString report);
