#pragma once

#include "simulator/Http.h"

#include <deque>

namespace simulator
{

/// Every request received, in the order of arrival, with what it was answered.
class Journal
{
public:
    /// Notes a request as received and returns its number.
    quint64 add(HttpRequest const& request);
    /// Completes an entry; a dropped connection counts as status 0. An entry cleared meanwhile is ignored.
    void complete(quint64 number, QString const& operation, int status);
    void clear();

    /// `{"Requests": [...], "Counts": {"METHOD /path": n}}`
    QJsonObject toJson() const;

private:
    struct Entry
    {
        HttpRequest request = {};
        qint64 size = 0;
        QString operation = {};
        int status = 0;
    };

    static QJsonObject toJson(Entry const& entry);

    std::deque<Entry> entries_;
    quint64 firstNumber_ = 0;
};

} // namespace simulator
