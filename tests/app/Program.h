#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <memory>

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
