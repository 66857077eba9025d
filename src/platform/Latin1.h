#pragma once

#include <QByteArray>
#include <QString>

#include <string>
#include <string_view>

namespace corvane {

// Packets and store records are single-byte text. Latin-1 maps each byte to one character
// and back, so text crosses between the core and Qt without loss, control characters included.
QString fromLatin1Bytes(std::string_view bytes);
std::string toLatin1Bytes(const QString& text);
std::string toBytes(const QByteArray& bytes);
QByteArray toByteArray(std::string_view bytes);

} // namespace corvane
