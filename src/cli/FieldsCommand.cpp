// The fields set-parms and import take, as the field catalogue lists them.
#include "cli/Cli.h"

#include "commparms/FieldCatalogue.h"
#include "commparms/RecordFields.h"
#include "platform/Latin1.h"
#include "session/ChangeRecord.h"

#include <QJsonArray>
#include <QJsonObject>

namespace corvane::cli {
namespace {

QString takes(const FieldRow& row)
{
    switch (row.control) {
    case Control::None:
        return QStringLiteral("(the editor does not change it)");
    case Control::List:
    case Control::Options: {
        if (row.choices.empty())
            return QStringLiteral("a machine type's identifier");
        QStringList choices;
        for (std::size_t code = 0; code < row.choices.size(); ++code)
            choices << QStringLiteral("%1 %2").arg(code).arg(fromLatin1Bytes(row.choices[code]));
        return choices.join(QStringLiteral(" | "));
    }
    case Control::Check:
        return QStringLiteral("True or False");
    case Control::Digits:
        return QStringLiteral("%1 to %2").arg(row.lowest).arg(row.highest);
    case Control::Ascii:
        return QStringLiteral("an ASCII value 0 to 255, empty for none");
    case Control::Text:
        if (row.name == "RedirectCode")
            return QStringLiteral("a character's code 0 to 255, 0 for none");
        if (row.longest == std::string::npos)
            return QStringLiteral("text");
        return row.longest == 1 ? QStringLiteral("one character at most")
                                : QStringLiteral("text of %1 characters at most").arg(row.longest);
    }
    return {};
}

QJsonObject rowJson(const FieldRow& row)
{
    QJsonObject out{{QStringLiteral("name"), fromLatin1Bytes(row.name)},
        {QStringLiteral("record"),
            row.dataCollection ? QStringLiteral("DataCollectionParms") : QStringLiteral("PortCommParms")},
        {QStringLiteral("section"), row.section}, {QStringLiteral("sent"), row.section != NotCarried},
        {QStringLiteral("editable"), row.edit != nullptr}, {QStringLiteral("takes"), takes(row)},
        {QStringLiteral("default"), jsonOf(defaultValue(row))},
        {QStringLiteral("caption"), fromLatin1Bytes(row.caption)}};
    if (row.isChoice() || row.control == Control::Digits || row.control == Control::Ascii) {
        out.insert(QStringLiteral("lowest"), row.lowest);
        out.insert(QStringLiteral("highest"), row.highest);
    }
    return out;
}

} // namespace

int fields(Client& client)
{
    if (!client.options().arguments.isEmpty())
        throw UsageError{QStringLiteral("fields takes no arguments")};
    QJsonArray all;
    for (const FieldRow& row : fieldCatalogue()) {
        if (client.options().json) {
            all.append(rowJson(row));
            continue;
        }
        client.print(
            QStringLiteral("%1 %2  (%3; default %4%5)")
                .arg(fromLatin1Bytes(row.name).leftJustified(24), takes(row), fromLatin1Bytes(row.caption),
                    fromLatin1Bytes(fieldValueText(row.name, defaultValue(row))),
                    row.section == NotCarried ? QStringLiteral("; kept by this terminal, never sent") : QString()));
    }
    if (client.options().json)
        client.printJson(all);
    return 0;
}

} // namespace corvane::cli
