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

/// Where a fault is made.
enum class Source : int
{
    Line,   ///< in the proxy in front of the service
    Service ///< in the service, for each call
};

struct Fault
{
    Source source;
    Effect effect;
    std::string text;       ///< as at the simulator's shell prompt
    std::string mixed = {}; ///< what the text has besides in mixed traffic
    bool hangs = false;     ///< only the time-out ends the call
    bool isSlow = false;    ///< for mixed traffic only
    std::string other = {}; ///< a fault of the service that is in force, too
};

/// One row a fault. `elsewhere` is the address of another origin.
inline std::vector<Fault> allFaults(std::string const& elsewhere) // NOLINT(readability-function-size): a table
{
    using enum Effect;
    using enum Source;
    std::string const some = "toxicity=0.4";
    // A page in the place of a write's answer would count as its success.
    std::string const harmlessly = "operation=getShippingAddresses";
    return {
        {Line, Harmless, "latency:latency=15,jitter=10"},
        {Line, Harmless, "latency:latency=15,jitter=10,stream=upstream"},
        {.source = Line, .effect = Harmless, .text = "latency:latency=1000,toxicity=0.3", .isSlow = true},
        {Line, Harmless, "bandwidth:rate=2000"},
        {Line, Harmless, "bandwidth:rate=2000,stream=upstream"},
        {Line, Harmless, "slicer:average_size=2000,size_variation=1990,delay=10"},
        {Line, Harmless, "slicer:average_size=2000,size_variation=1990,delay=10,stream=upstream"},
        {.source = Line, .effect = Lost, .text = "slow_close:delay=20", .other = "drop"},
        {.source = Line, .effect = Lost, .text = "slow_close:delay=20,stream=upstream", .other = "endlessHeaders"},
        {.source = Line, .effect = Lost, .text = "timeout:timeout=0", .mixed = some, .hangs = true},
        {.source = Line, .effect = Lost, .text = "timeout:timeout=0,stream=upstream", .mixed = some, .hangs = true},
        {Line, Lost, "timeout:timeout=20", some},
        {Line, Lost, "timeout:timeout=20,stream=upstream", some},
        {Line, Lost, "reset_peer", some},
        {Line, Lost, "reset_peer:timeout=20", some},
        {Line, Lost, "reset_peer:stream=upstream", some},
        {Line, ByChance, "reset_peer:toxicity=0.5"},
        {Line, Lost, "limit_data:bytes=0", some},
        {Line, Lost, "limit_data:bytes=20", some},
        {Line, Lost, "limit_data:bytes=60", some},
        {Line, ByChance, "limit_data:bytes=3000"},
        {Line, ByChance, "limit_data:bytes=100000"},
        {Line, Lost, "limit_data:bytes=20,stream=upstream", some},
        {Line, Lost, "limit_data:bytes=190,stream=upstream", some},
        {Line, ByChance, "limit_data:bytes=20000,stream=upstream"},
        {Line, Lost, "down"},
        {Service, Harmless, "delay:milliseconds=10"},
        {.source = Service, .effect = Harmless, .text = "delay:milliseconds=1000", .isSlow = true},
        {Service, Harmless, "earlyHints"},
        {Service, Refused, "status:status=400"},
        {Service, Refused, "status"},
        {Service, Refused, "status:times=1"},
        {Service, Refused, "unauthorized"},
        {Service, Refused, "tooManyRequests"},
        {Service, Refused, "redirect:location=" + elsewhere},
        {Service, Refused, "redirect:status=302,location=" + elsewhere},
        {Service, Refused, "html"},
        {Service, Spoilt, "html:status=200", harmlessly},
        {Service, Spoilt, "emptyBody"},
        {Service, Spoilt, "wrongType"},
        {Service, Spoilt, "wrongType:member="},
        {Service, Spoilt, "missingMember"},
        {Service, Spoilt, "nullMember"},
        {Service, Spoilt, "unknownText"},
        {Service, Lost, "drop"},
        {Service, Lost, "truncatedBody"},
        {Service, Lost, "cutChunk"},
        {Service, Lost, "gzipBomb:mebibytes=6"},
        {Service, Lost, "endlessHeaders"},
    };
}

/// The text with one more setting, unless it has that.
inline std::string extended(std::string const& text, std::string const& setting)
{
    bool const hasIt = text.find(setting.substr(0, setting.find('='))) != std::string::npos;
    return hasIt ? text : text + (text.find(':') == std::string::npos ? ':' : ',') + setting;
}

} // namespace test
