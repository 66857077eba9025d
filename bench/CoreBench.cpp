// What the terminal does with every packet the host sends, beside the cheapest possible pass
// over the same bytes (memchr for the field delimiter) as the floor.
#include "protocol/Framing.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Replies.h"
#include "runtime/RunTimeError.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace corvane {
namespace {

// A full status reply as the host sends it: 128 records split by ETX, header in the first.
std::string statusReply()
{
    std::string packet = packetHeader(120, 0);
    for (int port = 1; port <= PortCount; ++port) {
        appendField(packet, "WorkstationName=", "MACHINE " + std::to_string(port));
        appendField(packet, "FileName=", "O" + std::to_string(1000 + port) + ".NC");
        appendField(packet, "Status=", port % 3 ? "Sending" : "Idle");
        appendField(packet, "ByteCount=", std::to_string(port * 4093));
        appendField(packet, "DNC_ID=", std::to_string(port));
        packet += ETX;
    }
    packet += EOT;
    return packet;
}

PortParmsTables filledTables()
{
    PortParmsTables t;
    t.resize();
    for (auto& p : t.PortCommParmsTable) {
        p.wstat_name = "HORIZONTAL MILL 4";
        p.ProgQualifier = "O";
        p.ContinuousFeedString = "%";
        p.FileNotFoundMessage = "(FILE NOT FOUND)";
        p.PrinterPort = "Shop Floor Laser";
        p.EnableRemotePrinting = -1;
        p.ConfirmHeader = "%\r\nO9999 (RECEIVED)";
        p.ConfirmFooter = "M30\r\n%";
        p.Baud = 8;
        p.iPurgeIfInactiveSeconds = 120;
    }
    for (auto& d : t.DataCollectionTable) {
        d.DataStartString = "(DATA START)";
        d.DataTerminationString = "(DATA END)";
        d.MaxDataSegment = 1000;
        d.SaveToFolder = "C:\\DNC\\COLLECTED\\CELL 4";
    }
    return t;
}

std::size_t countDelimiters(const std::string& bytes)
{
    std::size_t n = 0;
    const char* at = bytes.data();
    const char* end = at + bytes.size();
    while ((at = static_cast<const char*>(std::memchr(at, STX, static_cast<std::size_t>(end - at)))) != nullptr) {
        ++n;
        ++at;
    }
    return n;
}

void BM_StatusReply(benchmark::State& state)
{
    const std::string chunk = SOH + statusReply();
    std::vector<PortStatusRecord> table(PortCount);
    PacketReceiver receiver({}); // a well-formed reply: nothing to log
    for (auto _ : state) {
        receiver.accumulate(chunk);
        try {
            Extract_Status_Packet(receiver.completedPacket(), table, {});
        } catch (const RunTimeError&) {
            // The piece after the last ETX lies past the 128 rows, as in the terminal itself.
        }
        benchmark::DoNotOptimize(table.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * chunk.size()));
    state.counters["packet_bytes"] = static_cast<double>(chunk.size());
}
BENCHMARK(BM_StatusReply);

void BM_StatusReplyFloor(benchmark::State& state)
{
    const std::string chunk = SOH + statusReply();
    for (auto _ : state)
        benchmark::DoNotOptimize(countDelimiters(chunk));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * chunk.size()));
}
BENCHMARK(BM_StatusReplyFloor);

void BM_ExtractSection(benchmark::State& state)
{
    const auto section = static_cast<std::int16_t>(state.range(0));
    PortParmsTables source = filledTables();
    const std::string packet = Build_Port_Parms_Packet(section, 42, source).substr(1) + EOT;
    PortParmsTables target;
    target.resize();
    for (auto _ : state) {
        Extract_Port_Parms_Packet(packet, target, {});
        benchmark::DoNotOptimize(target.PortCommParmsTable.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * packet.size()));
    state.counters["packet_bytes"] = static_cast<double>(packet.size());
}
BENCHMARK(BM_ExtractSection)->DenseRange(1, 6);

void BM_BuildSection(benchmark::State& state)
{
    const auto section = static_cast<std::int16_t>(state.range(0));
    PortParmsTables source = filledTables();
    std::size_t bytes = 0;
    for (auto _ : state) {
        const std::string packet = Build_Port_Parms_Packet(section, 42, source);
        bytes = packet.size();
        benchmark::DoNotOptimize(packet.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_BuildSection)->DenseRange(1, 6);

void BM_SectionFloor(benchmark::State& state)
{
    PortParmsTables source = filledTables();
    const std::string packet = Build_Port_Parms_Packet(static_cast<std::int16_t>(state.range(0)), 42, source) + EOT;
    for (auto _ : state)
        benchmark::DoNotOptimize(countDelimiters(packet));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * packet.size()));
}
BENCHMARK(BM_SectionFloor)->DenseRange(1, 6);

} // namespace
} // namespace corvane

BENCHMARK_MAIN();
