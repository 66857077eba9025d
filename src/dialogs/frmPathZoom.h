#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmPathZoom;
}

namespace corvane {

// A long folder path shown large; the keyboard changes nothing in it.
class frmPathZoom : public QDialog {
    Q_OBJECT

public:
    explicit frmPathZoom(const QString& path, QWidget* parent = nullptr);
    ~frmPathZoom() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<Ui::frmPathZoom> ui;
};

} // namespace corvane
