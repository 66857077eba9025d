#include "runtime/ProgramSetting.h"

#include <filesystem>
#include <system_error>

namespace corvane {
namespace {

ProgramSetting*& current()
{
    static ProgramSetting* setting = nullptr;
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

// One that goes while a later one is still in force leaves the chain, so that the later one
// falls back, when it goes, on the one before both.
ProgramSetting::~ProgramSetting()
{
    if (current() == this) {
        current() = before_;
        return;
    }
    for (ProgramSetting* later = current(); later != nullptr; later = later->before_)
        if (later->before_ == this) {
            later->before_ = before_;
            return;
        }
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
