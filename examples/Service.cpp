// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <QUrlQuery>

#include <cstdio>

namespace {

/// GET /?response=TOTEMP&control=GNP&control=UNEMP fits these fields of the Longley table.
QJsonObject answer(const QUrlQuery &asked)
{
    TMLRTable longley;
    longley.SetDatabaseName("samples.db");
    longley.SetTableName("Longley");
    longley.ResponseVarY().SetField(asked.queryItemValue("response"));
    const QStringList controls = asked.allQueryItemValues("control").mid(0, 10);
    for (int k = 1; k <= controls.size(); ++k) {
        longley.ControlVar(k).SetField1(controls[k - 1]);
        longley.ControlVar(k).SetTransformation("None");
    }
    longley.Open();
    if (!longley.ReLoad())
        return QJsonObject{{"error", "These fields cannot be fitted."}};
    longley.Execute();
    QJsonArray coefficients;
    for (int j = 0; j <= longley.GetNumVars(); ++j)
        coefficients.append(longley.Getb(j));
    return QJsonObject{
        {"observations", longley.RecordsUsed()}, {"rSquared", longley.GetRSquared()}, {"coefficients", coefficients}};
}

void serve(QTcpSocket &socket)
{
    if (!socket.canReadLine() || socket.state() != QTcpSocket::ConnectedState)
        return;                                                         // more is to come, or it was answered already
    const QList<QByteArray> request = socket.readLine(4096).split(' '); // "GET /?response=... HTTP/1.1"
    QJsonObject result;
    try {
        result = answer(QUrlQuery(QUrl(QString::fromLatin1(request.value(1)))));
    } catch (const EPlatformError &error) {
        result = QJsonObject{{"error", error.Message()}};
    }
    const QByteArray text = QJsonDocument(result).toJson(QJsonDocument::Compact) + '\n';
    socket.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nConnection: close\r\nContent-Length: " +
                 QByteArray::number(text.size()) + "\r\n\r\n" + text);
    socket.disconnectFromHost();
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // components are widgets, but nobody looks at them
    QApplication application(argc, argv);
    QTcpServer server;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] { serve(*socket); });
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    });
    if (!server.listen(QHostAddress::LocalHost, argc > 1 ? QByteArray(argv[1]).toUShort() : 0)) {
        std::fprintf(stderr, "%s\n", qPrintable(server.errorString()));
        return 1;
    }
    std::printf("http://127.0.0.1:%d/\n", server.serverPort());
    std::fflush(stdout);
    return application.exec();
}
