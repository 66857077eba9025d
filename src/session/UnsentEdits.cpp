// What the idle log-off would discard: a port's changes made in the editor and not yet sent.
#include "session/HostSession.h"

#include "runtime/WholeFile.h"
#include "session/HostConfiguration.h"
#include "session/PortJson.h"

#include <QDateTime>
#include <QJsonArray>

#include <algorithm>
#include <QJsonDocument>

namespace corvane {

bool HostSession::hasUnsentEdit(std::int16_t port) const
{
    const auto found = fetches_.find(port);
    if (found == fetches_.end() || !found->second.complete || found->second.uncertain)
        return false;
    const PortFetch& fetch = found->second;
    const PortRecords now = parms_.records(port);
    std::vector<ChangedField> changes = changedFields(fetch.host.comm, fetch.host.collection, now.comm, now.collection);
    markCorrections(changes, fetch.corrections);
    return std::any_of(changes.begin(), changes.end(),
        [](const ChangedField& change) { return change.by != "rule" && !keptByTerminalOnly(change.name); });
}

// Each port's unsent changes in a file of the program folder, written whole, that the client's
// import sends once someone is back ("corvane-remote-cli import FILE").
std::vector<std::string> HostSession::keepUnsentEdits()
{
    std::vector<std::string> kept;
    const auto host = static_cast<std::size_t>(HostIndex);
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    for (const auto& [port, fetch] : fetches_) {
        if (!hasUnsentEdit(port))
            continue;
        const PortRecords records = parms_.records(port);
        const QJsonObject entry{{QStringLiteral("port"), port + 1},
            {QStringLiteral("PortCommParms"), recordJson(records, false)},
            {QStringLiteral("DataCollectionParms"), recordJson(records, true)}};
        const QByteArray bytes
            = QJsonDocument(exportDocument(config_.HostIPs[host], config_.SocketPorts[host], QJsonArray{entry}))
                  .toJson(QJsonDocument::Indented);
        const std::string path = logs_.file("unsent-port-" + std::to_string(port + 1) + "-" + stamp.toStdString() + ".json");
        if (writeWholeFile(path, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()))).empty())
            kept.push_back(path);
    }
    return kept;
}

} // namespace corvane
