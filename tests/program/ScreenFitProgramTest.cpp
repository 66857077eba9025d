#include "app/DesktopProgram.h"
#include "commparms/forms/frmCommParms.h"
#include "security/FirstStore.h"
#include "support/DesktopProgram.h"
#include "support/Forms.h"

#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::control;
using ScreenFit = test::DesktopProgramTest;

// The editor against a host, moved from port to port: it keeps its size (the label shown
// while a port's state is asked for, the notes under the tabs, never leave it larger), and
// its frame fits the screen of a small panel, 1280x720 at 100 % or 1920x1080 at 150 %
// (1280x720 either way, as the program measures).
TEST_F(ScreenFit, TheEditorKeepsItsSizeFromPortToPortAndFitsTheScreen)
{
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    std::vector<QSize> sizes;
    QSize minimum;
    QRect frame;
    test::whenModal<frmCommParms>([&](frmCommParms& editor) {
        auto& spin = control<QSpinBox>(editor, "PortSpin");
        // Moved and cut into the screen; from then on it keeps its size.
        const QRect available = editor.screen()->availableGeometry();
        EXPECT_TRUE(test::waitFor([&] { return available.contains(editor.frameGeometry()); }))
            << "the frame lies on the screen";
        sizes.push_back(editor.size());
        minimum = editor.minimumSizeHint();
        for (int step = 1; step <= 4; ++step) {
            const int port = spin.value() + 1;
            if (step == 1) // the notice that Update sends the shown port only, once a run
                test::whenBox<QMessageBox>([](QMessageBox&) { return true; },
                    [](QMessageBox& notice) { QTest::keyClick(&notice, Qt::Key_Return); });
            spin.setFocus();
            QTest::keyClick(&spin, Qt::Key_Up);
            EXPECT_TRUE(test::waitFor([&] { return editor.shownPort() == port && spin.isEnabled(); }));
            QApplication::processEvents();
            sizes.push_back(editor.size());
        }
        frame = editor.frameGeometry();
        QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
    });
    start(test::editingPort(15));
    ASSERT_TRUE(test::waitFor([&] { return sizes.size() == 5; }, 20000));
    // (A window manager may still cut the first size to the screen as it frames the window.)
    for (std::size_t i = 1; i < sizes.size(); ++i) {
        EXPECT_LE(sizes[i].height(), sizes.front().height()) << "the editor grew on a port change";
        EXPECT_EQ(sizes[i], sizes.back()) << "the editor changed its size on a port change";
    }
    EXPECT_LE(minimum.width(), 1280 - 16);
    EXPECT_LE(minimum.height(), 720 - 80) << "room for a panel and the title bar";
    EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(frame)) << "and stays on it";
}

} // namespace
} // namespace corvane
