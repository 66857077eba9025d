#pragma once

#include <QString>

#include <ostream>

// Failures show Qt's strings as text.
inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}
