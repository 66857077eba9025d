// Chunks from the host through the framing and the whole dispatch of a session, as the socket
// hands them over: status, machine types, versions, parameter sections, acknowledgements and
// anything else. Nothing may crash, and the tables keep their shape.
#include "Input.h"
#include "platform/ProgramTimer.h"
#include "platform/Registry.h"
#include "shell/GridRules.h"
#include "session/HostConfiguration.h"
#include "session/HostSession.h"

#include <QCoreApplication>

#include <cstdlib>

namespace {

using namespace corvane;

struct Terminal {
    int argc = 1;
    char name[16] = "fuzz";
    char* argv[2] = {name, nullptr};
    QCoreApplication app{argc, argv};
    std::unique_ptr<Registry> registry;
    std::unique_ptr<HostConfiguration> config;
    SilentSessionUi ui;
    QtTimers timers;

    Terminal()
    {
        setenv("CORVANE_REGISTRY_DIR", fuzz::scratchFolder().c_str(), 1);
        registry = openSystemRegistry();
        config = std::make_unique<HostConfiguration>(*registry);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Terminal terminal;
    // A session of its own for every input: what one input leaves behind cannot mask the next.
    HostSession session(*terminal.config, terminal.ui, terminal.timers, fuzz::logs());
    for (const std::string_view chunk : fuzz::chunks(fuzz::text(data, size)))
        session.Process_Received_Socket_Packet(std::string(chunk));
    if (session.portStatus().size() != static_cast<std::size_t>(GridRows))
        std::abort();
    if (session.machineTypes().size() > 32767 || session.parmsTables().PortCommParmsTable.size() != 128)
        std::abort();
    return 0;
}
