#include "support/Program.h"
#include "support/ScratchProgramFolder.h"

#include <QStandardPaths>

#include <gtest/gtest.h>

namespace corvane {
namespace {

const QString Remote = QStringLiteral(CORVANE_REMOTE_EXE);

test::ProgramRun run(const QStringList& arguments, const std::function<void(QProcessEnvironment&)>& env)
{
    return test::runProgram(Remote, arguments, env);
}

void noDisplay(QProcessEnvironment& e)
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        e.remove(QString::fromLatin1(name));
}

TEST(DesktopProgram, WithoutADisplayItNamesTheCommandThatRunsIt)
{
    const test::ProgramRun r = run({QStringLiteral("--demo")}, noDisplay);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("\n    xvfb-run -a ") + Remote + QStringLiteral(" --demo\n")))
        << r.err.toStdString();
}

TEST(DesktopProgram, OptionsItCannotUseAreRefusedBeforeAnyWindow)
{
    struct Case {
        QStringList arguments;
        const char* says;
    } const cases[] = {
        {{QStringLiteral("--connect=0")}, "--connect takes a host number from 1 to 5"},
        {{QStringLiteral("--connect=6")}, "--connect takes a host number from 1 to 5"},
        {{QStringLiteral("--screenshot"), QStringLiteral("x")}, "--screenshot goes with --demo"},
        {{QStringLiteral("--bogus")}, "bogus"},
        {{QStringLiteral("stray")}, "Unexpected argument 'stray'"},
        {{QStringLiteral("--edit-port"), QStringLiteral("3")}, "--edit-port goes with --connect"},
        {{QStringLiteral("--connect"), QStringLiteral("--edit-port"), QStringLiteral("129")},
            "--edit-port takes a port from 1 to 128"},
    };
    for (const auto& c : cases) {
        const test::ProgramRun r = run(c.arguments, noDisplay);
        EXPECT_EQ(r.exitCode, 2) << c.says;
        EXPECT_TRUE(r.err.contains(QLatin1String(c.says))) << r.err.toStdString();
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
            : run(demo, noDisplay);
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
