#include "commparms/PortParms.h"

#include "runtime/RunTimeError.h"

namespace corvane {
namespace {

template <typename Table> auto& recordAt(Table& table, std::int16_t port)
{
    if (port < 0 || static_cast<std::size_t>(port) >= table.size())
        raise(err::SubscriptOutOfRange);
    return table[static_cast<std::size_t>(port)];
}

} // namespace

void PortParmsTables::resize()
{
    PortCommParmsTable.assign(PortCount, PortCommParms{});
    DataCollectionTable.assign(PortCount, DataCollectionParms{});
}

PortCommParms& PortParmsTables::commParms(std::int16_t port)
{
    return recordAt(PortCommParmsTable, port);
}

DataCollectionParms& PortParmsTables::dataCollection(std::int16_t port)
{
    return recordAt(DataCollectionTable, port);
}

PortRecords PortParmsTables::records(std::int16_t port) const
{
    return {recordAt(PortCommParmsTable, port), recordAt(DataCollectionTable, port)};
}

} // namespace corvane
