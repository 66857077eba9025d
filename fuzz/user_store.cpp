// Any file where the user store lies, loaded as the program loads it. A store that loads holds
// records that write back and read again as the same users.
#include "Input.h"
#include "runtime/RunTimeError.h"
#include "security/UserStore.h"

#include <cstdlib>
#include <fstream>

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::scratchFolder();
    const std::string path = fuzz::storePath();
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    UserStore store(path);
    if (loadUserStore(store, fuzz::logs()) != StoreLoad::Loaded)
        return 0;
    if (store.users.size() != size / UserRecordLength)
        std::abort();
    for (const UserEntry& entry : store.users) {
        try {
            if (decodeUserRecord(encodeUserRecord(entry)) != entry)
                std::abort();
        } catch (const RunTimeError&) {
            // A name or password that holds a byte the scrambling pushes out of range cannot be
            // written: the supervisor's form raises as well.
        }
    }
    return 0;
}
