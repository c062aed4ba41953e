// Mixed traffic of eight threads through faults that come and go at random, for as long as wanted. Ends with 1 if a
// promise was broken.
//
//   kelo_soak [--seconds N] [--seed N]
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <random>

#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>

#include "tests/soak/Soak.h"

namespace
{

std::atomic<int> complaints = 0;

/// What the library says about failures is expected; what Qt says about misuse, or the library about exceptions, is
/// not.
void takeMessage(QtMsgType, QMessageLogContext const&, QString const& text)
{
    bool const isOfQt = text.startsWith(QLatin1Char('Q')) && text.contains(QLatin1String("::"));
    if (isOfQt || text.startsWith(QLatin1String("An exception left")))
    {
        ++complaints;
        std::printf("BROKEN  a message: %s\n", qPrintable(text));
    }
}

/// Starts the program anew, once, with an allocator that gives back what is free: what threads put aside for themselves
/// would look like memory in use.
void settleAllocator([[maybe_unused]] char** argv)
{
#ifndef KELO_SANITIZED
    if (std::getenv("GLIBC_TUNABLES") == nullptr)
    {
        ::setenv(
            "GLIBC_TUNABLES", "glibc.malloc.tcache_count=0:glibc.malloc.arena_max=1:glibc.malloc.mmap_threshold=65536",
            1);
        ::execv("/proc/self/exe", argv);
        std::perror("kelo_soak: goes on with the usual allocator");
    }
#endif
}

} // namespace

int main(int argc, char** argv)
{
    settleAllocator(argv);
    QCoreApplication const application(argc, argv);
    qInstallMessageHandler(takeMessage);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"seconds", "How long.", "number", "600"});
    parser.addOption({"seed", "Of all that is left to chance; another one each time unless given.", "number"});
    parser.process(application);
    bool areNumbers = true;
    auto const seconds = parser.value("seconds").toInt(&areNumbers);
    auto const seed =
        parser.isSet("seed") && areNumbers ? parser.value("seed").toULongLong(&areNumbers) : std::random_device()();
    if (!areNumbers || seconds < 1)
    {
        std::fprintf(stderr, "kelo_soak: a number is wanted (see --help)\n");
        return 2;
    }
    std::printf("%d s, seed %llu\n", seconds, static_cast<unsigned long long>(seed));
    std::fflush(stdout);
    try
    {
        auto const isGood = soak::Soak(std::chrono::seconds(seconds), seed).run() && complaints == 0;
        std::printf(isGood ? "All promises were kept.\n" : "PROMISES WERE BROKEN, see above.\n");
        return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    catch (std::exception const& error)
    {
        std::fprintf(stderr, "kelo_soak: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
