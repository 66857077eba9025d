#pragma once

#include "commparms/forms/ParmsEditing.h"

#include <memory>

namespace Ui {
class CommTabOptions;
}

namespace corvane {

// What the port does with data: receiving, sending and the purge time, compression, the
// outgoing header and remote printing.
class CommTabOptions : public CommParmsPage {
    Q_OBJECT

public:
    CommTabOptions(ParmsEditing& editor, QWidget* parent = nullptr);
    ~CommTabOptions() override;

    void showRecord() override;
    void showStates() override;

private:
    void cbPrinter_Click(int index);

    std::unique_ptr<Ui::CommTabOptions> ui;
};

} // namespace corvane
