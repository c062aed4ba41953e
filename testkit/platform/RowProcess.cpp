#include "testkit/platform/RowProcess.h"

#include <optional>

#include <QCoreApplication>
#include <QProcess>

#include "testkit/platform/Evidence.h"
#include "testkit/platform/Protocol.h"

namespace platformcheck
{

namespace
{

/// What the lines of a row's process say.
struct Account
{
    std::string doing;
    std::optional<std::string> failed;
    std::optional<std::string> notOffered;
    bool hasPassed = false;

    std::string with(std::string const& seen) const { return doing.empty() ? seen : doing + ": " + seen; }
};

Account read(QByteArray const& output)
{
    Account account;
    for (QByteArray const& line : output.split('\n'))
    {
        if (line.isEmpty() || line[0] != protocol::mark)
        {
            continue;
        }
        auto const space = line.indexOf(' ');
        QByteArray const word = line.mid(1, space - 1);
        std::string const text = line.mid(space + 1).toStdString();
        account.hasPassed = account.hasPassed || word == protocol::passed;
        if (word == protocol::doing)
        {
            account.doing = text;
        }
        else if (word == protocol::failed && !account.failed)
        {
            account.failed = text;
        }
        else if (word == protocol::notOffered)
        {
            account.notOffered = text;
        }
    }
    return account;
}

/// The row's result if its process has ended by itself.
Outcome judge(Account const& account, QProcess const& process)
{
    if (account.failed)
    {
        return {Result::Failed, account.with(*account.failed), {}};
    }
    if (process.exitStatus() == QProcess::CrashExit)
    {
        return {Result::Failed, account.with(text("the process crashed (signal ", process.exitCode(), ")")), {}};
    }
    if (process.exitCode() != 0)
    {
        return {Result::Failed, account.with(text("the process ended with exit code ", process.exitCode())), {}};
    }
    if (account.notOffered)
    {
        return {Result::NotOffered, *account.notOffered, {}};
    }
    return {
        account.hasPassed ? Result::Ok : Result::Failed,
        account.hasPassed ? std::string() : account.with("the process ended early"),
        {}};
}

} // namespace

Outcome runInProcess(NamedRow const& row, RunOptions const& options)
{
    QStringList arguments{
        QString::fromLatin1(rowOption), QString::fromStdString(row.name), QString::number(options.limit.count())};
    if (options.hasApplication)
    {
        arguments << QString::fromLatin1(applicationOption);
    }
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), arguments);
    std::chrono::milliseconds const limit = options.limit;
    bool const hasEnded = process.waitForFinished(static_cast<int>(limit.count()));
    if (!hasEnded)
    {
        process.kill();
        process.waitForFinished();
    }
    Account const account = read(process.readAllStandardOutput());
    Outcome outcome =
        hasEnded || account.failed
            ? judge(account, process)
            : Outcome{Result::Failed, account.with(text("no end within ", options.limit.count(), " s")), {}};
    outcome.log = process.readAllStandardError();
    return outcome;
}

int runHere(int argc, char** argv)
{
    std::vector<std::string> const arguments(argv + 1, argv + argc);
    auto const rows = rowsMatching({arguments.size() > 1 ? arguments[1] : ""});
    if (rows.size() != 1)
    {
        return 2;
    }
    // A third, so that what does not happen in time is told in the row's own words.
    setPatience(std::chrono::milliseconds(std::atoi(arguments.size() > 2 ? arguments[2].c_str() : "30") * 1000 / 3));
    std::optional<QCoreApplication> application;
    if (arguments.back() == applicationOption)
    {
        application.emplace(argc, argv);
    }
    rows.front().row->hold();
    passed();
    doing("after its end");
    return 0;
}

} // namespace platformcheck
