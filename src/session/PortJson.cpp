#include "session/PortJson.h"

#include "commparms/RecordFields.h"
#include "platform/Latin1.h"
#include "session/ChangeRecord.h"

#include <QDateTime>

namespace corvane {

QJsonObject recordJson(const PortRecords& r, bool collection)
{
    QJsonObject out;
    for (const RecordField& field : recordFields())
        if (field.dataCollection == collection && !keptByTerminalOnly(field.name))
            out.insert(fromLatin1Bytes(field.name), jsonOf(fieldValue(r.comm, r.collection, field)));
    return out;
}

QJsonObject exportDocument(const QString& host, int hostPort, const QJsonArray& ports)
{
    return {{QStringLiteral("host"), host}, {QStringLiteral("hostPort"), hostPort},
        {QStringLiteral("exported"), QDateTime::currentDateTime().toString(Qt::ISODate)},
        {QStringLiteral("ports"), ports}};
}

} // namespace corvane
