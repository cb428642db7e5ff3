// SPDX-License-Identifier: MIT
// A form that the workbench has saved, in Qt Designer itself (session/Openedwalk.cpp).

#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Everything that a program says, which has to end well.
QByteArray said(const QString &program, const QStringList &words, const QString &folder, const QString &form = {})
{
    QProcess process;
    process.setWorkingDirectory(folder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!form.isEmpty()) {
        environment.insert(u("NUVO_FORM"), form);
        if (*PRELOAD != 0) { // Qt Designer itself is built without sanitizers
            environment.insert(u("NUVO_PRELOAD"), u(PRELOAD));
            environment.insert(u("ASAN_OPTIONS"), u("detect_leaks=0"));
        }
    }
    process.setProcessEnvironment(environment);
    process.start(program, words);
    EXPECT_TRUE(process.waitForFinished(100000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << program.toStdString() << '\n' << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}

QByteArray contentsOf(const QString &name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

} // namespace

TEST(WorkbenchForm, IsOpenedAndSavedByQtDesignerWithoutAComplaintAndRunsAsBefore)
{
    const QTemporaryDir folder;
    const QString database = folder.filePath(u("samples.db"));
    const QString form = folder.filePath(u("model.ui"));
    const QString session = folder.filePath(u("session"));
    ASSERT_TRUE(QFile::copy(u(SAMPLES), database));
    said(u(WORKBENCH_FORM), {folder.filePath(u("sitting")), database, form}, folder.path());
    ASSERT_TRUE(QFile::exists(form));
    said(u(SESSION_SCRIPT), QStringList{u(DESIGNER), session, database} + u(PLUGINS).split(u'|'), folder.path(),
         form);

    const QJsonObject seen = QJsonDocument::fromJson(contentsOf(session + u("/seen.json"))).object();
    EXPECT_EQ(seen[u("boxes")].toArray(), QJsonArray());
    EXPECT_EQ(seen[u("messages")].toArray(), QJsonArray());
    EXPECT_EQ(seen[u("file")].toString(), u("form.ui"));
    EXPECT_FALSE(seen[u("dirtyAfterOpening")].toBool(true));
    const QJsonArray components = seen[u("components")].toArray();
    ASSERT_EQ(components.size(), 2);
    EXPECT_EQ(components[0][u("name")].toString() + u' ' + components[0][u("class")].toString(),
              u("regression TMLRTable"));
    EXPECT_EQ(components[1][u("name")].toString() + u' ' + components[1][u("class")].toString(),
              u("choice TOptimizeMLR"));
    for (const QJsonValue component : components) {
        for (const char *const what : {"managed", "visible", "designing"})
            EXPECT_TRUE(component[QLatin1String(what)].toBool()) << what;
    }
    EXPECT_EQ(seen[u("DatabaseName")].toString(), u("samples.db"));
    EXPECT_EQ(seen[u("TableName")].toString(), u("Longley"));
    EXPECT_EQ(seen[u("Filter")].toString(), u("YEAR > 1948"));
    EXPECT_EQ(seen[u("ResponseVarY")].toString(), u("TOTEMP"));
    EXPECT_EQ(seen[u("ControlVar01")].toString(), u("Ln(GNP)"));
    EXPECT_EQ(seen[u("ControlVar02")].toString(), u("UNEMP"));
    EXPECT_EQ(seen[u("Dataset")].toString(), u("regression"));
    EXPECT_TRUE(seen[u("dirtyAfterChange")].toBool());
    EXPECT_FALSE(seen[u("dirtyAfterSave")].toBool(true));
    const QByteArray log = contentsOf(session + u("/designer.log"));
    for (const QByteArray &line : log.split('\n')) {
        for (const char *const complaint : {"designer:", "error", "warning", "cannot", "unknown", "failed"})
            EXPECT_FALSE(line.toLower().contains(complaint)) << line.toStdString();
    }

    const QByteArray saved = contentsOf(session + u("/saved.ui"));
    EXPECT_TRUE(saved.contains("Opened and saved"));
    EXPECT_NE(saved, contentsOf(form));
    const auto run = [](const QString &name, const QString &in) {
        return QJsonDocument::fromJson(said(u(NUVOSTAT), {u("run"), name, u("--format"), u("json")}, in)).object();
    };
    const QJsonObject before = run(form, folder.path());
    const QJsonObject after = run(session + u("/saved.ui"), session);
    QJsonObject fitted = after[u("regressions")][0].toObject();
    EXPECT_EQ(fitted[u("description")].toString(), u("Opened and saved"));
    fitted[u("description")] = QString();
    EXPECT_EQ(fitted[u("observations")].toInt(), 14);
    EXPECT_EQ(fitted, before[u("regressions")][0].toObject());
    const QJsonValue chosen = after[u("selections")][0][u("bySize")];
    EXPECT_EQ(chosen.toArray().size(), 3);
    EXPECT_EQ(chosen, before[u("selections")][0][u("bySize")]);
}
