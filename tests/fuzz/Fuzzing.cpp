#include "tests/fuzz/Fuzzing.h"

#include <cstdio>
#include <cstdlib>

#include <QtGlobal>

int LLVMFuzzerInitialize(int*, char***)
{
    // Warnings about bad input are right, but writing them takes longer than reading the input.
    qInstallMessageHandler([](QtMsgType, QMessageLogContext const&, QString const&) {});
    return 0;
}

void fuzz::require(bool isKept, char const* promise)
{
    if (!isKept)
    {
        std::fprintf(stderr, "Not kept: %s\n", promise);
        std::abort();
    }
}
