#pragma once

#include <QThreadPool>

namespace threading
{

/// The threads on which this host finishes futures, so that a continuation may take its time and may wait.
QThreadPool& workers();

/// Says that this thread waits while the object lives. If it is a worker, another may be started for it meanwhile, so
/// that continuations which wait for each other's calls do not use up the workers.
class Waiting
{
public:
    Waiting();
    Waiting(Waiting const&) = delete;
    Waiting& operator=(Waiting const&) = delete;
    ~Waiting();

private:
    bool isWorker_;
};

} // namespace threading
