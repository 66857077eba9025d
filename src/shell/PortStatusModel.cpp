#include "shell/PortStatusModel.h"

#include "shell/Latin1.h"
#include "shell/ShellRules.h"

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
    if (role == Qt::TextAlignmentRole && (index.column() == Port || index.column() == ByteCount))
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
    case Machine:
        return QStringLiteral("Machine");
    case Program:
        return QStringLiteral("Program");
    case Id:
        return QStringLiteral("ID");
    case Status:
        return QStringLiteral("Status");
    case ByteCount:
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
