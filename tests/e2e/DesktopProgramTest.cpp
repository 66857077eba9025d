#include "support/Program.h"
#include "support/ScratchProgramFolder.h"

#include <QStandardPaths>

#include <gtest/gtest.h>

namespace corvane {
namespace {

const QString Remote = QStringLiteral(CORVANE_REMOTE_EXE);

void noDisplay(QProcessEnvironment& e)
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        e.remove(QString::fromLatin1(name));
}

// Refused before any window: without a display, the command that would run it is named.
TEST(DesktopProgram, WhatItCannotUseIsRefusedBeforeAnyWindow)
{
    struct Case {
        QStringList arguments;
        int status;
        QString says;
    } const cases[] = {
        {{QStringLiteral("--demo")}, 1, QStringLiteral("\n    xvfb-run -a ") + Remote + QStringLiteral(" --demo\n")},
        {{QStringLiteral("--connect=0")}, 2, QStringLiteral("--connect takes a host number from 1 to 5")},
        {{QStringLiteral("--connect=6")}, 2, QStringLiteral("--connect takes a host number from 1 to 5")},
        {{QStringLiteral("--screenshot"), QStringLiteral("x")}, 2, QStringLiteral("--screenshot goes with --demo")},
        {{QStringLiteral("stray")}, 2, QStringLiteral("Unexpected argument 'stray'")},
        {{QStringLiteral("--edit-port"), QStringLiteral("3")}, 2, QStringLiteral("--edit-port goes with --connect")},
        {{QStringLiteral("--connect"), QStringLiteral("--edit-port"), QStringLiteral("129")}, 2,
            QStringLiteral("--edit-port takes a port from 1 to 128")},
    };
    for (const auto& c : cases) {
        const test::ProgramRun r = test::runProgram(Remote, c.arguments, noDisplay);
        EXPECT_EQ(r.exitCode, c.status) << c.says.toStdString();
        EXPECT_TRUE(r.err.contains(c.says)) << r.err.toStdString();
    }
}

// The README's pictures, taken by the program itself: offscreen, and on a bare X server with no
// window manager, where no window is ever activated.
TEST(DesktopProgram, TheDemoTakesItsPicturesWithOrWithoutAWindowManager)
{
    const QString xvfbRun = QStandardPaths::findExecutable(QStringLiteral("xvfb-run"));
    ASSERT_FALSE(xvfbRun.isEmpty()) << "scripts/install-deps installs xvfb";
    for (const bool bareX : {false, true}) {
        test::ScratchProgramFolder folder;
        const QStringList demo = {
            QStringLiteral("--demo"), QStringLiteral("--screenshot"), QString::fromStdString(folder.path().string())};
        const test::ProgramRun r = bareX
            ? test::runProgram(xvfbRun, QStringList{QStringLiteral("-a"), Remote} + demo, noDisplay)
            : test::runProgram(Remote, demo, noDisplay);
        EXPECT_EQ(r.exitCode, 0) << (bareX ? "bare X: " : "offscreen: ") << r.err.toStdString();
        for (const char* picture :
            {"startup.png", "main.png", "configuration.png", "commparms-1.png", "commparms-5.png", "filenotfound.png"})
            EXPECT_TRUE(folder.exists(picture) && std::filesystem::file_size(folder.file(picture)) > 1000u) << picture;
    }
}

// On a machine where everything is installed, setting up changes nothing and needs no root.
TEST(Scripts, InstallDepsLeavesAPreparedMachineAlone)
{
    test::ScratchProgramFolder folder;
    const auto stubs = folder.path() / "bin";
    std::filesystem::create_directories(stubs);
    for (const char* tool : {"apt-get", "sudo"}) {
        folder.write(std::string("bin/") + tool, "#!/bin/sh\ntouch \"$(dirname \"$0\")/../called\"\nexit 1\n");
        std::filesystem::permissions(stubs / tool, std::filesystem::perms::owner_all);
    }
    const test::ProgramRun r = test::runProgram(QStringLiteral("bash"),
        {QStringLiteral(CORVANE_SOURCE_DIR "/scripts/install-deps")}, [&](QProcessEnvironment& env) {
            env.insert(QStringLiteral("PATH"),
                QString::fromStdString(stubs.string()) + QLatin1Char(':') + env.value(QStringLiteral("PATH")));
        });
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_FALSE(folder.exists("called")) << "the package manager was run";
}

} // namespace
} // namespace corvane
