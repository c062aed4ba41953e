#pragma once

#include "tests/simulator/SimulatorFixture.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <ostream>
#include <vector>

#include <sys/resource.h>

struct ProgramRun
{
    int exitCode = -1;
    QByteArray output = {};
    QByteArray errors = {};

    QJsonDocument json() const { return QJsonDocument::fromJson(output); }
};

inline std::ostream& operator<<(std::ostream& stream, ProgramRun const& run)
{
    return stream << "exit code " << run.exitCode << "\n" << run.output.toStdString() << run.errors.toStdString();
}

/// The shell tool as it was built, against a simulator in this process.
class CliFixture : public SimulatorFixture
{
protected:
    CliFixture()
    {
        environment.insert("TSAN_OPTIONS", qEnvironmentVariable("TSAN_OPTIONS"));
        environment.insert("PATH", QFileInfo(KELO_PROGRAM).path() + ':' + qEnvironmentVariable("PATH"));
        environment.insert("KELO_API_URL", QString("http://127.0.0.1:%1").arg(port));
        environment.insert("KELO_USERNAME", "kelo");
        environment.insert("KELO_PASSWORD", "kelo");
        environment.insert("KELO_INSTALLATION", "INST-1001");
    }

    ProgramRun kelo(QStringList const& arguments) const { return run(KELO_PROGRAM, arguments); }

    ProgramRun run(QString const& program, QStringList const& arguments) const
    {
        return finished(*started(program, arguments));
    }

    /// A program whose files take no more than so many bytes, as on a disk that is full.
    std::unique_ptr<QProcess> started(
        QString const& program, QStringList const& arguments, rlim_t mostBytes = RLIM_INFINITY) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->setChildProcessModifier(
            [mostBytes]
            {
                rlimit const limit{mostBytes, mostBytes};
                ::setrlimit(RLIMIT_FSIZE, &limit);
                std::signal(SIGXFSZ, SIG_IGN); // the write fails instead
                std::signal(SIGINT, SIG_DFL);  // ignored where the tests run in the background
            });
        process->start(program, arguments);
        return process;
    }

    /// Of a program that a signal ended, the exit code is what a shell makes of it.
    static ProgramRun finished(QProcess& process)
    {
        if (!process.waitForFinished(60'000))
        {
            process.kill();
            process.waitForFinished();
            return {-1, process.readAllStandardOutput(), "the program hung"};
        }
        int const fatal = process.exitStatus() == QProcess::CrashExit ? 128 : 0;
        return {fatal + process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }

    struct Mistake
    {
        QStringList arguments;
        char const* named = nullptr;
    };

    /// Each is told in one line, and nothing is sent.
    void expectBadInput(std::vector<Mistake> const& rows)
    {
        for (auto const& row : rows)
        {
            auto const run = kelo(row.arguments);
            SCOPED_TRACE(row.arguments.join(' ').toStdString());
            EXPECT_EQ(run.exitCode, 2) << run;
            EXPECT_EQ(run.output, "");
            EXPECT_TRUE(run.errors.startsWith("kelo: ") && run.errors.contains(row.named)) << run;
            EXPECT_EQ(run.errors.count('\n'), 1) << run;
            EXPECT_FALSE(run.errors.contains("hidden")) << run;
        }
        EXPECT_TRUE(journal().isEmpty());
    }

    /// A call that must succeed, with its JSON.
    QJsonDocument keloJson(QStringList const& arguments) const
    {
        auto const run = kelo(arguments + QStringList{"--json"});
        EXPECT_EQ(run.exitCode, 0) << arguments.join(' ').toStdString() << '\n' << run;
        EXPECT_EQ(run.errors, "");
        EXPECT_FALSE(run.json().isNull()) << run;
        return run.json();
    }

    QJsonArray journal() { return get("/_control/journal")["Requests"].toArray(); }

    qsizetype journalled(QString const& operation)
    {
        return get("/_control/journal?operation=" + operation)["Requests"].toArray().size();
    }

    QString partnerAction(QJsonObject const& action)
    {
        return post("/_control/partner-action", action)["RequestId"].toString();
    }

    /// The requests of a type, closed ones included, as the service lists them.
    QJsonArray requestsOfTypes(QJsonArray const& types)
    {
        return post(
                   "/Installations/INST-1001/requests",
                   {{"GetOnlyActiveRequests", false}, {"VersionNumber", ""}, {"SelectedTypes", types}})
            .array();
    }
    QString firstOfType(int type) { return requestsOfTypes({type}).at(0)["RequestId"].toString(); }

    QString file(QString const& name, QByteArray const& content) const
    {
        QString const path = folder.filePath(name);
        QFile target(path);
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(content);
        return path;
    }

    static QByteArray contentOf(QString const& path)
    {
        QFile source(path);
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    QProcessEnvironment environment;
};

inline QStringList idsIn(QJsonValue const& list, QString const& key = "RequestId")
{
    QStringList ids;
    for (auto const& entry : list.toArray())
    {
        ids << (entry.isString() ? entry.toString() : entry[key].toString());
    }
    return ids;
}
