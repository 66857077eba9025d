#include "support/ScratchProgramFolder.h"

#include "support/Program.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

test::ProgramRun run(const QStringList& arguments, const std::function<void(QProcessEnvironment&)>& env)
{
    return test::runProgram(QStringLiteral(CORVANE_REMOTE_EXE), arguments, env);
}

void noDisplay(QProcessEnvironment& e)
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        e.remove(QString::fromLatin1(name));
}

TEST(DesktopProgram, WithoutADisplayItSaysHowToRunIt)
{
    const test::ProgramRun r = run({QStringLiteral("--demo")}, noDisplay);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("xvfb-run"))) << r.err.toStdString();
}

TEST(DesktopProgram, HelpListsEveryOption)
{
    const test::ProgramRun r = run({QStringLiteral("--help")}, noDisplay);
    EXPECT_EQ(r.exitCode, 0);
    for (const char* option : {"--demo", "--screenshot", "--connect", "--create-user-store"})
        EXPECT_TRUE(r.out.contains(QString::fromLatin1(option))) << option;
}

TEST(DesktopProgram, TheDemoTakesItsPictures)
{
    test::ScratchProgramFolder folder;
    const test::ProgramRun r = run(
        {QStringLiteral("--demo"), QStringLiteral("--screenshot"), QString::fromStdString(folder.path().string())},
        noDisplay);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    for (const char* picture : {"startup.png", "main.png", "configuration.png"})
        EXPECT_GT(std::filesystem::file_size(folder.file(picture)), 1000u) << picture;
}

} // namespace
} // namespace corvane
