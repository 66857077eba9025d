#include "widgets/InstalledPrinters.h"

#include "platform/Latin1.h"

#include <QPrinterInfo>

namespace corvane {

std::vector<InstalledPrinter> installedPrinters()
{
    std::vector<InstalledPrinter> printers;
    for (const QPrinterInfo& printer : QPrinterInfo::availablePrinters())
        printers.push_back({toLatin1Bytes(printer.printerName()), toLatin1Bytes(printer.location())});
    return printers;
}

std::vector<std::string> installedPrinterNames()
{
    std::vector<std::string> names;
    for (const InstalledPrinter& printer : installedPrinters())
        names.push_back(printer.name);
    return names;
}

} // namespace corvane
