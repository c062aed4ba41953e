// Holds the platform library that it is linked with against its promises to the host.
#include <cstdio>
#include <cstring>

#include <QCommandLineParser>
#include <QCoreApplication>

#include "testkit/platform/RowProcess.h"
#include "testkit/platform/Table.h"

namespace
{

using namespace platformcheck;

enum class ExitCode : int
{
    AllHeld = 0,
    Broken = 1,
    WrongCommandLine = 2
};

constexpr auto description =
    "Holds the platform library that this program is linked with (Platform::threading and Platform::rest, the bundled\n"
    "one or a host's own) against what it promises to its host, and shows a table: a row for each promise, with the\n"
    "result ok, FAILED and what was seen, or \"not offered\" where the library has no means of its own for it.\n\n"
    "Every row runs in a process of its own, for a limited time: a crash or a deadlock is a row that failed. Rows "
    "need\n"
    "nothing but loopback, where they talk to servers of their own. They run without a QCoreApplication unless they\n"
    "try continuations in a thread of somebody's choice. One alone, under a debugger: --row NAME 3600.\n\n"
    "Exit codes: 0 every promise is held or not offered, 1 one is broken, 2 a mistake in the command line.";

struct Wish
{
    std::vector<std::string> patterns;
    RunOptions run;
    bool listsOnly = false;
    bool isJson = false;
};

[[noreturn]] void end(QString const& message)
{
    std::fprintf(stderr, "kelo-platform-check: %s\n", qPrintable(message));
    std::exit(static_cast<int>(ExitCode::WrongCommandLine));
}

QList<QCommandLineOption> const& options()
{
    static QList<QCommandLineOption> const list{
        {QStringLiteral("list"), QStringLiteral("Shows the promises, tries nothing.")},
        {QStringLiteral("only"),
         QStringLiteral(
             "Only rows whose name or group matches, e.g. writes or 'closing/destructor*'; may be repeated."),
         QStringLiteral("pattern")},
        {QStringLiteral("json"), QStringLiteral("A JSON object, and a line, for each row.")},
        {QStringLiteral("limit"), QStringLiteral("How long a row may take; 30, more for builds that are slow."),
         QStringLiteral("seconds"), QStringLiteral("30")},
        {QString::fromLatin1(applicationOption).mid(2),
         QStringLiteral("Rows have a QCoreApplication, to see what a platform holds that cannot do without.")}};
    return list;
}

Wish parse(QStringList const& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromUtf8(description));
    parser.addHelpOption();
    parser.addOptions(options());
    if (!parser.parse(arguments))
    {
        end(parser.errorText());
    }
    if (parser.isSet(QStringLiteral("help")))
    {
        parser.showHelp();
    }
    if (!parser.positionalArguments().isEmpty())
    {
        end(QStringLiteral("unexpected argument %1; see --help").arg(parser.positionalArguments().constFirst()));
    }
    Wish wish{{}, {}, parser.isSet(QStringLiteral("list")), parser.isSet(QStringLiteral("json"))};
    for (QString const& pattern : parser.values(QStringLiteral("only")))
    {
        wish.patterns.push_back(pattern.toStdString());
    }
    wish.run.limit = std::chrono::seconds(parser.value(QStringLiteral("limit")).toInt());
    wish.run.hasApplication = parser.isSet(QString::fromLatin1(applicationOption).mid(2));
    if (wish.run.limit.count() <= 0)
    {
        end(QStringLiteral("--limit needs a number of seconds"));
    }
    return wish;
}

ExitCode run(Wish const& wish)
{
    auto const rows = rowsMatching(wish.patterns);
    if (rows.empty())
    {
        end(QStringLiteral("no row has that name; see --list"));
    }
    Table table(wish.isJson);
    for (NamedRow const& row : rows)
    {
        wish.listsOnly ? table.list(row) : table.add(row, runInProcess(row, wish.run));
    }
    if (!wish.listsOnly)
    {
        table.end();
    }
    return table.hasFailures() ? ExitCode::Broken : ExitCode::AllHeld;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], rowOption) == 0)
    {
        return runHere(argc, argv);
    }
    QCoreApplication const application(argc, argv);
    return static_cast<int>(run(parse(QCoreApplication::arguments())));
}
