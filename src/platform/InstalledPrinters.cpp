#include "platform/InstalledPrinters.h"

#include "platform/Latin1.h"

#include <QPrinterInfo>

namespace corvane {

std::vector<std::string> installedPrinterNames()
{
    std::vector<std::string> names;
    const QStringList available = QPrinterInfo::availablePrinterNames();
    names.reserve(static_cast<std::size_t>(available.size()));
    for (const QString& name : available)
        names.push_back(toLatin1Bytes(name));
    return names;
}

} // namespace corvane
