#pragma once

#include "protocol/PortParmsPacket.h"

#include <ostream>

namespace corvane {

// Failures show the parameters field by field, under their packet keys.
inline void PrintTo(const PortCommParms& p, std::ostream* os)
{
    for (std::int16_t section = 1; section <= 5; ++section)
        for (const FieldRow& row : sectionFields(section)) {
            const FieldSpec<PortCommParms>& field = row.comm;
            *os << "\n  " << field.key;
            if (field.int16)
                *os << p.*field.int16;
            else
                *os << '"' << p.*field.text << '"';
        }
}

} // namespace corvane
