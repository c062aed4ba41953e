#include "cli/shell/Interruption.h"

#include <csignal>
#include <mutex>
#include <optional>
#include <thread>

#include <pthread.h>

#include "cli/shell/Output.h"

namespace cli
{

namespace
{

/// Left to the end of the process, as the thread is that uses it.
struct LastWords
{
    std::mutex mutex;
    QString text;
};

LastWords& lastWords()
{
    static auto& words = *new LastWords;
    return words;
}

bool isIgnored(int signal)
{
    struct sigaction action = {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// A script that runs this program stops at Ctrl-C only if it sees that the program died of it.
void dieOf(int signal, sigset_t const& signals)
{
    std::signal(signal, SIG_DFL);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    std::raise(signal);
}

/// On a thread of its own, where more may be done than in a signal handler.
void wait(sigset_t const& signals, bool json)
{
    int signal = 0;
    if (::sigwait(&signals, &signal) != 0)
    {
        return;
    }
    std::unique_lock lock(lastWords().mutex);
    auto const text = lastWords().text;
    lock.unlock();
    writeLastError(text.isEmpty() ? std::nullopt : std::optional(badInput(text)), json);
    dieOf(signal, signals);
}

} // namespace

void listenForInterruption(bool json)
{
    sigset_t signals;
    ::sigemptyset(&signals);
    for (int const signal : {SIGINT, SIGTERM})
    {
        if (!isIgnored(signal))
        {
            ::sigaddset(&signals, signal);
        }
    }
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals, json] { wait(signals, json); }).detach();
}

void sayWhenInterrupted(QString const& text)
{
    std::lock_guard const lock(lastWords().mutex);
    lastWords().text = text;
}

} // namespace cli
