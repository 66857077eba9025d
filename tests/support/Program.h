#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

namespace corvane::test {

struct ProgramRun {
    int exitCode;
    QString out;
    QString err;
};

// Runs a program of ours to its end, in this process's environment as `edit` changes it.
inline ProgramRun runProgram(
    const QString& program, const QStringList& arguments, const std::function<void(QProcessEnvironment&)>& edit = {})
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    if (edit)
        edit(env);
    process.setProcessEnvironment(env);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
        QString::fromLocal8Bit(process.readAllStandardError())};
}

} // namespace corvane::test
