#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class CommMessage;
}

namespace corvane {

// A notice in a window of its own with one OK (the no-wait read's, when the option is ticked).
class CommMessage : public QDialog {
    Q_OBJECT

public:
    explicit CommMessage(const QString& notice, QWidget* parent = nullptr);
    ~CommMessage() override;

private:
    std::unique_ptr<Ui::CommMessage> ui;
};

} // namespace corvane
