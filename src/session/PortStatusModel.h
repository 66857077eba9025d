#pragma once

#include "protocol/Replies.h"

#include <QAbstractTableModel>

#include <vector>

namespace corvane {

// The grid tgMainScreen: 128 rows of the port table, six columns (port number, machine,
// program, ID, status, byte count), each row's bookmark its number as text.
class PortStatusModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit PortStatusModel(const std::vector<PortStatusRecord>& table, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // The table's rows were replaced: every cell reads anew.
    void refresh();

private:
    const std::vector<PortStatusRecord>& table_;
};

} // namespace corvane
