#include "security/forms/RightsChecks.h"

#include "platform/Latin1.h"

#include <QCheckBox>
#include <QScrollBar>

namespace corvane {

namespace {
constexpr int GapBetweenBoxes = 4;
}

RightsChecks::RightsChecks(const RightsList& rights, QWidget* pic2Rights, QCheckBox* first, QScrollBar* vscrRights)
    : rights_(rights)
    , picture_(pic2Rights)
    , pitch_(first->height() + GapBetweenBoxes)
    , baseTop_(pic2Rights->y())
{
    for (std::size_t row = 0; row < rights.rows.size(); ++row) {
        QCheckBox* box = first;
        if (row > 0) {
            box = new QCheckBox(pic2Rights);
            box->setObjectName(QStringLiteral("chkRights_%1").arg(row));
            box->setGeometry(first->geometry().translated(0, static_cast<int>(row) * pitch_));
        }
        box->setText(fromLatin1Bytes(rights.rows[row].Description));
        box->setVisible(true);
        boxes_.push_back(box);
    }
    first->setVisible(!rights.rows.empty());
    pic2Rights->resize(pic2Rights->width(), std::max<int>(1, static_cast<int>(boxes_.size())) * pitch_);

    const int rows = static_cast<int>(boxes_.size());
    vscrRights->setEnabled(rows > VisibleRows);
    vscrRights->setRange(0, std::max(0, rows - VisibleRows));
    vscrRights->setSingleStep(1);
    vscrRights->setPageStep(VisibleRows);
    QObject::connect(vscrRights, &QScrollBar::valueChanged, pic2Rights,
        [this](int value) { picture_->move(picture_->x(), baseTop_ - value * pitch_); });
}

void RightsChecks::show(const UserEntry& user)
{
    for (std::size_t row = 0; row < boxes_.size(); ++row)
        boxes_[row]->setChecked(user.Rights.at(static_cast<std::size_t>(rights_.rows[row].RightIndex)) == 1);
}

std::vector<bool> RightsChecks::checked() const
{
    std::vector<bool> out;
    for (const QCheckBox* box : boxes_)
        out.push_back(box->isChecked());
    return out;
}

} // namespace corvane
