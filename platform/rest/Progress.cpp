#include <platform/rest/Progress.h>

#include <utility>

namespace rest
{

namespace
{

thread_local std::shared_ptr<ProgressCallback const> watcherOfThisThread;

} // namespace

ProgressScope::ProgressScope(ProgressCallback callback) : outer_(std::move(watcherOfThisThread))
{
    watcherOfThisThread = callback ? std::make_shared<ProgressCallback const>(std::move(callback)) : nullptr;
}

ProgressScope::~ProgressScope()
{
    watcherOfThisThread = std::move(outer_);
}

std::shared_ptr<ProgressCallback const> ProgressScope::current()
{
    return watcherOfThisThread;
}

} // namespace rest
