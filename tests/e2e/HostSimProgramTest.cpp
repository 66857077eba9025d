#include "protocol/Requests.h"
#include "support/ScratchProgramFolder.h"
#include "support/TerminalPeer.h"

#include <QProcess>
#include <QTcpServer>

#include <gtest/gtest.h>

namespace corvane {
namespace {

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

TEST(HostSimProgram, ServesATerminalOnThePortItIsGiven)
{
    test::ScratchProgramFolder folder;
    const quint16 port = freePort();
    QProcess host;
    host.start(QStringLiteral(CORVANE_HOSTSIM_EXE),
        {QStringLiteral("--port"), QString::number(port), QStringLiteral("--verbose"), QStringLiteral("--host-version"),
            QStringLiteral("4.11")});
    ASSERT_TRUE(host.waitForReadyRead(10000));
    EXPECT_TRUE(host.readLine().startsWith("Simulated DNC host listening on 127.0.0.1:" + QByteArray::number(port)));

    test::TerminalPeer terminal;
    ASSERT_TRUE(terminal.connectTo(port));
    const auto version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Host_Version(*version), "4.11");

    QByteArray log = host.readAll(); // what came while the terminal waited, and the rest below
    while (!log.contains("sent <SOH>PKT_TYPE=170") && host.waitForReadyRead(2000))
        log += host.readAll();
    EXPECT_TRUE(log.contains("recv PKT_TYPE=270<STX>SECTION=0<STX><ETX><EOT>")) << log.toStdString();
    host.kill();
    host.waitForFinished();
}

TEST(HostSimProgram, RefusesValuesItCannotUse)
{
    for (const QStringList& arguments : {QStringList{QStringLiteral("--port"), QStringLiteral("70000")},
             QStringList{QStringLiteral("--split"), QStringLiteral("zero")},
             QStringList{QStringLiteral("--host-version"), QStringLiteral("412")}}) {
        QProcess host;
        host.start(QStringLiteral(CORVANE_HOSTSIM_EXE), arguments);
        ASSERT_TRUE(host.waitForFinished(10000));
        EXPECT_EQ(host.exitCode(), 2) << arguments.join(QLatin1Char(' ')).toStdString();
    }
}

} // namespace
} // namespace corvane
