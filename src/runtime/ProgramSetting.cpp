#include "runtime/ProgramSetting.h"

#include <filesystem>
#include <system_error>

namespace corvane {
namespace {

const ProgramSetting*& current()
{
    static const ProgramSetting* setting = nullptr;
    return setting;
}

// Without a setting: where the executable lies, as the system tells it.
const Places& defaultPlaces()
{
    static const Places places = [] {
        std::error_code ec;
        std::string folder = ".";
        const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
        if (!ec && exe.has_parent_path())
            folder = exe.parent_path().string();
        Places p;
        p.programFolder = folder;
        p.storeFile = chooseStorePlace(DefaultStorePlace, OldStorePlace);
        return p;
    }();
    return places;
}

} // namespace

ProgramSetting::ProgramSetting(Places places, std::function<DateTime()> clock, LogWriter writer)
    : places_(std::move(places))
    , clock_(std::move(clock))
    , writer_(std::move(writer))
    , before_(current())
{
    current() = this;
}

ProgramSetting::~ProgramSetting()
{
    current() = before_;
}

const Places& programPlaces()
{
    return current() ? current()->places() : defaultPlaces();
}

std::string programFolder()
{
    return programPlaces().programFolder;
}

const LogWriter& programLogWriter()
{
    static const LogWriter none;
    return current() ? current()->writer() : none;
}

const std::function<DateTime()>& programClock()
{
    static const std::function<DateTime()> none;
    return current() ? current()->clock() : none;
}

} // namespace corvane
