#pragma once

#include <QComboBox>

namespace corvane {

// The host picker: says when its list is about to drop down, so the main window can remind a
// connected user that changing host needs a disconnect first (the list still opens).
class HostComboBox : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    void showPopup() override
    {
        Q_EMIT dropDown();
        QComboBox::showPopup();
    }

Q_SIGNALS:
    void dropDown();
};

} // namespace corvane
