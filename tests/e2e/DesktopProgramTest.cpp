#include "support/Program.h"
#include "support/ScratchProgramFolder.h"

#include <QProcess>
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
// window manager, where no window is ever activated. Each is taken once its window is on the
// screen, painted and the program idle, never at the end of a wait of its own. The two runs go
// side by side: most of each is the connect timer's tick that turns the label green.
TEST(DesktopProgram, TheDemoTakesItsPicturesWithOrWithoutAWindowManager)
{
    const QString xvfbRun = QStandardPaths::findExecutable(QStringLiteral("xvfb-run"));
    ASSERT_FALSE(xvfbRun.isEmpty()) << "scripts/install-deps installs xvfb";
    test::ScratchProgramFolder folder;
    struct Run {
        const char* name;
        bool bareX;
        QProcess process{};
    } runs[] = {{"offscreen", false}, {"bare-x", true}};
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    noDisplay(env);
    for (Run& run : runs) {
        const QStringList demo = {QStringLiteral("--demo"), QStringLiteral("--screenshot"),
            QString::fromStdString(folder.file(run.name).string())};
        run.process.setProcessEnvironment(env);
        if (run.bareX)
            run.process.start(xvfbRun, QStringList{QStringLiteral("-a"), Remote} + demo);
        else
            run.process.start(Remote, demo);
    }
    for (Run& run : runs) {
        SCOPED_TRACE(run.name);
        ASSERT_TRUE(run.process.waitForFinished(60000));
        const QString out = QString::fromLocal8Bit(run.process.readAllStandardOutput());
        EXPECT_EQ(run.process.exitCode(), 0) << run.process.readAllStandardError().toStdString();
        EXPECT_FALSE(out.contains(QStringLiteral("had not settled"))) << out.toStdString();
        for (const char* picture : {"startup.png", "main.png", "configuration.png", "commparms-1.png",
                 "commparms-5.png", "filenotfound.png"}) {
            const std::string file = std::string(run.name) + '/' + picture;
            EXPECT_TRUE(folder.exists(file) && std::filesystem::file_size(folder.file(file)) > 1000u) << picture;
        }
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
