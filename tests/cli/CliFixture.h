#pragma once

#include "tests/simulator/SimulatorFixture.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <ostream>

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
        for (auto const* kept : {"PATH", "TSAN_OPTIONS"})
        {
            environment.insert(kept, qEnvironmentVariable(kept));
        }
        environment.insert("KELO_API_URL", QString("http://127.0.0.1:%1").arg(port));
        environment.insert("KELO_USERNAME", "kelo");
        environment.insert("KELO_PASSWORD", "kelo");
        environment.insert("KELO_INSTALLATION", "INST-1001");
    }

    ProgramRun kelo(QStringList const& arguments) const { return run(KELO_PROGRAM, arguments); }

    ProgramRun run(QString const& program, QStringList const& arguments) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
        {
            process.kill();
            process.waitForFinished();
            return {-1, process.readAllStandardOutput(), "the program crashed or hung"};
        }
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
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
