#include "security/forms/SecurityPrompts.h"

#include "dialogs/MessageBoxes.h"
#include "security/forms/frmChangeUser.h"
#include "security/forms/frmTempMsg.h"

namespace corvane {

SecurityPrompts::SecurityPrompts(UserStore& store, LoginValues& values, MessageBoxes& boxes, QWidget* parent)
    : store_(store)
    , values_(values)
    , boxes_(boxes)
    , parent_(parent)
{
}

TempUserAnswer SecurityPrompts::askTemporaryUser()
{
    frmTempMsg form(store_, values_, parent_);
    form.exec();
    return form.answer();
}

void SecurityPrompts::showAccessNotAllowed()
{
    boxes_.Show_Gen_MsgBox(
        std::string(AccessNotAllowed), msg::OkOnly | msg::Exclamation, std::string(AccessNotAllowedTitle));
}

void SecurityPrompts::showChangeUser(LoginValues& values)
{
    frmChangeUser form(store_, values, parent_);
    form.exec();
}

} // namespace corvane
