#include "security/UserStore.h"

#include "runtime/BoundedRead.h"
#include "runtime/ErrorLog.h"
#include "runtime/ProgramFolder.h"
#include "runtime/RunTimeError.h"
#include "runtime/Text.h"
#include "runtime/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include <random>

#ifdef _WIN32
#include <io.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {
namespace {

// Our tables follow one rule each: name and password entries stay between 5 and 51, so any
// printable character (32-126) still fits in a byte once scrambled; neighbouring rights entries
// differ by 37 (mod 256), so no position's granted byte equals its not-granted byte.
constexpr ScrambleTables makeScrambleTables()
{
    ScrambleTables t{};
    for (std::size_t i = 0; i < t.name.size(); ++i)
        t.name[i] = static_cast<unsigned char>(5 + (i * 11) % 47);
    for (std::size_t i = 0; i < t.password.size(); ++i)
        t.password[i] = static_cast<unsigned char>(7 + (i * 13) % 29);
    for (std::size_t i = 0; i < t.rights.size(); ++i)
        t.rights[i] = static_cast<unsigned char>((i * 37 + 11) % 256);
    return t;
}

constexpr ScrambleTables scrambleTables = makeScrambleTables();

unsigned char shifted(unsigned char byte, int by)
{
    const int value = byte + by;
    if (value < 0 || value > 255)
        raise(err::Overflow);
    return static_cast<unsigned char>(value);
}

// Every blank and NUL goes, inner ones too.
std::string withoutBlanks(const unsigned char* bytes, std::size_t length)
{
    std::string out;
    for (std::size_t i = 0; i < length; ++i)
        if (bytes[i] != ' ' && bytes[i] != '\0')
            out += static_cast<char>(bytes[i]);
    return out;
}

void putField(UserRecordBytes& record, std::size_t offset, std::string_view text)
{
    const std::string field = fixedWidth(text, UserFieldLength);
    for (std::size_t i = 0; i < UserFieldLength; ++i)
        record[offset + i] = static_cast<unsigned char>(field[i]);
}

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

#ifdef _WIN32
// What was written reaches the disk before the new store takes the old one's place.
bool syncToDisk(std::FILE* file)
{
#ifdef _WIN32
    return _commit(_fileno(file)) == 0;
#else
    return ::fsync(::fileno(file)) == 0;
#endif
}
#endif

#ifndef _WIN32
// The store's bytes written over the store itself, through a descriptor that never follows a
// link: where no new file can be made beside it (a folder only the administrator may write) or
// a new file could not keep the store's owner.
int rewriteInPlace(const std::string& path, const std::string& bytes)
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0)
        return fileErrorFromErrno(errno == ELOOP ? EACCES : errno);
    struct stat st { };
    int error = ::fstat(fd, &st) != 0 ? errno : S_ISREG(st.st_mode) ? 0 : EACCES;
    if (!error)
        error = writeAllAt(fd, bytes, 0);
    if (!error && ::fsync(fd) != 0)
        error = errno;
    if (::close(fd) != 0 && !error)
        error = errno;
    return error ? fileErrorFromErrno(error) : 0;
}
#endif

// The new store goes in place whole or not at all. A new file is created exclusively beside the
// store under a name no one else would pick (never opening what is there, a planted link
// included), written, synced, given the store's owner, group and mode, and renamed over it. What
// lies at the store's path must be a regular file: a link or anything else is refused and left
// as it is. 0, or the runtime's file error number.
int putStoreInPlace(const std::string& path, const std::string& bytes)
{
#ifdef _WIN32
    // Untested: no Windows build has been made. No links or owners to keep there.
    const std::string temporary = path + ".new";
    errno = 0;
    File out{std::fopen(temporary.c_str(), "wb")};
    if (!out)
        return fileErrorFromErrno(errno);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), out.get()) == bytes.size()
        && std::fflush(out.get()) == 0 && syncToDisk(out.get());
    const int writeErrno = errno;
    out.reset();
    std::error_code ec;
    if (written) {
        std::filesystem::rename(temporary, path, ec);
        if (!ec)
            return 0;
    }
    const int error = written ? ec.value() : writeErrno;
    std::filesystem::remove(temporary, ec);
    return fileErrorFromErrno(error);
#else
    struct stat old { };
    const bool hadOld = ::lstat(path.c_str(), &old) == 0;
    if (!hadOld && errno != ENOENT)
        return fileErrorFromErrno(errno);
    if (hadOld && !S_ISREG(old.st_mode))
        return err::PathFileAccessError; // a link, a folder, a device: not the store
    const std::size_t slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    static std::mt19937_64 random{std::random_device{}()};
    std::string temporary;
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 16; ++attempt) {
        char suffix[17];
        std::snprintf(suffix, sizeof suffix, "%016llx", static_cast<unsigned long long>(random()));
        temporary = folder + "/." + name + "." + suffix;
        fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (fd < 0 && errno != EEXIST) {
            if (hadOld && (errno == EACCES || errno == EPERM || errno == EROFS))
                return rewriteInPlace(path, bytes);
            return fileErrorFromErrno(errno);
        }
    }
    if (fd < 0)
        return fileErrorFromErrno(EEXIST);
    const auto giveUp = [&](int error) {
        ::close(fd);
        ::unlink(temporary.c_str());
        return fileErrorFromErrno(error);
    };
    if (hadOld) {
        // The owner as before (root may give it), else at least the group where this user may.
        bool ownerKept = ::fchown(fd, old.st_uid, old.st_gid) == 0;
        if (!ownerKept && old.st_uid == ::geteuid()) {
            [[maybe_unused]] const int grouped = ::fchown(fd, static_cast<uid_t>(-1), old.st_gid);
            ownerKept = true;
        }
        if (!ownerKept) {
            ::close(fd);
            ::unlink(temporary.c_str());
            return rewriteInPlace(path, bytes);
        }
        if (::fchmod(fd, old.st_mode & 07777) != 0)
            return giveUp(errno);
    } else if (::fchmod(fd, 0660) != 0) {
        // A first store is the group's to share, whatever the umask: nothing for anyone else.
        return giveUp(errno);
    }
    if (const int error = writeAllAt(fd, bytes, 0))
        return giveUp(error);
    if (::fsync(fd) != 0)
        return giveUp(errno);
    if (::close(fd) != 0) {
        const int error = errno;
        ::unlink(temporary.c_str());
        return fileErrorFromErrno(error);
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        const int error = errno;
        ::unlink(temporary.c_str());
        return fileErrorFromErrno(error);
    }
    if (const int dir = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return 0;
#endif
}


} // namespace

const ScrambleTables& Init_Scramble_Tables()
{
    return scrambleTables;
}

UserRecordBytes encodeUserRecord(const UserEntry& entry)
{
    const ScrambleTables& t = Init_Scramble_Tables();
    UserRecordBytes record{};
    putField(record, 0, entry.UserName);
    putField(record, UserFieldLength, entry.Password);
    for (std::size_t r = 0; r < StoredRights; ++r)
        record[RightsOffset + r] = entry.Rights[r] == 1 ? t.rights[r] : t.rights[r + 1];
    record[SupervisorMarkOffset] = static_cast<unsigned char>(static_cast<std::uint16_t>(entry.IsSupervisor) & 0xFF);
    record[SupervisorMarkOffset + 1] = static_cast<unsigned char>(static_cast<std::uint16_t>(entry.IsSupervisor) >> 8);

    for (std::size_t i = 0; i < UserFieldLength; ++i)
        record[i] = shifted(record[i], t.name[i]);
    for (std::size_t i = 0; i < ScrambledPasswordLength; ++i)
        record[UserFieldLength + i] = shifted(record[UserFieldLength + i], t.password[i]);
    return record;
}

UserEntry decodeUserRecord(const UserRecordBytes& record)
{
    const ScrambleTables& t = Init_Scramble_Tables();
    UserRecordBytes plain = record;
    for (std::size_t i = 0; i < UserFieldLength; ++i)
        plain[i] = shifted(plain[i], -t.name[i]);
    for (std::size_t i = 0; i < ScrambledPasswordLength; ++i)
        plain[UserFieldLength + i] = shifted(plain[UserFieldLength + i], -t.password[i]);

    UserEntry entry;
    entry.UserName = withoutBlanks(plain.data(), UserFieldLength);
    entry.Password = withoutBlanks(plain.data() + UserFieldLength, UserFieldLength);
    for (std::size_t r = 0; r < StoredRights; ++r)
        entry.Rights[r] = plain[RightsOffset + r] == t.rights[r] ? 1 : 0;
    entry.IsSupervisor
        = static_cast<std::int16_t>(plain[SupervisorMarkOffset] | (plain[SupervisorMarkOffset + 1] << 8));
    return entry;
}

std::string chooseStorePlace(const std::string& newPlace, const std::string& oldPlace)
{
    std::error_code ec;
    if (std::filesystem::exists(std::filesystem::symlink_status(newPlace, ec)))
        return newPlace;
    return std::filesystem::exists(std::filesystem::symlink_status(oldPlace, ec)) ? oldPlace : newPlace;
}

std::string userStorePath()
{
    const char* root = std::getenv("CORVANE_ROOT");
    if (root && *root) {
        std::string base = root;
        while (base.size() > 1 && (base.back() == '/' || base.back() == '\\'))
            base.pop_back();
#ifdef _WIN32
        return base + "\\BRELLWICK\\BWKXBIDS.DAT";
#else
        return (base == "/" ? "" : base) + "/BRELLWICK/BWKXBIDS.DAT";
#endif
    }
#ifdef _WIN32
    return programFolder().substr(0, 2) + "\\BRELLWICK\\BWKXBIDS.DAT";
#else
    return chooseStorePlace(DefaultStorePlace, OldStorePlace);
#endif
}

Bool16 UserStore::Load_User_Store()
{
    path = userStorePath();
    fault.clear();
    // Read whole, and only what a store can be: a regular file of at most 32,767 records (a pipe
    // at its place would hold the program up, a huge file fill its memory).
    const BoundedRead read = readBoundedFile(path, static_cast<long long>(INT16_MAX) * UserRecordLength);
    if (read.missing)
        return FalseValue;
    if (!read.refusal.empty())
        raise(read.refusal.find("more than") != std::string::npos ? err::Overflow : err::PathFileAccessError);

    std::vector<UserEntry> loaded;
    UserRecordBytes record;
    std::size_t at = 0;
    for (; at + record.size() <= read.bytes.size(); at += record.size()) {
        std::copy_n(read.bytes.begin() + static_cast<std::ptrdiff_t>(at), record.size(), record.begin());
        loaded.push_back(decodeUserRecord(record));
    }
    fault = storeFault(loaded, read.bytes.size() - at);
    if (!fault.empty())
        throw UnsoundStore(fault);

    // Sound, so each reserved user is there exactly once.
    for (std::size_t n = 0; n < loaded.size(); ++n) {
        if (loaded[n].IsSupervisor == 1)
            SupervisorIndex = static_cast<std::int16_t>(n);
        else if (upperCase(loaded[n].UserName) == GuestName)
            GuestIndex = static_cast<std::int16_t>(n);
    }
    users = std::move(loaded);
    return TrueValue;
}

std::string storeFault(const std::vector<UserEntry>& users, std::size_t strayBytes)
{
    if (strayBytes != 0)
        return "The user store ends in a record cut short.";
    if (users.empty())
        return "The user store holds no users.";
    int supervisors = 0;
    int guests = 0;
    std::vector<std::string> names;
    for (const UserEntry& entry : users) {
        const std::string name = upperCase(entry.UserName);
        if (entry.IsSupervisor != 0 && entry.IsSupervisor != 1)
            return "The user store holds an unknown supervisor mark.";
        if (entry.IsSupervisor == 1) {
            ++supervisors;
            if (name != SupervisorName)
                return name.empty() ? "The user store marks a deleted record as the supervisor's."
                                    : "The user store marks " + entry.UserName + " as the supervisor.";
        } else if (name == SupervisorName) {
            return "The user store holds a SUPERVISOR that is not marked as the supervisor.";
        }
        if (name.empty())
            continue;
        if (std::find(names.begin(), names.end(), name) != names.end())
            return "The user store holds the name " + entry.UserName + " twice.";
        names.push_back(name);
        guests += name == GuestName ? 1 : 0;
    }
    if (supervisors != 1)
        return supervisors ? "The user store holds two supervisors." : "The user store holds no supervisor.";
    if (guests == 0)
        return "The user store holds no GUEST.";
    return {};
}

// The store is written whole to a file beside it and put in its place in one step, so that a
// failure (a folder that takes no new file, a full disk) leaves the store as it was, never half
// written. The bytes are the same as writing the one record in place: the other records as they
// were, a gap before a new record filled with NULs.
void UserStore::Save_User_Record(std::int16_t index)
{
    const UserRecordBytes record = encodeUserRecord(user(index));
    if (path.empty())
        path = userStorePath();
    std::string bytes;
    errno = 0;
    if (File existing{std::fopen(path.c_str(), "rb")}) {
        char buffer[4096];
        for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, existing.get())) > 0;)
            bytes.append(buffer, n);
        if (std::ferror(existing.get()))
            raise(fileErrorFromErrno(errno));
    } else if (errno != ENOENT) {
        raise(fileErrorFromErrno(errno));
    }
    const auto offset = static_cast<std::size_t>(index) * UserRecordLength;
    if (bytes.size() < offset + UserRecordLength)
        bytes.resize(offset + UserRecordLength, '\0');
    std::copy(record.begin(), record.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));

    if (const int error = putStoreInPlace(path, bytes))
        raise(error);
}

Bool16 UserStore::Find_User(std::string_view name, std::int16_t& index) const
{
    for (index = 0; index < count(); ++index)
        if (users[static_cast<std::size_t>(index)].UserName == name)
            return TrueValue;
    return FalseValue;
}

UserEntry& UserStore::user(std::int16_t index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= users.size())
        raise(err::SubscriptOutOfRange);
    return users[static_cast<std::size_t>(index)];
}

const UserEntry& UserStore::user(std::int16_t index) const
{
    return const_cast<UserStore*>(this)->user(index);
}

std::int16_t UserStore::count() const
{
    return toInt16(static_cast<std::int64_t>(users.size()));
}

const UserEntry* UserStore::liveUser(std::int16_t index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= users.size())
        return nullptr;
    const UserEntry& entry = users[static_cast<std::size_t>(index)];
    return entry.UserName.empty() ? nullptr : &entry;
}

bool UserStore::isSupervisor(std::int16_t index) const
{
    const UserEntry* entry = liveUser(index);
    return entry && index == SupervisorIndex && entry->IsSupervisor == 1;
}

StoreLoad loadUserStore(UserStore& store)
{
    try {
        return store.Load_User_Store() ? StoreLoad::Loaded : StoreLoad::Missing;
    } catch (const UnsoundStore&) {
        return StoreLoad::Damaged;
    } catch (const RunTimeError& e) {
        Log_Run_Time_Error(location::SharedModule, e.number());
        return e.number() == err::Overflow ? StoreLoad::Damaged : StoreLoad::Unreadable;
    }
}

} // namespace corvane
