#include "session/PortStatusModel.h"

#include "platform/Latin1.h"
#include "shell/GridRules.h"

namespace corvane {

PortStatusModel::PortStatusModel(const std::vector<PortStatusRecord>& table, QObject* parent)
    : QAbstractTableModel(parent)
    , table_(table)
{
}

int PortStatusModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : GridRows;
}

int PortStatusModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : GridColumns;
}

QVariant PortStatusModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole)
        return fromLatin1Bytes(gridValue(table_, index.row(), index.column()));
    if (role == Qt::TextAlignmentRole && (index.column() == PortColumn || index.column() == ByteCountColumn))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant PortStatusModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return {};
    switch (section) {
    case MachineColumn:
        return QStringLiteral("Machine");
    case ProgramColumn:
        return QStringLiteral("Program");
    case IdColumn:
        return QStringLiteral("ID");
    case StatusColumn:
        return QStringLiteral("Status");
    case ByteCountColumn:
        return QStringLiteral("Byte Count");
    default:
        return QString();
    }
}

void PortStatusModel::refresh()
{
    Q_EMIT dataChanged(index(0, 0), index(GridRows - 1, GridColumns - 1));
}

} // namespace corvane
