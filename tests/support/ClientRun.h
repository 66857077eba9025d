#pragma once

#include "cli/Cli.h"
#include "security/FirstStore.h"
#include "support/ManualTimers.h"
#include "support/SimulatedPlant.h"

#include <QString>

#include <gtest/gtest.h>

#include <cstdio>

namespace corvane::test {

// A plant whose user store lies where the client looks, a first one (the supervisor logs in
// without a word).
inline void giveFirstStore(SimulatedPlant& plant)
{
    plant.folder.useAsStoreRoot();
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
}

// What the client wrote to one of its streams.
inline QString written(std::FILE* stream)
{
    std::rewind(stream);
    QByteArray bytes;
    char chunk[4096];
    for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, stream)) > 0;)
        bytes.append(chunk, static_cast<qsizetype>(n));
    return QString::fromLocal8Bit(bytes);
}

struct ClientRun {
    int status;
    QString out, err;
};

// The client for one command line (words without blanks), as its main runs it, on `clock`.
inline ClientRun runClient(SimulatedPlant& plant, ManualTimers& clock, const char* line)
{
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    QStringList arguments = QString::fromLatin1(line).split(QLatin1Char(' '));
    arguments.prepend(QStringLiteral("corvane-remote-cli"));
    Terminal terminal(*plant.registry, clock, "tester", plant.folder.places(), ScratchProgramFolder::clock());
    const int status = cli::Client(cli::parseOptions(arguments), terminal, {out, err}).run();
    ClientRun run{status, written(out), written(err)};
    std::fclose(out);
    std::fclose(err);
    return run;
}

} // namespace corvane::test
