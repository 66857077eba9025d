#include "cli/Grammar.h"

#include <gtest/gtest.h>

namespace corvane::cli {
namespace {

// One command line each: what it reads as, or the usage error it is (a part of its words).
TEST(CliGrammar, EveryCommandLineReadsOneWay)
{
    struct Case {
        const char* line;
        const char* error; // nullptr: read, as below
        const char* command = "";
        QStringList arguments = {};
        std::vector<std::pair<QString, QStringList>> own = {};
        bool json = false;
        std::optional<QString> host = {};
        std::optional<QString> user = {};
    } const cases[] = {
        {"status --host 10.0.0.1 --json", nullptr, "status", {}, {}, true, QStringLiteral("10.0.0.1")},
        {"--json --host=10.0.0.1 status", nullptr, "status", {}, {}, true, QStringLiteral("10.0.0.1")},
        {"history --user SMITH 5", nullptr, "history", {QStringLiteral("5")}, {{QStringLiteral("--user"), {QStringLiteral("SMITH")}}}},
        {"--user boss history", "history logs nobody in: --user is not used"},
        {"fields --host 10.0.0.1", "fields does not connect to a host: --host is not used"},
        {"init-store --json", "init-store writes no JSON: --json is not used"},
        {"status --yes", "status asks nothing: --yes is not used"},
        {"history --timeout 5", "history does not connect to a host: --timeout is not used"},
        {"status --bogus", "Unknown option '--bogus' for status."},
        {"--bogus status", "Unknown option '--bogus'."},
        {"--interval 5 watch", "Unknown option '--interval'."},
        {"status --poll", "Unknown option '--poll' for status."},
        {"watch --interval=7 --poll", nullptr, "watch", {},
            {{QStringLiteral("--interval"), {QStringLiteral("7")}}, {QStringLiteral("--poll"), {}}}},
        {"watch --poll=1", "--poll takes no value"},
        {"watch --interval", "--interval needs a value"},
        {"--timeout 0 status", "--timeout takes 1 to 3600"},
        {"users add -- -dash --grant", nullptr, "users", {QStringLiteral("add"), QStringLiteral("-dash"), QStringLiteral("--grant")}},
        {"users add BOB --grant 0 4 --password pw", nullptr, "users", {QStringLiteral("add"), QStringLiteral("BOB")},
            {{QStringLiteral("--grant"), {QStringLiteral("0"), QStringLiteral("4")}},
                {QStringLiteral("--password"), {QStringLiteral("pw")}}}},
        {"users add BOB --grant", "--grant needs at least one value"},
        {"--password pw --user boss users list", nullptr, "users", {QStringLiteral("list")}, {}, false, {},
            QStringLiteral("boss")},
        {"set-parms 5 --dry-run Baud=3", nullptr, "set-parms", {QStringLiteral("5"), QStringLiteral("Baud=3")},
            {{QStringLiteral("--dry-run"), {}}}},
        {"export 1-3 --file -", nullptr, "export", {QStringLiteral("1-3")}, {{QStringLiteral("--file"), {QStringLiteral("-")}}}},
        {"--help status", nullptr, "help", {QStringLiteral("status")}},
        {"status --bogus --help", "Unknown option '--bogus' for status."},
        {"purge 3 --help", nullptr, "help", {QStringLiteral("purge")}},
        {"", "no command given"},
        {"bogus", "Unknown command 'bogus'."},
        {"--password a --password-file f status", "give --password or --password-file, not both"},
    };
    for (const Case& c : cases) {
        QStringList words{QStringLiteral("corvane-remote-cli")};
        words << QString::fromLatin1(c.line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        try {
            const Options o = parseOptions(words);
            EXPECT_EQ(c.error, nullptr) << c.line << ": read, not refused";
            EXPECT_EQ(o.command, QLatin1String(c.command)) << c.line;
            EXPECT_EQ(o.arguments, c.arguments) << c.line;
            EXPECT_EQ(o.own, c.own) << c.line;
            EXPECT_EQ(o.json, c.json) << c.line;
            EXPECT_EQ(o.host, c.host) << c.line;
            EXPECT_EQ(o.user, c.user) << c.line;
        } catch (const UsageError& e) {
            ASSERT_NE(c.error, nullptr) << c.line << ": " << e.what.toStdString();
            EXPECT_TRUE(e.what.contains(QLatin1String(c.error))) << c.line << ": " << e.what.toStdString();
        }
    }
}

// The password a script leaves in the environment goes to a command that logs in, and to no other.
TEST(CliGrammar, TheEnvironmentsPasswordGoesOnlyWhereSomeoneLogsIn)
{
    const QStringList status{QStringLiteral("cli"), QStringLiteral("status")};
    const QStringList fields{QStringLiteral("cli"), QStringLiteral("fields")};
    EXPECT_EQ(parseOptions(status, QStringLiteral("pw")).password, QStringLiteral("pw"));
    EXPECT_EQ(parseOptions(fields, QStringLiteral("pw")).password, std::nullopt);
}

} // namespace
} // namespace corvane::cli
