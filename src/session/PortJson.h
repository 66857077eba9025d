#pragma once

#include "commparms/PortParms.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace corvane {

// One record of a port as JSON: the host's fields by their record names and stored values
// (numbers as numbers, texts as strings), never those this terminal keeps to itself.
QJsonObject recordJson(const PortRecords& r, bool collection);
// An export of ports, as the client's export writes it and its import reads it: the host, when,
// and each port's records.
QJsonObject exportDocument(const QString& host, int hostPort, const QJsonArray& ports);

} // namespace corvane
