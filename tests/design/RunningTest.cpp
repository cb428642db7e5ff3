// SPDX-License-Identifier: MIT
// The form of the examples, run in all the ways that a form can be run.

#include "support/Print.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

namespace {

class RunningAForm : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder_.isValid());
        for (const char *file : {BUILD_ROOT "/samples.db", SOURCE_ROOT "/examples/Designed.ui"}) {
            const QString path = QString::fromUtf8(file);
            ASSERT_TRUE(QFile::copy(path, folder_.filePath(QFileInfo(path).fileName())));
        }
    }

    QString run(const QString &program, const QStringList &arguments) const
    {
        return run(program, arguments, folder_.path());
    }

    QString run(const QString &program, const QStringList &arguments, const QString &workingFolder) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(STAGED_PLUGINS));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(workingFolder);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    QTemporaryDir folder_;
};

} // namespace

TEST_F(RunningAForm, BuiltInLoadedAndOnTheCommandLineItGivesTheSameFigures)
{
    const QString built = run(QStringLiteral(BUILD_ROOT "/examples/example_designed"), {});
    const QString loaded = run(QStringLiteral(BUILD_ROOT "/examples/example_loaded"), {});
    EXPECT_EQ(built, loaded);

    const QString json =
        run(QStringLiteral(BUILD_ROOT "/bin/nuvostat"), {QStringLiteral("run"), QStringLiteral("Designed.ui"),
                                                         QStringLiteral("--format"), QStringLiteral("json")});
    const QJsonObject object = QJsonDocument::fromJson(json.toUtf8()).object();
    const QJsonObject regression = object[QStringLiteral("regressions")][0].toObject();
    const QJsonArray coefficients = regression[QStringLiteral("coefficients")].toArray();
    ASSERT_EQ(coefficients.size(), 4) << qPrintable(json);
    QString expected;
    for (int j = 0; j < coefficients.size(); ++j)
        expected += QString::asprintf("B%d = %.15g\n", j, coefficients[j].toDouble());
    const QJsonValue selected = object[QStringLiteral("selections")][0][QStringLiteral("selected")];
    expected += QStringLiteral("Stepwise regression keeps %1 of the variables.\n")
                    .arg(selected[QStringLiteral("controls")].toInt(-1));
    EXPECT_EQ(built, expected);
}

TEST_F(RunningAForm, AFormThatIsLoadedFindsItsDatabaseBesideItselfWhereverTheProgramWasStarted)
{
    const QTemporaryDir elsewhere;
    const QString form = folder_.filePath(QStringLiteral("Designed.ui"));
    const QString here = run(QStringLiteral(BUILD_ROOT "/examples/example_loaded"), {});
    EXPECT_TRUE(here.startsWith(QStringLiteral("B0 = -2741090.88"))) << qPrintable(here);
    EXPECT_EQ(run(QStringLiteral(BUILD_ROOT "/examples/example_loaded"), {form}, elsewhere.path()), here);
}
