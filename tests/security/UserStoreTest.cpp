#include "security/UserStore.h"
#include "support/ScratchProgramFolder.h"
#include "support/Users.h"

#include <gtest/gtest.h>

namespace corvane {

namespace {

using test::user;

using test::errorNumberRaisedBy;

TEST(UserRecord, BytesLieWhereTheFamilyOfProgramsExpectsThem)
{
    // Worked out by hand from the table rules: name entry i = 5 + (11 i mod 47), password entry
    // i = 7 + (13 i mod 29), rights entry i = (37 i + 11) mod 256.
    const UserRecordBytes r = encodeUserRecord(user("SUPERVISOR", "SECRET12345", {0, 4}, 1));
    // Name: 'R' + 5 + (99 mod 47) at 9; the padding is scrambled too (10, 19). Password: '2' + 7 +
    // (91 mod 29) at 27; characters 9-20 stand as they are (28, 39). Rights: positions 0 and 4
    // granted (entries 0 and 4), 1, 3 and 99 not (entries 2, 4 and 100). The supervisor mark last.
    const std::pair<std::size_t, int> expected[]
        = {{0, 'S' + 5}, {9, 'R' + 10}, {10, ' ' + 21}, {19, ' ' + 26}, {20, 'S' + 7}, {27, '2' + 11}, {28, '3'},
            {39, ' '}, {40, 11}, {41, 85}, {43, 159}, {44, 159}, {139, 127}, {140, 0}, {141, 1}, {142, 0}};
    for (const auto& [offset, byte] : expected)
        EXPECT_EQ(r[offset], byte) << "offset " << offset;
}

TEST(UserRecord, RoundTripsAndWhatLoadingDrops)
{
    struct Case {
        UserEntry written;
        UserEntry read;
    } const cases[] = {
        {user("JOHN SMITH", "pw"), user("JOHNSMITH", "pw")},
        {user("SMITH", "ABCDEFGHIJKLMNOPQRST", {99}), user("SMITH", "ABCDEFGHIJKLMNOPQRST", {99})},
        {user("A NAME LONGER THAN TWENTY", "x y"), user("ANAMELONGERTHANT", "xy")},
        {user("GUEST", "", {100}), user("GUEST", "")}, // position 100 is never kept
        {user("~}|", "~~~~~~~~~"), user("~}|", "~~~~~~~~~")}, // scrambled past 127
    };
    for (const auto& c : cases)
        EXPECT_EQ(decodeUserRecord(encodeUserRecord(c.written)), c.read) << c.written.UserName;
}

TEST(UserRecord, UnknownRightsBytesAndOutOfRangeBytes)
{
    UserRecordBytes r = encodeUserRecord(user("SMITH", "", {7}));
    r[RightsOffset + 7] = 200; // neither granted nor not-granted
    EXPECT_EQ(decodeUserRecord(r).Rights[7], 0);
    EXPECT_EQ(errorNumberRaisedBy([] {
        encodeUserRecord(user("M\xFF"
                              "LLER",
            ""));
    }),
        err::Overflow);
}

class UserStoreFile : public ::testing::Test {
protected:
    test::ScratchProgramFolder folder;
    std::filesystem::path path = folder.useAsStoreRoot();

    void writeStore(const std::vector<UserEntry>& entries, const std::string& tail = {})
    {
        std::string bytes;
        for (const auto& e : entries) {
            const auto r = encodeUserRecord(e);
            bytes.append(reinterpret_cast<const char*>(r.data()), r.size());
        }
        std::ofstream(path, std::ios::binary) << bytes << tail;
    }
};

TEST_F(UserStoreFile, LoadsEveryRecordAndFindsTheReservedUsers)
{
    writeStore({user("SMITH", "S1"), user("Guest", ""), user("", "gone"), user("supervisor", "", {}, 1)});
    UserStore store(path.string());
    EXPECT_EQ(store.CurrentUser, Nobody);
    EXPECT_EQ(store.SupervisorIndex, Nobody);
    ASSERT_EQ(store.Load_User_Store(), TrueValue);
    ASSERT_EQ(store.count(), 4);
    EXPECT_EQ(store.GuestIndex, 1);
    EXPECT_EQ(store.SupervisorIndex, 3);

    std::int16_t index = -1;
    EXPECT_EQ(store.Find_User("SMITH", index), TrueValue);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(store.Find_User("smith", index), FalseValue); // case counts
    EXPECT_EQ(index, 4);
}

TEST_F(UserStoreFile, EmptyMissingDamagedAndUnreadableStores)
{
    UserStore store(path.string());
    store.users = {user("KEPT", "")};
    EXPECT_EQ(loadUserStore(store, folder.logs()), StoreLoad::Missing);

    std::ofstream(path, std::ios::binary) << std::string(UserRecordLength, '\0');
    EXPECT_EQ(loadUserStore(store, folder.logs()), StoreLoad::Damaged);
    EXPECT_EQ(store.users.size(), 1u);

    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_EQ(loadUserStore(store, folder.logs()), StoreLoad::Unreadable);

    const std::string when = test::ScratchProgramFolder::momentText();
    EXPECT_EQ(folder.lines("error.log"),
        (std::vector<std::string>{"Error Location 143 Err = 6 " + when, "Error Location 143 Err = 75 " + when}));
}

// Stores no program of ours writes: each is refused whole, says why, writes nothing to error.log
// (the file read well) and leaves the table and its indices as they were.
TEST_F(UserStoreFile, AStoreThatIsNotSoundIsRefused)
{
    const UserEntry supervisor = user("SUPERVISOR", "", {}, 1);
    const UserEntry guest = user("GUEST", "");
    const auto bytes = test::storeBytes;
    std::string unknownMark = bytes({supervisor, guest});
    unknownMark[UserRecordLength + SupervisorMarkOffset] = 2;
    struct Case {
        const char* name;
        std::string file;
        const char* says;
    } const cases[] = {
        {"empty", "", "holds no users"},
        {"short last record", bytes({supervisor, guest}) + std::string(100, 'x'), "cut short"},
        {"one byte short", bytes({supervisor, guest}).substr(0, 2 * UserRecordLength - 1), "cut short"},
        {"no guest", bytes({supervisor, user("SMITH", "")}), "no GUEST"},
        {"no supervisor's mark", bytes({user("SUPERVISOR", ""), guest}), "not marked"},
        {"no supervisor", bytes({guest, user("SMITH", "")}), "no supervisor"},
        {"two marked", bytes({supervisor, guest, user("SMITH", "", {}, 1)}), "marks SMITH"},
        {"a deleted record marked", bytes({supervisor, guest, user("", "", {}, 1)}), "deleted record"},
        {"the supervisor twice", bytes({supervisor, guest, supervisor}), "twice"},
        {"a name twice, case aside", bytes({supervisor, guest, user("SMITH", "a"), user("smith", "b", {0})}),
            "smith twice"},
        {"the guest twice", bytes({supervisor, guest, user("Guest", "")}), "twice"},
        {"an unknown mark", unknownMark, "unknown supervisor mark"},
    };
    for (const auto& c : cases) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << c.file;
        UserStore store(path.string());
        store.users = {user("KEPT", "")};
        store.CurrentUser = 0;
        EXPECT_EQ(loadUserStore(store, folder.logs()), StoreLoad::Damaged) << c.name;
        EXPECT_NE(store.fault.find(c.says), std::string::npos) << c.name << ": " << store.fault;
        EXPECT_EQ(store.users, std::vector<UserEntry>{user("KEPT", "")}) << c.name;
        EXPECT_EQ(store.SupervisorIndex, Nobody) << c.name;
        EXPECT_EQ(store.GuestIndex, Nobody) << c.name;
    }
    EXPECT_TRUE(folder.lines("error.log").empty());

    // The supervisor is the marked record wherever it lies, not the first.
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes({guest, user("SMITH", ""), supervisor});
    UserStore store(path.string());
    ASSERT_EQ(loadUserStore(store, folder.logs()), StoreLoad::Loaded);
    EXPECT_EQ(store.SupervisorIndex, 2);
    EXPECT_TRUE(store.isSupervisor(2));
    EXPECT_FALSE(store.isSupervisor(0));
    EXPECT_FALSE(store.isSupervisor(Nobody));
    EXPECT_TRUE(store.fault.empty());
}

TEST_F(UserStoreFile, ASavedRecordReplacesItsOwnOrExtendsTheStore)
{
    writeStore({user("SUPERVISOR", "", {}, 1), user("GUEST", ""), user("SMITH", "S1", {4})});
    UserStore store(path.string());
    ASSERT_TRUE(store.Load_User_Store());

    store.users[2] = user("JONES", "pw", {0});
    store.Save_User_Record(2);
    store.users.push_back(user("BROWN", "b"));
    store.Save_User_Record(3);

    UserStore reloaded(path.string());
    ASSERT_TRUE(reloaded.Load_User_Store());
    EXPECT_EQ(reloaded.users, store.users);
    EXPECT_EQ(std::filesystem::file_size(path), 4 * UserRecordLength);
    EXPECT_EQ(errorNumberRaisedBy([&] { store.Save_User_Record(9); }), err::SubscriptOutOfRange);
}

TEST_F(UserStoreFile, SavingCreatesAMissingStoreButNotItsFolder)
{
    UserStore store(path.string());
    store.users = {user("SUPERVISOR", "", {}, 1)};
    store.Save_User_Record(0);
    EXPECT_EQ(std::filesystem::file_size(path), UserRecordLength);

    UserStore elsewhere(folder.file("nowhere/BRELLWICK/BWKXBIDS.DAT").string());
    elsewhere.users = store.users;
    EXPECT_EQ(errorNumberRaisedBy([&] { elsewhere.Save_User_Record(0); }), err::PathNotFound);
}

// The store's place: the new one, unless only the old one holds a store, so that no first store
// is ever made while a store lies at either.
TEST(UserStorePlace, TheNewPlaceUnlessOnlyTheOldHoldsAStore)
{
    test::ScratchProgramFolder folder;
    const std::string newPlace = folder.file("new.DAT").string(), oldPlace = folder.file("old.DAT").string();
    struct Case {
        bool atNew, atOld;
        const std::string& chosen;
    } const cases[] = {
        {false, false, newPlace}, {false, true, oldPlace}, {true, false, newPlace}, {true, true, newPlace}};
    for (const Case& c : cases) {
        std::filesystem::remove(newPlace);
        std::filesystem::remove(oldPlace);
        if (c.atNew)
            folder.write("new.DAT", "x");
        if (c.atOld)
            folder.write("old.DAT", "x");
        EXPECT_EQ(chooseStorePlace(newPlace, oldPlace), c.chosen) << c.atNew << c.atOld;
    }
}

} // namespace
} // namespace corvane
