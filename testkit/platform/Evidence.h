#pragma once

#include <chrono>
#include <sstream>
#include <string>

#include <QByteArray>
#include <QString>

namespace platformcheck
{

/// How long a row waits for what ought to happen at once.
std::chrono::milliseconds patience();
void setPatience(std::chrono::milliseconds duration);

/// Says what the row does from now on. If the row fails, hangs or crashes, this is told with it.
void doing(std::string const& what);
/// Ends the process with the row's result: the promise is not held. `seen` is a sentence's end, after what the row was
/// doing. May be called on any thread.
[[noreturn]] void fail(std::string const& seen);
/// Ends the process with the row's result: the platform has nothing to hold the promise with.
[[noreturn]] void notOffered(std::string const& why);
/// The row's last word.
void passed();

inline void require(bool isHeld, std::string const& seen)
{
    if (!isHeld)
    {
        fail(seen);
    }
}

inline std::ostream& operator<<(std::ostream& stream, QByteArray const& bytes)
{
    return stream << '"' << bytes.left(80).toStdString() << '"';
}

inline std::ostream& operator<<(std::ostream& stream, QString const& string)
{
    return stream << '"' << string.toStdString() << '"';
}

/// The parts one after the other, as a stream shows them.
template <class... Parts>
std::string text(Parts const&... parts)
{
    std::ostringstream stream;
    stream << std::boolalpha;
    (stream << ... << parts);
    return stream.str();
}

template <class Seen, class Expected>
void requireEqual(char const* what, Seen const& seen, Expected const& expected)
{
    if (!(seen == expected))
    {
        fail(text(what, " is ", seen, " in the place of ", expected));
    }
}

} // namespace platformcheck
