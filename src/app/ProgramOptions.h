#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace corvane {

// What the desktop program was asked to do on its command line.
struct ProgramOptions {
    bool help = false;
    bool version = false;
    bool createUserStore = false;
    bool demo = false;
    QString screenshotFolder; // with the demo: take the pictures here, then end
    std::optional<int> connectHost; // --connect: 0 for the last host used, else host 1-5
    std::optional<int> editPort; // --edit-port: the port shown as 1-128 in the grid

    // Whether the options want windows (and so a display).
    bool wantsWindows() const { return !help && !version && !createUserStore; }
};

// Reads the arguments (the program's name first). Nothing needs a display or a running
// application for this: a bad option is refused before either is looked for.
struct ParsedOptions {
    ProgramOptions options;
    QString error; // empty when the options are usable
};
ParsedOptions parseProgramOptions(const QStringList& arguments);

// The text --help prints.
QString programHelpText();

} // namespace corvane
