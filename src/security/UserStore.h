#pragma once

#include "runtime/Convert.h"
#include "runtime/Places.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class Logs;

// The user store shared by the host's family of programs: fixed records of 143 bytes, numbered
// from 1, no header. Name (20 bytes, all scrambled), password (20 bytes, the first 8 scrambled),
// rights positions 0-100 (101 bytes, 0-99 scrambled to a granted or not-granted byte) and the
// supervisor mark (16-bit little-endian).
inline constexpr std::size_t UserRecordLength = 143;
inline constexpr std::size_t UserFieldLength = 20;
inline constexpr std::size_t ScrambledPasswordLength = 8;
inline constexpr std::size_t RightsOffset = 40;
inline constexpr std::size_t RightsPositions = 101; // 0-100; 100 carries no meaning
inline constexpr std::size_t StoredRights = 100; // 0-99 are written and read
inline constexpr std::size_t SupervisorMarkOffset = 141;

using UserRecordBytes = std::array<unsigned char, UserRecordLength>;
using UserRights = std::array<std::uint8_t, RightsPositions>; // 1 granted, 0 not

struct UserEntry {
    std::string UserName; // empty for a deleted user
    std::string Password;
    UserRights Rights{};
    std::int16_t IsSupervisor = 0; // 1 for the supervisor's record

    bool operator==(const UserEntry&) const = default;
};

// The three fixed scrambling tables: name (positions 0-19 used), password (0-7 used) and rights
// (entry i is position i's granted byte, entry i + 1 its not-granted byte).
struct ScrambleTables {
    std::array<unsigned char, 21> name{};
    std::array<unsigned char, 9> password{};
    std::array<unsigned char, 102> rights{};
};
const ScrambleTables& Init_Scramble_Tables();

// One entry as its record's bytes, and back. A byte pushed out of 0-255 by the scrambling, in
// either direction, raises "Overflow". Reading drops every blank and NUL from name and password.
UserRecordBytes encodeUserRecord(const UserEntry& entry);
UserEntry decodeUserRecord(const UserRecordBytes& record);

// No user: what an index holds before a load has found anybody. It has no rights.
inline constexpr std::int16_t Nobody = -1;

// Why a store that reads to its end still cannot be used, in the words the programs say; empty
// when it is sound. Sound: whole records, at least one, exactly one supervisor's record (marked
// 1, named SUPERVISOR; every other mark 0), one GUEST, no name twice (case aside).
std::string storeFault(const std::vector<UserEntry>& users, std::size_t strayBytes);

// A store that reads but is not sound (see storeFault); what() says why.
struct UnsoundStore : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The users of the store, held in memory as the one source for log-in and access checks.
class UserStore {
public:
    // The store at `path` (the store file of the program's places, see runtime/Places.h).
    explicit UserStore(std::string storePath)
        : path(std::move(storePath))
    {
    }

    std::vector<UserEntry> users;
    std::int16_t SupervisorIndex = Nobody; // the record marked as the supervisor's
    std::int16_t GuestIndex = Nobody;
    std::int16_t CurrentUser = Nobody;
    std::int16_t SelectedUser = Nobody;
    std::string path; // where the store lies
    std::string fault; // why the last load refused the store, else empty

    // Reads the whole store into `users`. False (the table unchanged) when there is no store;
    // a record that does not unscramble raises "Overflow", and a store that is not sound (a
    // short last record, no records, no GUEST, two supervisors, a name twice) raises
    // UnsoundStore; both leave the table and the indices unchanged.
    Bool16 Load_User_Store();
    // Writes entry `index` as record index + 1 (the file is created when missing). File
    // errors are raised as the runtime's file errors.
    void Save_User_Record(std::int16_t index);
    // The first entry whose name equals `name` exactly; false with `index` past the last entry.
    Bool16 Find_User(std::string_view name, std::int16_t& index) const;

    // Entry `index`; an index with no entry raises "Subscript out of range".
    UserEntry& user(std::int16_t index);
    const UserEntry& user(std::int16_t index) const;
    std::int16_t count() const;
    // Entry `index` when it is a user (in the table, not deleted); null for nobody.
    const UserEntry* liveUser(std::int16_t index) const;
    // Whether `index` is the supervisor's entry; never for nobody.
    bool isSupervisor(std::int16_t index) const;
};

// The reserved users every store holds.
inline constexpr std::string_view SupervisorName = "SUPERVISOR";
inline constexpr std::string_view GuestName = "GUEST";

// How a load ended, for the main window: it cannot go on without a readable, sound store.
enum class StoreLoad {
    Loaded,
    Missing, // no file at the store's path
    Unreadable, // the file is there but cannot be read (its error number is in error.log)
    Damaged, // a record does not unscramble (Overflow in error.log), or the store is not sound
};

// Load_User_Store under the shared module's error trap (location 143): a store that cannot be
// read or does not unscramble leaves a line in error.log and the table as it was; one that is not
// sound leaves the table as it was and its reason in `store.fault`.
StoreLoad loadUserStore(UserStore& store, Logs& logs);

} // namespace corvane
