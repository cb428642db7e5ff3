// SPDX-License-Identifier: MIT
#include "support/Postgres.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

/// The example's program, started beside a sample database.
class Program
{
public:
    Program(const char *name, const QStringList &arguments)
    {
        EXPECT_TRUE(
            QFile::copy(QStringLiteral(BUILD_ROOT "/samples.db"), folder_.filePath(QStringLiteral("samples.db"))));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process_.setProcessEnvironment(environment);
        process_.setWorkingDirectory(folder_.path());
        process_.start(QStringLiteral(BUILD_ROOT "/examples/") + QLatin1String(name), arguments);
    }

    ~Program()
    {
        process_.kill();
        process_.waitForFinished(10000);
    }

    QProcess &process() { return process_; }
    /// The next line that it prints.
    QString line()
    {
        while (!process_.canReadLine()) {
            if (!process_.waitForReadyRead(60000))
                return {};
        }
        return QString::fromUtf8(process_.readLine()).trimmed();
    }

private:
    QTemporaryDir folder_;
    QProcess process_;
};

/// What the service says to a request, in pieces as a network may deliver them.
QJsonObject asked(const QUrl &service, const QList<QByteArray> &pieces)
{
    QTcpSocket socket;
    socket.connectToHost(service.host(), quint16(service.port()));
    EXPECT_TRUE(socket.waitForConnected(10000));
    for (const QByteArray &piece : pieces) {
        socket.write(piece);
        socket.waitForBytesWritten(10000);
        socket.waitForReadyRead(50); // so that they do not arrive as one
    }
    while (socket.state() == QTcpSocket::ConnectedState && socket.waitForReadyRead(60000)) {
    }
    const QByteArray answer = socket.readAll();
    EXPECT_TRUE(answer.startsWith("HTTP/1.1 200 OK\r\n")) << answer.constData();
    EXPECT_EQ(answer.count("HTTP/1.1"), 1) << answer.constData();
    return QJsonDocument::fromJson(answer.mid(answer.indexOf("\r\n\r\n"))).object();
}

} // namespace

TEST(ServiceExample, AnswersWithTheFiguresAndWithErrors)
{
    Program program("example_service", {});
    const QUrl service(program.line());
    ASSERT_GT(service.port(), 0) << qPrintable(service.toString()) << program.process().readAllStandardError().data();
    const QJsonObject fit =
        asked(service, {"GET /?response=TOTEMP&control=GNP&control=UNEMP HTTP/1.1\r\nHost: here\r\n\r\n"});
    EXPECT_EQ(fit[QStringLiteral("observations")].toInt(), 16);
    EXPECT_NEAR(fit[QStringLiteral("rSquared")].toDouble(), 0.980654626, 1e-9);
    EXPECT_EQ(fit[QStringLiteral("coefficients")].toArray().size(), 3);
    const QJsonObject again =
        asked(service, {"GET /?response=TOT", "EMP&control=GNP HTTP/1.1\r\n", "Host: here\r\n", "\r\n"});
    EXPECT_NEAR(again[QStringLiteral("rSquared")].toDouble(), 0.967373772, 1e-9);
    const QJsonObject wrong = asked(service, {"GET /?response=TOTEMP&control=GPN HTTP/1.1\r\n\r\n"});
    EXPECT_TRUE(wrong[QStringLiteral("error")].toString().startsWith(QStringLiteral("No field \"GPN\"")))
        << qPrintable(wrong[QStringLiteral("error")].toString());
    const QJsonObject empty = asked(service, {"\r\n"});
    EXPECT_TRUE(empty.contains(QStringLiteral("error")));
}

TEST(PostgresExample, HasTheServerAddUp)
{
    const QString url = PostgresServer::sharedUrl();
    ASSERT_FALSE(url.isEmpty());
    QProcess psql;
    psql.setStandardInputFile(QStringLiteral(SOURCE_ROOT "/samples/Longley.sql"));
    psql.setProcessChannelMode(QProcess::MergedChannels);
    psql.start(QStringLiteral("psql"),
               {QStringLiteral("-q"), QStringLiteral("-v"), QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-c"),
                QStringLiteral("DROP TABLE IF EXISTS longley"), QStringLiteral("-f"), QStringLiteral("-"), url});
    ASSERT_TRUE(psql.waitForFinished(60000));
    ASSERT_EQ(psql.exitCode(), 0) << psql.readAll().constData();

    Program program("example_postgres", {url});
    EXPECT_EQ(program.line(), QStringLiteral("16 records, R2 = 0.980655"));
    EXPECT_EQ(program.line(), QStringLiteral("b0 = 52382.16705"));
    ASSERT_TRUE(program.process().waitForFinished(60000));
    EXPECT_EQ(program.process().exitCode(), 0);
}
