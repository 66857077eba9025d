#include "dialogs/MessageBoxes.h"

#include "dialogs/forms/frmGenMsgBox.h"
#include "shell/Latin1.h"

namespace corvane {

GenMsgBoxes::GenMsgBoxes(QWidget* parent)
    : parent_(parent)
{
}

std::int16_t GenMsgBoxes::Show_Gen_MsgBox(const std::string& text, std::int16_t style, const std::string& title)
{
    frmGenMsgBox box(fromLatin1Bytes(text), style, fromLatin1Bytes(title), CustomButtons, systemVersion(), parent_);
    box.exec();
    if (const auto pressed = box.pressedResult())
        MsgResult = *pressed;
    return MsgResult;
}

} // namespace corvane
