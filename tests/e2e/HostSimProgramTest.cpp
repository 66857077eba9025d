#include "protocol/Requests.h"
#include "support/Program.h"
#include "support/ScratchProgramFolder.h"
#include "support/TerminalPeer.h"

#include <QProcess>
#include <QTcpServer>

#include <gtest/gtest.h>

namespace corvane {
namespace {

const QString HostSim = QStringLiteral(CORVANE_HOSTSIM_EXE);

TEST(HostSimProgram, ServesATerminalOnThePortItIsGiven)
{
    test::ScratchProgramFolder folder;
    QTcpServer probe; // a port nobody listens on
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    QProcess host;
    host.start(HostSim,
        {QStringLiteral("--port"), QString::number(port), QStringLiteral("--verbose"), QStringLiteral("--host-version"),
            QStringLiteral("4.11")});
    ASSERT_TRUE(host.waitForReadyRead(10000));
    EXPECT_TRUE(host.readLine().startsWith("Simulated DNC host listening on 127.0.0.1:" + QByteArray::number(port)));

    test::TerminalPeer terminal;
    ASSERT_TRUE(terminal.connectTo(port));
    const auto version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Host_Version(*version, {}), "4.11");

    QByteArray log = host.readAll(); // what came while the terminal waited, and the rest below
    while (!log.contains("sent <SOH>PKT_TYPE=170") && host.waitForReadyRead(2000))
        log += host.readAll();
    EXPECT_TRUE(log.contains("recv PKT_TYPE=270<STX>SECTION=0<STX><ETX><EOT>")) << log.toStdString();
    host.kill();
    host.waitForFinished();
}

TEST(HostSimProgram, RefusesValuesItCannotUse)
{
    for (const char* value : {"--port=70000", "--host-version=412"})
        EXPECT_EQ(test::runProgram(HostSim, {QString::fromLatin1(value)}).exitCode, 2) << value;
}

} // namespace
} // namespace corvane
