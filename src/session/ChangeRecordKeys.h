#pragma once

#include <QString>

namespace corvane::change_keys {

// The keys of a line of the record of changes that both its writer and its reader rely on.
inline const QString Time = QStringLiteral("time");
inline const QString Kind = QStringLiteral("kind");
inline const QString Port = QStringLiteral("port");
inline const QString User = QStringLiteral("user");
inline const QString AuthorisedBy = QStringLiteral("authorisedBy");
inline const QString Outcome = QStringLiteral("outcome");
inline const QString Fields = QStringLiteral("fields");

} // namespace corvane::change_keys
