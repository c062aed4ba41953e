#include "CliFixture.h"

#include <algorithm>

#include <QDir>
#include <QRegularExpression>

#include "cli/prompt/Program.h"
#include "testkit/Waiting.h"

class Prompt : public CliFixture
{
protected:
    /// What bash offers for the last of these words.
    QByteArray offeredByBash(QStringList const& words) const
    {
        QString const script = "source /dev/stdin <<<\"$(kelo completion bash)\"; COMP_WORDS=(kelo \"$@\"); "
                               "COMP_CWORD=$#; _kelo; printf '%s ' \"${COMPREPLY[@]}\"";
        return run("bash", QStringList{"-c", script, "bash"} + words).output.trimmed();
    }
};

TEST_F(Prompt, HelpIsShownWhereverItIsAskedFor)
{
    auto const all = kelo({"--help"}).output;
    auto const create = kelo({"requests", "create", "--help"}).output;
    auto const operation = kelo({"call", "getPriceInfo", "-h"}).output;
    struct Row
    {
        QStringList arguments;
        QByteArray output, errors;
        int exitCode = 0;
    };
    std::vector<Row> const rows = {
        {{"-h"}, all, ""},
        {{"help"}, all, ""},
        {{}, "", all, 2},
        {{"help", "requests", "create"}, create, ""},
        {{"requests"}, "", kelo({"help", "requests"}).output, 2},
        {{"help", "call", "getPriceInfo"}, operation, ""},
        {{"-V"}, kelo({"--version"}).output, ""}};
    environment.clear();
    for (auto const& row : rows)
    {
        auto const shown = kelo(row.arguments);
        EXPECT_EQ(shown.exitCode, row.exitCode) << shown;
        EXPECT_EQ(shown.output, row.output) << row.arguments.join(' ').toStdString();
        EXPECT_EQ(shown.errors, row.errors);
    }
    for (auto const* const part : {"KELO_STATS_URL", "KELO_TIMEOUT", "Orders:\n", "  130", "describe", "-v, --verbose"})
    {
        EXPECT_TRUE(all.contains(part)) << part;
    }
    EXPECT_LT(all.indexOf("requests list"), all.indexOf("orders create"));
    EXPECT_TRUE(create.contains("--type TYPE") && create.contains("CentralizedRestoration")) << create.toStdString();
    EXPECT_TRUE(operation.contains("OrderItems[].ArticleNumber") && operation.contains("POST /Orders/simulation"))
        << operation.toStdString();
    EXPECT_TRUE(kelo({"call", "getUser"}).errors.contains("did you mean getUsersForLicense?"));
    EXPECT_TRUE(kelo({"call", "--list"}).output.contains("getUsersForLicense"));
    EXPECT_EQ(kelo({"--json"}).errors, "{\"error\":{\"message\":\"No command is given; see --help.\"}}\n");
}

TEST_F(Prompt, EveryCommandHasItsHelpItsExampleAndItsPage)
{
    auto const pages = folder.filePath(".");
    EXPECT_EQ(kelo({"man", "--into", pages}).exitCode, 0);
    cli::Program const program;
    for (auto const& command : program.commands())
    {
        auto const words = command.path.join(' ').toUtf8();
        SCOPED_TRACE(words.toStdString());
        auto const help = kelo(command.path + QStringList{"--help"}).output;
        auto const page = contentOf(folder.filePath("kelo-" + command.path.first() + ".1"));
        EXPECT_TRUE(help.contains("Example:\n  kelo " + words)) << help.toStdString();
        EXPECT_TRUE(page.contains(".SS \"kelo " + QByteArray(words).replace("-", "\\-") + "\"")) << page.toStdString();
        for (auto const& argument : command.arguments.all())
        {
            auto const name = argument.names.last().toUtf8();
            EXPECT_TRUE(help.contains("  " + name) || help.contains(", " + name)) << name.toStdString();
            EXPECT_TRUE(page.contains(QByteArray(name).replace("-", "\\-"))) << name.toStdString();
        }
    }
}

TEST_F(Prompt, CompletionsOfferEveryCommandOptionAndEnumeration)
{
    auto const bash = kelo({"completion", "bash"}).output;
    auto const zsh = kelo({"completion", "zsh"}).output;
    auto const fish = kelo({"completion", "fish"}).output;
    cli::Program const program;
    for (auto const& path : program.paths())
    {
        auto const name = path.join(' ').toUtf8();
        auto const words = program.wordsBehind(path).join(' ').toUtf8();
        EXPECT_TRUE(words.isEmpty() || bash.contains('\'' + name + "') REPLY='" + words + "'")) << name.toStdString();
        EXPECT_TRUE(
            zsh.contains("\n_kelo" + QByteArray(name.isEmpty() ? "" : "_" + name).replace(' ', '_').replace('-', '_')));
        EXPECT_TRUE(path.isEmpty() || fish.contains(" -a " + path.last().toUtf8() + " -d ")) << name.toStdString();
        for (auto const& argument : program.argumentsOf(path))
        {
            auto const condition = cli::shellQuoted("__kelo_is " + cli::shellQuoted(' ' + path.join(' ')));
            auto const names = argument.names.join(' ').replace("--", "-l ");
            EXPECT_TRUE(!argument.isOption() || fish.contains(("-n " + condition + ' ' + names + ' ').toUtf8()))
                << name.toStdString() << ' ' << names.toStdString();
            for (auto const& option : argument.isOption() ? argument.names : QStringList())
            {
                SCOPED_TRACE((name + ' ' + option.toUtf8()).toStdString());
                EXPECT_TRUE(bash.contains('\'' + name + "''|" + option.toUtf8() + "')"));
                EXPECT_TRUE(zsh.contains(option.toUtf8() + '['));
            }
        }
    }
}

TEST_F(Prompt, BashCompletesWhatIsTyped)
{
    QDir(folder.path()).mkdir("scans");
    auto const scan = file("scan one.stl", "solid");
    struct Row
    {
        QStringList words;
        QByteArray offered;
    };
    std::vector<Row> const rows = {
        {{"req"}, "requests"},
        {{"requests", "s"}, "show status seen"},
        {{"--json", "requests", "lo"}, "lock-state"},
        {{"requests", "create", "--t"}, "--type --timeout --trace"},
        {{"requests", "create", "--type", "D"}, "DentalScan"},
        {{"requests", "list", "--type", "=", "Temp"}, "TempShell Template"},
        {{"requests", "list", "--type", "Referral", "Temp"}, "TempShell Template"},
        {{"requests", "create", "--note", "list", "--gender", "F"}, "Female"},
        {{"connections", "set-status", "CON-101", "St"}, "Stopped"},
        {{"help", "stud"}, "studies"},
        {{"call", "getStud"}, "getStudiesForLicense"},
        {{"call", "getRequests", ":", "fi"}, "filter"},
        {{"call", "createOrder", "@", folder.filePath("sca").toUtf8()},
         folder.filePath("scan one.stl").toUtf8() + ' ' + folder.filePath("scans").toUtf8()},
        {{"orders", "upload", "SLOT", folder.filePath("scan ").toUtf8()}, scan.toUtf8()},
        {{"shells", "download", "ORD", "--into", folder.filePath("sc").toUtf8()}, folder.filePath("scans").toUtf8()},
        {{"requests", "show", "REQ"}, ""}};
    for (auto const& row : rows)
    {
        auto offered = offeredByBash(row.words).split(' ');
        auto expected = row.offered.split(' ');
        std::sort(offered.begin(), offered.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(offered, expected) << row.words.join(' ').toStdString();
    }
}

TEST_F(Prompt, TimeLimitIsThatOfTheOptionOrTheEnvironment)
{
    environment.insert("KELO_TIMEOUT", "soon");
    expectBadInput({{{"users"}, "\"soon\" is not a number of seconds from 0.1 to 3600"}});
    environment.remove("KELO_TIMEOUT");
    fault({{"Operation", "*"}, {"Kind", "delay"}, {"Milliseconds", 20'000}, {"Times", 3}});
    auto const certainEnd = [](ProgramRun const& run)
    {
        EXPECT_EQ(run.exitCode, 3) << run;
        EXPECT_TRUE(run.errors.contains("was not complete within 200 ms.\n")) << run;
    };
    certainEnd(kelo({"requests", "list", "--timeout", "0.2"}));
    environment.insert("KELO_TIMEOUT", "0.2");
    certainEnd(kelo({"users"}));
    // What may have changed something says so.
    auto const written = kelo({"sessions", "create"});
    EXPECT_TRUE(written.errors.contains("200 ms. The server may have processed the request.\n")) << written;
}

TEST_F(Prompt, VerboseTellsEachExchangeAndNoSecret)
{
    fault({{"Operation", "getUsersForLicense"}, {"Kind", "drop"}});
    struct Row
    {
        QStringList arguments;
        char const* line;
    };
    std::vector<Row> const rows = {
        {{"users", "-v"}, "kelo: GET /Installations/INST-1001/users: failed after \\d+ ms: [A-Z]"},
        {{"requests", "find", "--key", "KC-0404", "-v"},
         "^kelo: GET /Installations/INST-1001/requests: 404, \\d+ ms, 0 bytes sent, \\d+ received\n"},
        {{"requests", "list", "-v"},
         "^kelo: POST /Installations/INST-1001/requests: 200, \\d+ ms, \\d\\d+ bytes sent, \\d+ received\n$"}};
    for (auto const& row : rows)
    {
        auto const told = kelo(row.arguments);
        EXPECT_TRUE(QRegularExpression(row.line).match(QString::fromUtf8(told.errors)).hasMatch()) << told;
        EXPECT_FALSE(told.errors.contains("Search.Key")) << told;
    }
}

TEST_F(Prompt, InterruptionLeavesTheTraceOfWhatIsDone)
{
    auto const trace = folder.filePath("trace.har");
    fault({{"Operation", "createRequest"}, {"Kind", "delay"}, {"Milliseconds", 20'000}});
    auto const process = started(KELO_PROGRAM, {"requests", "create", "--type", "LabDesign", "--trace", trace});
    ASSERT_TRUE(testkit::comesTrue([&] { return journal().size() == 2; }));
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    EXPECT_EQ(finished(*process).exitCode, 130);
    auto const entries = QJsonDocument::fromJson(contentOf(trace))["log"]["entries"].toArray();
    ASSERT_EQ(entries.size(), 1);
    EXPECT_TRUE(entries[0]["request"]["url"].toString().endsWith("/sessions"));
}
