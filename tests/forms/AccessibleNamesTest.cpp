// Every control of every form can be found by its name: a screen reader says it, and automation
// (xdotool and the like) finds it by it. A control's name is its caption, or the text of the
// label that stands for it (the label's buddy).
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
#include <memory>

namespace corvane {
namespace {

template <typename Ui, typename Host> std::function<QStringList()> form()
{
    return [] {
        Host host;
        Ui ui;
        ui.setupUi(&host);
        return test::unnamedControls(host);
    };
}

TEST(AccessibleNames, EveryControlOfEveryFormHasOne)
{
    const std::pair<const char*, std::function<QStringList()>> forms[] = {
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
    for (const auto& [name, unnamed] : forms)
        EXPECT_EQ(unnamed().join(QStringLiteral(", ")).toStdString(), "") << name << ": controls without a name";
}

} // namespace
} // namespace corvane
