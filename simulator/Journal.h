#pragma once

#include "simulator/Http.h"

#include <QDateTime>
#include <QElapsedTimer>

#include <deque>
#include <optional>
#include <vector>

namespace simulator
{

/// Every request received, in the order of arrival, with what it was answered. Of long bodies the beginning is kept.
/// When there are too many entries, or too much is in them, the oldest go.
class Journal
{
public:
    /// What a request is known by once it is answered.
    struct Outcome
    {
        QString operation = {}; ///< empty: none was reached
        int fault = 0;          ///< the number of the one that struck; 0: none
        QString faultKind = {};
        QString unmatched = {}; ///< why it is not in the recording that is replayed; empty: it is
    };

    struct Entry
    {
        quint64 number = 0; ///< counts from 1 for ever
        HttpRequest request = {};
        QDateTime time = {};
        QElapsedTimer clock = {};
        Outcome outcome = {};
        std::optional<int> status = {}; ///< none: not answered yet; 0: the connection was closed
        qint64 milliseconds = 0;
        QByteArray answer = {};
        std::vector<std::pair<QByteArray, QByteArray>> answerHeaders = {};
    };

    /// Which entries are meant; what is not set is not asked for.
    struct Filter
    {
        QString operation = {};
        QString method = {};
        std::optional<int> status = {};
        quint64 since = 0; ///< those with a greater number
    };

    /// Notes a request as received and returns its number.
    quint64 add(HttpRequest const& request);
    /// Completes an entry. One that is gone meanwhile is ignored.
    void complete(quint64 number, Outcome const& outcome, Answer const& answer);
    void clear();

    std::vector<Entry const*> select(Filter const& filter) const;
    /// Null: it is gone or was never there.
    Entry const* find(quint64 number) const;
    /// The number of the oldest entry, or of the next one.
    quint64 firstNumber() const { return firstNumber_; }
    /// How many entries have gone since the last `clear` because there were too many.
    quint64 droppedCount() const { return dropped_; }

    /// `{"Requests": [...], "Counts": {"METHOD /path": n}, "Dropped": n}`; of the selected ones the newest `limit`.
    QJsonObject toJson(Filter const& filter, std::size_t limit) const;
    /// `{"Requests": [...], "Matching": n, "Total": n, "Dropped": n}`, the entries without headers, bodies and answers.
    QJsonObject toBriefJson(Filter const& filter, std::size_t limit) const;
    static QJsonObject toJson(Entry const& entry);

private:
    void keepWithinBounds();

    std::deque<Entry> entries_ = {};
    quint64 firstNumber_ = 1;
    quint64 dropped_ = 0;
    qsizetype bytes_ = 0; // of all bodies and answers
};

} // namespace simulator
