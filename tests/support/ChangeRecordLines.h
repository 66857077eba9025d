#pragma once

#include "runtime/Logs.h"
#include "session/ChangeRecord.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace corvane::test {

// The record of changes as its reader takes it in: the well-formed lines, those of one port
// when given.
inline std::vector<QJsonObject> changeRecordLines(const Logs& logs, std::optional<int> port = std::nullopt)
{
    std::vector<QJsonObject> lines;
    ChangeFilter filter;
    filter.port = port;
    const ChangeRecordScan scan = scanChangeRecord(logs, filter, [&lines](const QJsonObject& line) {
        lines.push_back(line);
        return true;
    });
    EXPECT_EQ(scan.error, "");
    return lines;
}

} // namespace corvane::test
