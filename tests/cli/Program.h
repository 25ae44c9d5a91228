// Runs the real command-line program.
#pragma once

#include "json/JsonDocument.h"

#include <gtest/gtest.h>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace pointloom {

struct Outcome {
    int status = -1;
    QByteArray out;
    QByteArray err;

    json::Value outJson() const { return json::Value::parse(out.toStdString()); }
    std::string errText() const { return err.toStdString(); }
};

inline QString program() {
    return QStringLiteral(POINTLOOM_CLI);
}

constexpr int patience = 300'000; // milliseconds; machines that build are slow

inline Outcome runProgram(const QStringList& arguments, const QString& folder = {}) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program(), arguments);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(patience)) << arguments.join(u' ').toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << arguments.join(u' ').toStdString();
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

/// Runs the program in a folder of its own.
class ProgramTest : public testing::Test {
protected:
    QTemporaryDir folder;

    QString path(const QString& name) const { return folder.filePath(name); }

    Outcome run(const char* arguments) const {
        return run(QProcess::splitCommand(QString::fromUtf8(arguments)));
    }
    Outcome run(const QStringList& arguments) const { return runProgram(arguments, folder.path()); }

    /// The one line on standard error of a run that must end with `status`.
    std::string faultOf(const char* arguments, int status = 1) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << arguments << '\n' << outcome.errText();
        EXPECT_EQ(outcome.err.count('\n'), 1) << outcome.errText();
        EXPECT_TRUE(outcome.err.startsWith("pointloom-cli: ")) << outcome.errText();
        return outcome.err.mid(15).trimmed().toStdString();
    }

    void write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    bool exists(const QString& name) const { return QFile::exists(path(name)); }
};

constexpr auto newTennis = "new -o m.plp --sport tennis --template classic --team1 Ana --team2 Bea --sets 3";

}
