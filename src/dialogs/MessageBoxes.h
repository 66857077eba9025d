#pragma once

#include "runtime/MessageStyle.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace corvane {

// Every question the program asks goes through here: the desktop program shows frmGenMsgBox,
// tests answer from a script. Texts are single-byte, as the rest of the program holds them.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    // Show_Gen_MsgBox: the number of the pressed button.
    virtual std::int16_t Show_Gen_MsgBox(const std::string& text, std::int16_t style, const std::string& title) = 0;
    // The system's own message box, same styles (button sets 0-5) and numbers.
    virtual std::int16_t MsgBox(const std::string& text, std::int16_t style, const std::string& title) = 0;
    // A run-time error that no routine trapped: "Run-time error 'N':" with its description; the
    // program then ends (see guarded() in UntrappedError.h).
    virtual void untrappedError(int number) = 0;
};

// The desktop program's boxes, modal over the active window. Escape and the close box give the
// box's cancel answer (Cancel, No, or OK when it is the only button). After an untrapped
// error `endProgram` is told the exit status; the program's main ends it.
class GenMsgBoxes final : public MessageBoxes {
public:
    explicit GenMsgBoxes(std::function<void(int exitStatus)> endProgram);
    std::int16_t Show_Gen_MsgBox(const std::string& text, std::int16_t style, const std::string& title) override;
    std::int16_t MsgBox(const std::string& text, std::int16_t style, const std::string& title) override;
    void untrappedError(int number) override;

    std::vector<MessageButton> CustomButtons; // for style 15
    std::int16_t MsgResult = 0;

private:
    std::function<void(int)> endProgram_;
};

} // namespace corvane
