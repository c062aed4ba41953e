#pragma once

#include "simulator/replay/Recording.h"

namespace simulator
{

/// A request as it is held against those of a recording.
struct Question
{
    explicit Question(HttpRequest const& request);

    HttpRequest const& request;
    Target target;
    QJsonValue json; ///< of the body; undefined if it is none
};

/// What tells a question from a recorded one.
struct Difference
{
    int size = 0; ///< 0: none. A wrong path outweighs all else, then the method, the query and the body
    QString text = {};
};

/// Paths and queries are compared decoded, the query without regard to its order. Of JSON bodies, the order of members
/// does not matter, other bodies are compared byte by byte. Members that were redacted and bodies that were not
/// recorded are equal to everything.
Difference difference(Question const& question, Exchange const& recorded);

} // namespace simulator
