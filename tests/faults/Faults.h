#pragma once

#include <string>
#include <vector>

namespace test
{

/// What a fault leaves of a call.
enum class Effect : int
{
    Harmless, ///< it takes longer, no more
    Spoilt,   ///< a success with other content
    Refused,  ///< an answer, but not a success
    Lost,     ///< no usable answer
    ByChance  ///< harmless or lost
};

struct Fault
{
    std::vector<std::string> texts; ///< as at the simulator's shell prompt
    Effect effect;
    bool hangs = false; ///< only the time-out ends the call
};

/// One row a fault. `elsewhere` is the address of another origin.
inline std::vector<Fault> faultsOfTheMatrix(std::string const& elsewhere)
{
    using enum Effect;
    auto const always = [](std::string const& kind, std::string const& more = {})
    { return std::vector{kind + ":times=-1" + more}; };
    return {
        {{"latency:latency=15,jitter=10"}, Harmless},
        {{"latency:latency=15,jitter=10,stream=upstream"}, Harmless},
        {{"bandwidth:rate=2000"}, Harmless},
        {{"bandwidth:rate=2000,stream=upstream"}, Harmless},
        {{"slicer:average_size=2000,size_variation=1990,delay=10"}, Harmless},
        {{"slicer:average_size=2000,size_variation=1990,delay=10,stream=upstream"}, Harmless},
        {{"slow_close:delay=20", "drop:times=-1"}, Lost},
        {{"slow_close:delay=20,stream=upstream", "endlessHeaders:times=-1"}, Lost},
        {{"timeout:timeout=0"}, Lost, true},
        {{"timeout:timeout=0,stream=upstream"}, Lost, true},
        {{"timeout:timeout=20"}, Lost},
        {{"timeout:timeout=20,stream=upstream"}, Lost},
        {{"reset_peer"}, Lost},
        {{"reset_peer:timeout=20"}, Lost},
        {{"reset_peer:stream=upstream"}, Lost},
        {{"reset_peer:toxicity=0.5"}, ByChance},
        {{"limit_data:bytes=0"}, Lost},
        {{"limit_data:bytes=20"}, Lost},
        {{"limit_data:bytes=60"}, Lost},
        {{"limit_data:bytes=20,stream=upstream"}, Lost},
        {{"limit_data:bytes=190,stream=upstream"}, Lost},
        {{"down"}, Lost},
        {always("delay", ",milliseconds=10"), Harmless},
        {always("earlyHints"), Harmless},
        {always("status", ",status=400"), Refused},
        {always("status"), Refused},
        {{"status:times=1"}, Refused},
        {always("unauthorized"), Refused},
        {always("tooManyRequests"), Refused},
        {always("redirect", ",location=" + elsewhere), Refused},
        {always("redirect", ",status=302,location=" + elsewhere), Refused},
        {always("html"), Refused},
        {always("html", ",status=200"), Spoilt},
        {always("emptyBody"), Spoilt},
        {always("wrongType"), Spoilt},
        {always("wrongType", ",member="), Spoilt},
        {always("missingMember"), Spoilt},
        {always("nullMember"), Spoilt},
        {always("unknownText"), Spoilt},
        {always("drop"), Lost},
        {always("truncatedBody"), Lost},
        {always("cutChunk"), Lost},
        {always("gzipBomb", ",mebibytes=6"), Lost},
        {always("endlessHeaders"), Lost},
    };
}

} // namespace test
