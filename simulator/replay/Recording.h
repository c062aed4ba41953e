#pragma once

#include "simulator/Http.h"
#include "simulator/Routing.h"
#include "simulator/Simulator.h"

#include <QHash>
#include <QUrl>

#include <chrono>

namespace simulator
{

/// One request of a recording, with what it was answered.
struct Exchange
{
    QString place = {}; ///< "entry 3", behind the file's name if there are several
    QByteArray method = {};
    Target target;
    std::optional<QByteArray> body = {}; ///< none: it was sent, but not recorded
    QJsonValue json = {};                ///< of the body; undefined if it is none
    Answer answer = {};
    qint64 missingBytes = 0;           ///< of an answer's body: what was not recorded of it, or never came
    bool isText = true;                ///< the answer's body may hold addresses
    bool isCut = false;                ///< the answer broke off
    std::chrono::milliseconds time{0}; ///< from the request to the end of its answer
    int asked = 0;                     ///< how often it was replayed
};

/// The addresses that a recording was made at, and what stands in their place when it is replayed.
class Addresses
{
public:
    /// What was asked for at this origin lies on the same origin as everything else now, and what lay below the base
    /// path below the new one.
    void add(QByteArray const& origin, QByteArray const& recordedBase, QByteArray const& base);
    /// The text with all addresses of the recording put to the origin, as it stands in JSON, too.
    QByteArray mapped(QByteArray const& text, QByteArray const& origin) const;

private:
    struct Row
    {
        QByteArray from = {};
        QByteArray path = {};
    };

    std::vector<Row> rows_ = {}; // the longer ones first
};

/// What clients and the service said to each other, oldest first.
struct Recording
{
    /// Reads HTTP archives. `basePath`: what the service's paths shall stand below; empty: what they did when they were
    /// recorded. Throws std::invalid_argument naming file, entry and member of what does not fit.
    Recording(std::vector<RecordedFile> const& files, Router const& contract, QByteArray const& basePath);

    std::vector<Exchange> exchanges = {};
    QByteArray basePath = {};
    Addresses addresses = {};
    QStringList installations = {}; ///< those that were asked for

private:
    /// `bases`: the recorded base paths, by their origin.
    void take(Exchange exchange, QUrl const& url, QHash<QByteArray, QByteArray> const& bases);
};

/// The name of the operation that a request calls; empty if it is none of the service.
QString operationOf(Router const& contract, QByteArray const& method, QByteArray const& target, QByteArray const& body);

/// Undefined if the text is no JSON document.
QJsonValue jsonOf(QByteArray const& text);

} // namespace simulator
