#include <platform/threading/Workers.h>

#include <QThread>

namespace threading
{

QThreadPool& workers()
{
    static QThreadPool pool;
    return pool;
}

Waiting::Waiting() : isWorker_(workers().contains(QThread::currentThread()))
{
    if (isWorker_)
    {
        workers().releaseThread();
    }
}

Waiting::~Waiting()
{
    if (isWorker_)
    {
        workers().reserveThread();
    }
}

} // namespace threading
