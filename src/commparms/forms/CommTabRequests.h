#pragma once

#include "commparms/forms/ParmsEditing.h"

#include <memory>

namespace Ui {
class CommTabRequests;
}

namespace corvane {

// Remote requests from the machine: program qualifier, request code, continuous feed, key pad,
// redirect code, the file-not-found message and the confirmation file.
class CommTabRequests : public CommParmsPage {
    Q_OBJECT

public:
    CommTabRequests(ParmsEditing& editor, QWidget* parent = nullptr);
    ~CommTabRequests() override;

    void showRecord() override;
    void showStates() override { }

private:
    void cmdEditMsg_Click();

    std::unique_ptr<Ui::CommTabRequests> ui;
};

} // namespace corvane
