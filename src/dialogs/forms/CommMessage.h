#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class CommMessage;
}

namespace corvane {

// The notice about the no-wait read, shown when the option is ticked.
class CommMessage : public QDialog {
    Q_OBJECT

public:
    explicit CommMessage(QWidget* parent = nullptr);
    ~CommMessage() override;

private:
    std::unique_ptr<Ui::CommMessage> ui;
};

} // namespace corvane
