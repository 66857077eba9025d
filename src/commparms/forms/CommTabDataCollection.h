#pragma once

#include "commparms/forms/ParmsEditing.h"

#include <memory>

class QButtonGroup;

namespace Ui {
class CommTabDataCollection;
}

namespace corvane {

// Data the machine sends, collected by the host: what to extract from the stream, how the
// files are named and where they go, and how they are printed.
class CommTabDataCollection : public CommParmsPage {
    Q_OBJECT

public:
    CommTabDataCollection(ParmsEditing& editor, QWidget* parent = nullptr);
    ~CommTabDataCollection() override;

    void showRecord() override;
    void showStates() override;

private:
    void cmdBrwoseFolder_Click();
    void cmdZoom_Click();
    void Match_cboPrinters(const std::string& printer);

    std::unique_ptr<Ui::CommTabDataCollection> ui;
};

} // namespace corvane
