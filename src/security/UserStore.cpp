#include "security/UserStore.h"

#include "runtime/BoundedRead.h"
#include "runtime/ErrorLog.h"
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



namespace corvane {
namespace {

// A store holds at most 32,767 records (its indices are 16-bit).
constexpr long long MaxStoreBytes = static_cast<long long>(INT16_MAX) * UserRecordLength;

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

Bool16 UserStore::Load_User_Store()
{
    fault.clear();
    // Read whole, and only what a store can be: a regular file of at most 32,767 records (a pipe
    // at its place would hold the program up, a huge file fill its memory).
    const BoundedRead read = readBoundedFile(path, MaxStoreBytes);
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
    // The store as it is, read as loading reads it: a regular file of a store's size.
    BoundedRead existing = readBoundedFile(path, MaxStoreBytes);
    if (!existing.refusal.empty() && !existing.missing)
        raise(existing.refusal.find("more than") != std::string::npos ? err::Overflow : err::PathFileAccessError);
    std::string bytes = std::move(existing.bytes);
    const auto offset = static_cast<std::size_t>(index) * UserRecordLength;
    if (bytes.size() < offset + UserRecordLength)
        bytes.resize(offset + UserRecordLength, '\0');
    std::copy(record.begin(), record.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));

    // Whole or not at all, never through a planted link; a first store is the group's to share,
    // whatever the umask. Where no new file can be made beside it or its owner kept, the store
    // is rewritten in place.
    const int error = putWholeFile(path, bytes, {.keepOwner = true, .newMode = 0660, .exactNewMode = true});
    if (error)
        raise(error == NoRegularFile ? err::PathFileAccessError : fileErrorFromErrno(error));
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

StoreLoad loadUserStore(UserStore& store, Logs& logs)
{
    try {
        return store.Load_User_Store() ? StoreLoad::Loaded : StoreLoad::Missing;
    } catch (const UnsoundStore&) {
        return StoreLoad::Damaged;
    } catch (const RunTimeError& e) {
        Log_Run_Time_Error(logs, location::SharedModule, e.number());
        return e.number() == err::Overflow ? StoreLoad::Damaged : StoreLoad::Unreadable;
    }
}

} // namespace corvane
