// A simulated DNC host for the demo, training rooms and tests: corvane-hostsim --port 49140
#include "hostsim/HostSimulator.h"
#include "shell/VersionRules.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

#include <cstdio>

using corvane::hostsim::HostSimulator;

namespace {

struct Option {
    QCommandLineOption option;
    std::function<bool(HostSimulator&, const QString&)> apply; // false: the value is not usable
};

bool toInt(const QString& text, int min, int& out)
{
    bool ok = false;
    out = text.toInt(&ok);
    return ok && out >= min;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("corvane-hostsim"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A simulated DNC host: 128 ports of a believable plant, answering one Corvane Remote terminal at a time."));
    parser.addHelpOption();
    const QCommandLineOption version(QStringLiteral("version"),
        QStringLiteral("Show the program's version (that of the terminal built with it) and the package's."));
    parser.addOption(version);
    const QCommandLineOption port(QStringLiteral("port"), QStringLiteral("TCP port to listen on (default 49140)."),
        QStringLiteral("N"), QStringLiteral("49140"));
    const QCommandLineOption address(QStringLiteral("address"),
        QStringLiteral("Address to listen on (default 127.0.0.1; 0.0.0.0 for every interface)."), QStringLiteral("IP"),
        QStringLiteral("127.0.0.1"));
    const QCommandLineOption verbose(QStringLiteral("verbose"), QStringLiteral("Log every packet received and sent."));
    parser.addOptions({port, address, verbose});

    auto number = [](int min, auto set) {
        return [min, set](HostSimulator& host, const QString& text) {
            int value = 0;
            if (!toInt(text, min, value))
                return false;
            set(host, value);
            return true;
        };
    };
    const std::vector<Option> faults = {
        {QCommandLineOption(QStringLiteral("push-status-ms"),
             QStringLiteral("Send the port states unasked every N ms."), QStringLiteral("N")),
            number(1, [](HostSimulator& h, int v) { h.setPushStatusInterval(v); })},
        {QCommandLineOption(QStringLiteral("idle-drop-minutes"),
             QStringLiteral("Drop a terminal that sends nothing for N minutes (default %1; 0: never).")
                 .arg(HostSimulator::IdleDropMinutes),
             QStringLiteral("N")),
            number(0, [](HostSimulator& h, int v) { h.setIdleDropMinutes(v); })},
        {QCommandLineOption(QStringLiteral("silent"), QStringLiteral("Fault: never answer.")),
            [](HostSimulator& h, const QString&) { return h.faults.silent = true; }},
        {QCommandLineOption(QStringLiteral("host-version"),
             QStringLiteral("Fault: answer as this host version (default 4.12), e.g. 4.11."), QStringLiteral("V")),
            [](HostSimulator& h, const QString& v) {
                h.faults.version = v.toStdString();
                return v.contains(QLatin1Char('.'));
            }},
        {QCommandLineOption(QStringLiteral("min-remote-version"),
             QStringLiteral("Fault: ask for this terminal version (default 1.02)."), QStringLiteral("V")),
            [](HostSimulator& h, const QString& v) {
                h.faults.minimumRemoteVersion = v.toStdString();
                return !v.isEmpty();
            }},
        {QCommandLineOption(QStringLiteral("ack-sections"),
             QStringLiteral("Fault: acknowledge update sections 1 to N only."), QStringLiteral("N")),
            number(0, [](HostSimulator& h, int v) { h.faults.ackSectionsUpTo = v; })},
        {QCommandLineOption(
             QStringLiteral("delay-ms"), QStringLiteral("Fault: delay every reply by N ms."), QStringLiteral("N")),
            number(0, [](HostSimulator& h, int v) { h.faults.replyDelayMs = v; })},
        {QCommandLineOption(
             QStringLiteral("split"), QStringLiteral("Fault: send every packet in K chunks."), QStringLiteral("K")),
            number(1, [](HostSimulator& h, int v) { h.faults.splitInto = v; })},
        {QCommandLineOption(
             QStringLiteral("join"), QStringLiteral("Fault: send every reply and a status packet in one chunk.")),
            [](HostSimulator& h, const QString&) { return h.faults.joinWithStatus = true; }},
        {QCommandLineOption(QStringLiteral("close-after"),
             QStringLiteral("Fault: close the connection after sending N packets."), QStringLiteral("N")),
            number(1, [](HostSimulator& h, int v) { h.faults.closeAfterPackets = v; })},
        {QCommandLineOption(QStringLiteral("no-packet-text"),
             QStringLiteral("Fault: greet each terminal with text that is no packet.")),
            [](HostSimulator& h, const QString&) { return h.faults.noPacketTextOnConnect = true; }},
        {QCommandLineOption(QStringLiteral("big-packet"),
             QStringLiteral("Fault: answer the first status request with one packet of N characters (e.g. 40000)."),
             QStringLiteral("N")),
            number(16, [](HostSimulator& h, int v) { h.faults.bigPacketSize = static_cast<std::size_t>(v); })},
        {QCommandLineOption(
             QStringLiteral("duplicate-ack"), QStringLiteral("Fault: acknowledge every update section twice.")),
            [](HostSimulator& h, const QString&) { return h.faults.duplicateAck = true; }},
        {QCommandLineOption(QStringLiteral("early-ack"),
             QStringLiteral("Fault: acknowledge ahead: an ACK before every reply to a fetch section, and one "
                            "more on an update's first section.")),
            [](HostSimulator& h, const QString&) { return h.faults.earlyAck = true; }},
        {QCommandLineOption(QStringLiteral("dribble-ms"), QStringLiteral("Fault: send one byte every N ms (e.g. 100)."),
             QStringLiteral("N")),
            number(1, [](HostSimulator& h, int v) { h.faults.dribbleMs = v; })},
    };
    for (const Option& f : faults)
        parser.addOption(f.option);
    const QCommandLineOption flood(QStringLiteral("flood"),
        QStringLiteral("Fault: a second after a terminal connects, flood it: endless (one packet that never ends), "
                       "machine-types (lists of a million empty records) or status (128-port replies with long "
                       "names, now and then a text that is no packet)."),
        QStringLiteral("KIND"));
    const QCommandLineOption floodMb(QStringLiteral("flood-mb"),
        QStringLiteral("How many MB a flood sends (default 50)."), QStringLiteral("N"), QStringLiteral("50"));
    parser.addOptions({flood, floodMb});
    parser.process(app);
    if (parser.isSet(version)) {
        std::printf("%s\n", corvane::versionLine("corvane-hostsim").c_str());
        return 0;
    }

    HostSimulator host;
    for (const Option& f : faults) {
        if (!parser.isSet(f.option))
            continue;
        const QString value = f.option.valueName().isEmpty() ? QString() : parser.value(f.option);
        if (!f.apply(host, value)) {
            std::fprintf(stderr, "corvane-hostsim: --%s does not take \"%s\"\n", qPrintable(f.option.names().first()),
                qPrintable(value));
            return 2;
        }
    }

    if (parser.isSet(flood)) {
        const auto kind = corvane::hostsim::floodKindNamed(parser.value(flood).toStdString());
        int megabytes = 0;
        if (!kind || !toInt(parser.value(floodMb), 1, megabytes)) {
            std::fprintf(
                stderr, "corvane-hostsim: --flood takes endless, machine-types or status, --flood-mb 1 or more\n");
            return 2;
        }
        QObject::connect(&host, &HostSimulator::terminalConnected, &host, [&host, kind, megabytes] {
            QTimer::singleShot(1000, &host, [&host, kind, megabytes] { host.flood(*kind, qint64{megabytes} << 20); });
        });
    }

    QTextStream out(stdout);
    if (parser.isSet(verbose))
        host.setLog([&out](const QString& line) { out << line << Qt::endl; });

    int portNumber = 0;
    const QHostAddress listenAddress(parser.value(address));
    if (!toInt(parser.value(port), 1, portNumber) || portNumber > 65535 || listenAddress.isNull()) {
        std::fprintf(stderr, "corvane-hostsim: --port takes 1 to 65535 and --address an IP address\n");
        return 2;
    }
    if (!host.listen(listenAddress, static_cast<quint16>(portNumber))) {
        std::fprintf(stderr, "corvane-hostsim: cannot listen on %s:%d: %s\n", qPrintable(listenAddress.toString()),
            portNumber, qPrintable(host.errorString()));
        return 1;
    }
    out << "Simulated DNC host listening on " << listenAddress.toString() << ':' << host.port() << Qt::endl;
    return QCoreApplication::exec();
}
