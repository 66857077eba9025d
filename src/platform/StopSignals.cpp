#include "platform/StopSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

namespace corvane {
namespace {

volatile std::sig_atomic_t caughtSignal = 0;

#ifndef _WIN32
constexpr std::array<int, 3> Stopping = {SIGINT, SIGTERM, SIGHUP};
int wakePipe[2] = {-1, -1};
std::array<struct sigaction, Stopping.size()> previous{};

extern "C" void noteStop(int signal)
{
    if (caughtSignal == 0)
        caughtSignal = signal;
    const int saved = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(wakePipe[1], &byte, 1);
    errno = saved;
}
#endif

} // namespace

StopSignals::StopSignals(std::function<void()> heard)
    : heard_(std::move(heard))
{
    caughtSignal = 0;
#ifndef _WIN32
    if (::pipe2(wakePipe, O_NONBLOCK | O_CLOEXEC) != 0)
        return; // the signals keep their usual actions
    notifier_ = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
        char bytes[16];
        while (::read(wakePipe[0], bytes, sizeof bytes) > 0) { }
        if (heard_)
            heard_();
    });
    // Without SA_RESTART: a read from the terminal (a password typed) ends rather than waits on.
    // A signal ignored when the client started (nohup) stays ignored.
    struct sigaction action { };
    action.sa_handler = noteStop;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < Stopping.size(); ++i)
        if (::sigaction(Stopping[i], nullptr, &previous[i]) == 0 && previous[i].sa_handler != SIG_IGN)
            ::sigaction(Stopping[i], &action, nullptr);
#endif
}

StopSignals::~StopSignals()
{
#ifndef _WIN32
    if (!notifier_)
        return;
    for (std::size_t i = 0; i < Stopping.size(); ++i)
        ::sigaction(Stopping[i], &previous[i], nullptr);
    notifier_.reset();
    ::close(wakePipe[0]);
    ::close(wakePipe[1]);
    wakePipe[0] = wakePipe[1] = -1;
#endif
}

int StopSignals::caught() const
{
    return caughtSignal;
}

} // namespace corvane
