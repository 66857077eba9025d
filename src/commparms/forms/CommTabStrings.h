#pragma once

#include "commparms/forms/ParmsEditing.h"

#include <memory>

namespace Ui {
class CommTabStrings;
}

namespace corvane {

// The start and end of a program in the data stream: constant characters with their
// occurrences, and start and end strings of up to eight ASCII values each.
class CommTabStrings : public CommParmsPage {
    Q_OBJECT

public:
    CommTabStrings(ParmsEditing& editor, QWidget* parent = nullptr);
    ~CommTabStrings() override;

    void showRecord() override { }
    void showStates() override { }

private:
    std::unique_ptr<Ui::CommTabStrings> ui;
};

} // namespace corvane
