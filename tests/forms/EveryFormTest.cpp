// Every form as Designer made it: every control can be found by its name (a screen reader says
// it, and automation, xdotool and the like, finds it by it: its caption, or the text of the label
// that stands for it, the label's buddy), and no form is too large for a small screen.
#include "ui_AboutDlg.h"
#include "ui_CommMessage.h"
#include "ui_CommTabDataCollection.h"
#include "ui_CommTabOptions.h"
#include "ui_CommTabRequests.h"
#include "ui_CommTabSerial.h"
#include "ui_CommTabStrings.h"
#include "ui_frmCVRemote.h"
#include "ui_frmCVRemoteStartup.h"
#include "ui_frmChangeUser.h"
#include "ui_frmCommParms.h"
#include "ui_frmConfiguration.h"
#include "ui_frmFileNotFoundMsg.h"
#include "ui_frmGenMsgBox.h"
#include "ui_frmPassword.h"
#include "ui_frmPathZoom.h"
#include "ui_frmSupervisorOps.h"
#include "ui_frmTempMsg.h"
#include "ui_frmUserInfo.h"

#include "support/Forms.h"

#include <QApplication>
#include <QMainWindow>

#include <gtest/gtest.h>

#include <functional>
#include <vector>
#include <memory>

namespace corvane {
namespace {

// Builds the form as Designer made it and hands it to `look`.
using Look = std::function<void(QWidget&)>;
template <typename Ui, typename Host> std::function<void(const Look&)> form()
{
    return [](const Look& look) {
        Host host;
        Ui ui;
        ui.setupUi(&host);
        look(host);
    };
}

const std::vector<std::pair<const char*, std::function<void(const Look&)>>>& everyForm()
{
    static const std::vector<std::pair<const char*, std::function<void(const Look&)>>> forms = {
        {"frmCVRemoteStartup", form<Ui::frmCVRemoteStartup, QMainWindow>()},
        {"frmCVRemote", form<Ui::frmCVRemote, QMainWindow>()},
        {"frmConfiguration", form<Ui::frmConfiguration, QDialog>()},
        {"AboutDlg", form<Ui::AboutDlg, QDialog>()},
        {"frmCommParms", form<Ui::frmCommParms, QDialog>()}, // its tabs, when it opens: CommParmsFormTest
        {"CommTabSerial", form<Ui::CommTabSerial, QWidget>()},
        {"CommTabRequests", form<Ui::CommTabRequests, QWidget>()},
        {"CommTabOptions", form<Ui::CommTabOptions, QWidget>()},
        {"CommTabStrings", form<Ui::CommTabStrings, QWidget>()},
        {"CommTabDataCollection", form<Ui::CommTabDataCollection, QWidget>()},
        {"frmFileNotFoundMsg", form<Ui::frmFileNotFoundMsg, QDialog>()},
        {"frmGenMsgBox", form<Ui::frmGenMsgBox, QDialog>()},
        {"CommMessage", form<Ui::CommMessage, QDialog>()},
        {"frmPathZoom", form<Ui::frmPathZoom, QDialog>()},
        {"frmChangeUser", form<Ui::frmChangeUser, QDialog>()},
        {"frmPassword", form<Ui::frmPassword, QDialog>()},
        {"frmTempMsg", form<Ui::frmTempMsg, QDialog>()},
        {"frmSupervisorOps", form<Ui::frmSupervisorOps, QDialog>()},
        {"frmUserInfo", form<Ui::frmUserInfo, QDialog>()},
    };
    return forms;
}

TEST(AccessibleNames, EveryControlOfEveryFormHasOne)
{
    for (const auto& [name, build] : everyForm())
        build([name = name](QWidget& form) {
            EXPECT_EQ(test::unnamedControls(form).join(QStringLiteral(", ")).toStdString(), "")
                << name << ": controls without a name";
        });
}

// No form asks for more than a 1280x720 screen leaves it (1920x1080 at 150 % is the same
// screen to the program): a panel and a title bar take their share of the height.
TEST(FormsFit, NoFormsMinimumIsLargerThanASmallScreen)
{
    const QSize room(1280 - 16, 720 - 80);
    for (const auto& [name, build] : everyForm())
        build([name = name, room](QWidget& form) {
            const QSize minimum = form.minimumSizeHint().expandedTo(form.minimumSize());
            EXPECT_TRUE(minimum.width() <= room.width() && minimum.height() <= room.height())
                << name << ": " << minimum.width() << "x" << minimum.height();
        });
}

// Tab visits every control of each form in reading order: within each group, row by row and
// left to right (a control that sits within half a line of the one before is on its row), and
// then on from the form's last control to its first, so that it leaves every one.
TEST(TabOrder, EveryFormVisitsItsControlsInReadingOrder)
{
    for (const auto& [name, build] : everyForm())
        build([name = name](QWidget& form) {
            form.show();
            std::vector<QWidget*> chain;
            for (QWidget* w = form.nextInFocusChain(); w && w != &form; w = w->nextInFocusChain())
                if ((w->focusPolicy() & Qt::TabFocus) && w->isVisibleTo(&form) && w->isEnabled()
                    && !w->isWindow() && w->window() == &form && w->focusProxy() == nullptr)
                    chain.push_back(w);
            QStringList outOfOrder;
            for (std::size_t i = 1; i < chain.size(); ++i) {
                QWidget* before = chain[i - 1];
                QWidget* now = chain[i];
                if (before->parentWidget() != now->parentWidget())
                    continue; // a group of its own starts
                const QPoint a = before->mapTo(&form, QPoint(0, 0)), b = now->mapTo(&form, QPoint(0, 0));
                const int halfLine = std::max(before->height(), 10) / 2;
                const bool sameRow = std::abs(a.y() - b.y()) <= halfLine;
                if (sameRow ? b.x() < a.x() : b.y() < a.y())
                    outOfOrder << before->objectName() + QStringLiteral(" -> ") + now->objectName();
            }
            EXPECT_EQ(outOfOrder.join(QStringLiteral(", ")).toStdString(), "") << name << ": Tab goes back";
        });
}

} // namespace
} // namespace corvane
