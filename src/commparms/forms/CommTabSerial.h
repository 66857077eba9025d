#pragma once

#include "commparms/forms/ParmsEditing.h"

#include <memory>

class QButtonGroup;

namespace Ui {
class CommTabSerial;
}

namespace corvane {

// The line settings: baud rate, protocol, end of block, data type, parity, data and stop bits,
// handshake, end-of-block nulls and the line options.
class CommTabSerial : public CommParmsPage {
    Q_OBJECT

public:
    CommTabSerial(ParmsEditing& editor, QWidget* parent = nullptr);
    ~CommTabSerial() override;

    void showRecord() override;
    void showStates() override;

private:
    std::unique_ptr<Ui::CommTabSerial> ui;
    QButtonGroup* dataType_;
    QButtonGroup* handshake_;
};

} // namespace corvane
