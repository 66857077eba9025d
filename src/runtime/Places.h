#pragma once

#include <functional>
#include <optional>
#include <string>

namespace corvane {

// Where the program keeps what it keeps: made once at start-up from the command line and the
// environment (the programs' mains), or by a test, and gone by from then on.
struct Places {
    std::string storeFile; // the user store
    std::string programFolder; // the logs, the record of changes, the help page beside the program
    std::string registryFolder; // off Windows, the two hives' settings files ("": the platform's own)
    std::string timeLocale = "C"; // whose date and time format the logs write
};

// Where the store lies without CORVANE_ROOT: DefaultStorePlace, a folder of the system's own
// whose group decides who may read the store (the old place at the root, /BRELLWICK, is used
// while only it holds a store); on Windows the drive of the program folder + \BRELLWICK\BWKXBIDS.DAT.
inline constexpr const char* DefaultStorePlace = "/var/lib/corvane/BWKXBIDS.DAT";
inline constexpr const char* OldStorePlace = "/BRELLWICK/BWKXBIDS.DAT";
// Of the new place and the old: the new one when it holds a store or the old one does not; so
// that no store is ever made while one lies at either.
std::string chooseStorePlace(const std::string& newPlace, const std::string& oldPlace);

// Where an installed program keeps its logs and record of changes when it may write there: one
// folder for every user of the computer (the package makes it, group corvane), so that every
// account's changes land in one record.
inline constexpr const char* MachineLogPlace = "/var/log/corvane";

// A variable of the environment the program started in; none when it is not set.
using EnvironmentLookup = std::function<std::optional<std::string>(const char* name)>;

// The places from the environment and the executable's folder:
// - the store: $CORVANE_ROOT/BRELLWICK/BWKXBIDS.DAT when CORVANE_ROOT is set, else as above;
// - the program folder: CORVANE_PROGRAM_DIR when set, else the executable's folder; for an
//   installed program (bin/ beside share/corvane-remote/), `machineLogFolder` when it is a
//   folder the user may write; for one where it is not, or a folder the user cannot write, the
//   user's state folder ($XDG_STATE_HOME/corvane-remote, else ~/.local/state/corvane-remote),
//   made when missing; where that cannot be made either, the executable's folder stands;
// - the registry folder: CORVANE_REGISTRY_DIR;
// - the time locale: the first of LC_ALL, LC_TIME and LANG that is set, else "C".
Places placesFor(const EnvironmentLookup& environment, const std::string& executableFolder,
    const std::string& machineLogFolder = MachineLogPlace);

} // namespace corvane
