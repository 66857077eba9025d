// A command line for the client, its words split at NUL bytes, through the option parser and the
// help of whatever command it names: a usage error is an answer, a crash or an abort is not.
#include "cli/Cli.h"
#include "Input.h"

#include <QStringList>

#include <cstdlib>

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input = fuzz::text(data, size);
    QStringList arguments{QStringLiteral("corvane-remote-cli")};
    std::size_t from = 0;
    for (std::size_t at = input.find('\0'); from <= input.size(); at = input.find('\0', from)) {
        const std::string_view word = input.substr(from, at == std::string_view::npos ? std::string_view::npos : at - from);
        arguments << QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
        if (at == std::string_view::npos)
            break;
        from = at + 1;
    }
    try {
        const cli::Options options = cli::parseOptions(arguments);
        if (options.command.isEmpty())
            std::abort(); // a command line without one is a usage error
        (void)cli::helpText(options.command);
    } catch (const cli::UsageError& e) {
        if (e.what.isEmpty())
            std::abort(); // every usage error says what was wrong
    }
    return 0;
}
