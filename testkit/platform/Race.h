#pragma once

#include <barrier>
#include <thread>

namespace platformcheck
{

/// Makes the two calls at the same time, many times over, between `prepare` and `check`.
template <class Prepare, class One, class Two, class Check>
void race(Prepare const& prepare, One const& one, Two const& two, Check const& check)
{
    constexpr int rounds = 3000;
    std::barrier start(2);
    std::barrier end(2);
    std::thread other(
        [&]
        {
            for (int round = 0; round < rounds; ++round)
            {
                start.arrive_and_wait();
                two();
                end.arrive_and_wait();
            }
        });
    for (int round = 0; round < rounds; ++round)
    {
        prepare();
        start.arrive_and_wait();
        one();
        end.arrive_and_wait();
        check();
    }
    other.join();
}

} // namespace platformcheck
