#include "dialogs/MessageBoxes.h"

#include "dialogs/frmGenMsgBox.h"
#include "platform/Latin1.h"

#include "runtime/RunTimeError.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace corvane {
namespace {

// Boxes open over whichever window the user is at.
QWidget* boxParent()
{
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    return QApplication::activeWindow();
}

// The system's box, its text wrapped in lines of like length once it has sized itself.
class SystemMessageBox final : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void showEvent(QShowEvent* event) override
    {
        QMessageBox::showEvent(event);
        auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        if (!label || label->text().isEmpty())
            return;
        label->setWordWrap(true);
        wrapBalanced(*label, SystemMessageWidth);
        layout()->activate();
        const int width = std::max(layout()->totalMinimumSize().width(), minimumWidth());
        setFixedSize(width, layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                                          : layout()->totalMinimumSize().height());
    }

private:
    static constexpr int SystemMessageWidth = 360;
};

} // namespace

GenMsgBoxes::GenMsgBoxes(std::function<void(int)> endProgram)
    : endProgram_(std::move(endProgram))
{
}

std::int16_t GenMsgBoxes::Show_Gen_MsgBox(const std::string& text, std::int16_t style, const std::string& title)
{
    frmGenMsgBox box(fromLatin1Bytes(text), style, fromLatin1Bytes(title), CustomButtons, systemVersion(), boxParent());
    box.exec();
    // Never an earlier box's answer: a box closed without one answers nothing (0).
    MsgResult = box.pressedResult().value_or(0);
    return MsgResult;
}

std::int16_t GenMsgBoxes::MsgBox(const std::string& text, std::int16_t style, const std::string& title)
{
    SystemMessageBox box(boxParent());
    dressAsBox(box);
    box.setWindowTitle(fromLatin1Bytes(title));
    box.setText(fromLatin1Bytes(text));
    switch (messageIcon(style)) {
    case msg::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case msg::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case msg::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case msg::Information:
        box.setIcon(QMessageBox::Information);
        break;
    default:
        break;
    }
    // The same buttons and numbers as the program's own box, and the same answer to Escape and
    // the close box; a box without a cancel answer ignores both.
    const std::vector<MessageButton> set = messageButtons(style);
    const std::optional<std::int16_t> cancel = cancelAnswer(set);
    std::vector<std::pair<QPushButton*, std::int16_t>> buttons;
    for (const MessageButton& b : set) {
        const auto role = b.result == cancel ? QMessageBox::RejectRole : QMessageBox::AcceptRole;
        buttons.emplace_back(box.addButton(QString::fromLatin1(b.caption.c_str()), role), b.result);
        if (b.result == cancel)
            box.setEscapeButton(buttons.back().first);
    }
    const auto defaultIndex = static_cast<std::size_t>(defaultButtonIndex(style));
    if (defaultIndex < buttons.size())
        box.setDefaultButton(buttons[defaultIndex].first);
    // The title shows whole: the box is at least as wide as its caption needs.
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout()))
        grid->addItem(new QSpacerItem(captionWidth(box.windowTitle(), box.fontMetrics()), 0, QSizePolicy::Fixed),
            grid->rowCount(), 0, 1, grid->columnCount());
    box.exec();
    for (const auto& [button, result] : buttons)
        if (box.clickedButton() == button)
            return result;
    return cancel.value_or(0);
}

void GenMsgBoxes::untrappedError(int number)
{
    QMessageBox::critical(boxParent(), QApplication::applicationName(),
        QStringLiteral("Run-time error '%1':\n\n%2")
            .arg(number)
            .arg(QString::fromLatin1(errorDescription(number).c_str())));
    if (endProgram_)
        endProgram_(EXIT_FAILURE);
}

} // namespace corvane
