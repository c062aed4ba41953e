#pragma once

#include "simulator/replay/Recording.h"

#include <deque>

namespace simulator
{

/// A recording that answers in the service's place. Equal requests get the recorded answers one after the other, and
/// from then on the last one.
class Replay
{
public:
    /// What a request is answered, and what it has to wait before.
    struct Found
    {
        Answer answer = {};
        std::chrono::milliseconds time{0};
        QString unmatched = {}; ///< why it is not in the recording; empty: it is
    };

    /// `keepsTimes`: answers take as long as they took. `speaksTls`: which is what addresses then begin with; an answer
    /// that broke off is none at all then.
    Replay(Recording recording, bool keepsTimes, bool speaksTls);

    /// `number`: of the request in the journal.
    Found answerTo(HttpRequest const& request, quint64 number);
    /// As if nothing had been asked yet.
    void rewind();
    /// `{"Entries": n, "NeverAsked": [...], "Unmatched": [...], "UnmatchedCount": n}`
    QJsonObject toJson() const;

private:
    struct Unmatched
    {
        quint64 number = 0;
        QString text = {};
    };

    Found answerOf(Exchange& exchange, HttpRequest const& request) const;

    std::vector<Exchange> exchanges_;
    Addresses const addresses_;
    bool const keepsTimes_;
    bool const speaksTls_;
    std::deque<Unmatched> unmatched_ = {}; // the last ones
    int unmatchedCount_ = 0;
};

} // namespace simulator
