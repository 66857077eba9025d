#pragma once

#include "runtime/MessageStyle.h"

#include <QDialog>

#include <memory>
#include <optional>
#include <vector>

class QFontMetrics;
class QLabel;
class QPushButton;

namespace Ui {
class frmGenMsgBox;
}

namespace corvane {

// The program's own message box: a text, a title, and the buttons, icon and default button a
// style value selects. Pressing a button records its result number and closes the box.
class frmGenMsgBox : public QDialog {
    Q_OBJECT

public:
    frmGenMsgBox(const QString& text, std::int16_t style, const QString& title,
        const std::vector<MessageButton>& customButtons, double systemVersion, QWidget* parent = nullptr);
    ~frmGenMsgBox() override;

    // The pressed button's result, or the cancel answer for Escape and the close box; none when
    // the box ended another way.
    std::optional<std::int16_t> pressedResult() const { return pressed_; }
    // Escape and the close box give the cancel answer; a box without one stays up.
    void reject() override;
    const std::vector<QPushButton*>& buttons() const { return buttons_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    std::unique_ptr<Ui::frmGenMsgBox> ui;
    std::vector<QPushButton*> buttons_;
    std::optional<std::int16_t> pressed_;
    std::optional<std::int16_t> cancel_;
    int defaultButton_ = 0;
};

// A box's window: a title and a close box, no minimise or maximise, and the text wrapped in
// lines of like length (`label`'s width fixed to it), never wider than the screen it opens on.
void dressAsBox(QDialog& box);
void wrapBalanced(QLabel& label, int preferredWidth);

// The version of the running system as major.minor (the kernel's outside Windows), read once.
double systemVersion();

// The width a box needs for its title bar to show `caption` whole: the text, the window's icon
// and its close button.
int captionWidth(const QString& caption, const QFontMetrics& metrics);

} // namespace corvane
