#include "dialogs/UntrappedError.h"

#include "runtime/ErrorLog.h"
#include "runtime/RunTimeError.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdlib>

namespace corvane {
namespace {

// Not a routine of its own: the line says where it was caught, at no location.
constexpr int UntrappedLocation = 0;

std::function<void(int)>& handler()
{
    static std::function<void(int)> h;
    return h;
}

} // namespace

void reportUntrappedError(const std::exception& error)
{
    const int number = errorNumberOf(error);
    Log_Run_Time_Error(UntrappedLocation, number);
    if (handler()) {
        handler()(number);
        return;
    }
    QMessageBox::critical(QApplication::activeWindow(), QApplication::applicationName(),
        QStringLiteral("Run-time error '%1':\n\n%2")
            .arg(number)
            .arg(QString::fromLatin1(errorDescription(number).c_str())));
    std::exit(EXIT_FAILURE);
}

void setUntrappedErrorHandler(std::function<void(int)> h)
{
    handler() = std::move(h);
}

} // namespace corvane
