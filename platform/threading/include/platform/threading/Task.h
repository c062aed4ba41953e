#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace threading::impl
{

/// A callable of signature void() that may hold what cannot be copied.
class Task
{
public:
    Task() = default;

    template <class F>
        requires(!std::is_same_v<std::decay_t<F>, Task>)
    explicit Task(F&& callable) : callable_(std::make_unique<Holder<std::decay_t<F>>>(std::forward<F>(callable))) {}

    void operator()() { callable_->call(); }

    explicit operator bool() const { return callable_ != nullptr; }

private:
    struct Callable
    {
        Callable() = default;
        Callable(Callable const&) = delete;
        Callable& operator=(Callable const&) = delete;
        virtual ~Callable() = default;
        virtual void call() = 0;
    };

    template <class F>
    struct Holder final : Callable
    {
        template <class Source>
        explicit Holder(Source&& source) : callable(std::forward<Source>(source))
        {
        }

        void call() override { callable(); }

        F callable;
    };

    std::unique_ptr<Callable> callable_;
};

} // namespace threading::impl
