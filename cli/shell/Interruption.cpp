#include "cli/shell/Interruption.h"

#include <csignal>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

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
    std::function<void()> step;
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

/// What the step that is still to be taken could not do.
std::optional<Failure> failureOf(std::function<void()> const& step)
{
    try
    {
        if (step)
        {
            step();
        }
        return std::nullopt;
    }
    catch (Failure const& failure)
    {
        return failure;
    }
}

/// On a thread of its own, where more may be done than in a signal handler.
void wait(sigset_t const& signals, bool json)
{
    int signal = 0;
    if (::sigwait(&signals, &signal) != 0)
    {
        return;
    }
    // From now on the next one ends the program.
    for (int const each : {SIGINT, SIGTERM})
    {
        if (::sigismember(&signals, each) == 1)
        {
            std::signal(each, SIG_DFL);
        }
    }
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    std::unique_lock lock(lastWords().mutex);
    auto const text = lastWords().text;
    auto const step = lastWords().step;
    lock.unlock();
    auto last = text.isEmpty() ? std::nullopt : std::optional(badInput(text));
    if (auto const failure = failureOf(step))
    {
        last = last ? last->told(last->message() + QLatin1String(" - ") + failure->message()) : failure;
    }
    writeLastError(last, json);
    // A script that runs this program stops at Ctrl-C only if it sees that the program died of it.
    std::raise(signal);
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

void doWhenInterrupted(std::function<void()> step)
{
    std::lock_guard const lock(lastWords().mutex);
    lastWords().step = std::move(step);
}

} // namespace cli
