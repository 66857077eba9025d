#pragma once

#include "security/Rights.h"

#include <vector>

class QCheckBox;
class QScrollBar;
class QWidget;

namespace corvane {

// The rights check boxes of the supervisor forms: one per row of the rights list, captioned with
// its description, stacked one row pitch apart in a picture that the scroll bar moves. Six are
// in view; from seven on the scroll bar steps one row at a time.
class RightsChecks {
public:
    static constexpr int VisibleRows = 6;

    RightsChecks(const RightsList& rights, QWidget* pic2Rights, QCheckBox* first, QScrollBar* vscrRights);

    // Each box shows the user's byte at its row's position.
    void show(const UserEntry& user);
    std::vector<bool> checked() const;
    const std::vector<QCheckBox*>& boxes() const { return boxes_; }
    int rowPitch() const { return pitch_; }

private:
    const RightsList& rights_;
    QWidget* picture_;
    std::vector<QCheckBox*> boxes_;
    int pitch_ = 0;
    int baseTop_ = 0;
};

} // namespace corvane
