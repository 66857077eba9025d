#include "platform/Latin1.h"

namespace corvane {

QString fromLatin1Bytes(std::string_view bytes)
{
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::string toLatin1Bytes(const QString& text)
{
    return toBytes(text.toLatin1());
}

std::string toBytes(const QByteArray& bytes)
{
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

QByteArray toByteArray(std::string_view bytes)
{
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace corvane
