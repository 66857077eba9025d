#include "runtime/MessageStyle.h"

namespace corvane {

std::vector<MessageButton> messageButtons(std::int16_t style, const std::vector<MessageButton>& customButtons)
{
    switch (style & 15) {
    case msg::OkOnly:
        return {{"OK", msg::ResultOk}};
    case msg::OkCancel:
        return {{"OK", msg::ResultOk}, {"Cancel", msg::ResultCancel}};
    case msg::AbortRetryIgnore:
        return {{"Abort", msg::ResultAbort}, {"Retry", msg::ResultRetry}, {"Ignore", msg::ResultIgnore}};
    case msg::YesNoCancel:
        return {{"Yes", msg::ResultYes}, {"No", msg::ResultNo}, {"Cancel", msg::ResultCancel}};
    case msg::YesNo:
        return {{"Yes", msg::ResultYes}, {"No", msg::ResultNo}};
    case msg::RetryCancel:
        return {{"Retry", msg::ResultRetry}, {"Cancel", msg::ResultCancel}};
    case msg::Reset:
        return {{"RESET", msg::ResultReset}};
    case msg::ConvertCancel:
        return {{"Convert", msg::ResultConvert}, {"Cancel", msg::ResultCancel}};
    case msg::Custom:
        return customButtons;
    default:
        return {};
    }
}

std::int16_t messageIcon(std::int16_t style)
{
    const auto icon = static_cast<std::int16_t>(style & 112);
    switch (icon) {
    case msg::Critical:
    case msg::Question:
    case msg::Exclamation:
    case msg::Information:
        return icon;
    default:
        return 0;
    }
}

int defaultButtonIndex(std::int16_t style)
{
    return (style & 768) >> 8;
}

bool isNewerDisplayGeneration(double systemVersion)
{
    return systemVersion >= NewerDisplayGeneration;
}

std::optional<std::int16_t> cancelAnswer(const std::vector<MessageButton>& buttons)
{
    for (const std::int16_t wanted : {msg::ResultCancel, msg::ResultNo})
        for (const MessageButton& b : buttons)
            if (b.result == wanted)
                return wanted;
    if (buttons.size() == 1)
        return buttons.front().result;
    return std::nullopt;
}

} // namespace corvane
