#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace simulator
{

/// What arrived on the wire; the target is kept exactly as the client wrote it. Size and MD5 are taken while the body
/// arrives, so that uploads of any length need no memory: of a body longer than `keptBytes` (a control resource's:
/// `keptControlBytes`) only the beginning stays.
struct HttpRequest
{
    static constexpr qsizetype keptBytes = 32 << 20;
    static constexpr qsizetype keptControlBytes = 256 << 20;

    QByteArray method = {};
    QByteArray target = {};
    std::vector<std::pair<QByteArray, QByteArray>> headers = {};
    QByteArray body = {};
    qint64 bodySize = 0;
    QByteArray bodyMd5 = {}; // lower-case hexadecimal

    /// The value of the header, whose name is compared without regard to case; empty if there is none.
    QByteArray header(char const* name) const;
};

/// Bytes that are written to the connection as they are.
struct RawBytes
{
    QByteArray bytes = {};
    QByteArray repeated = {}; ///< written after `bytes`, until the client goes away
    bool isInterim = false;   ///< the answer follows; else the connection is closed
};

/// What goes back: a status with headers and body, raw bytes in its place, or nothing at all when `dropped` is set (the
/// connection is closed unanswered).
struct Answer
{
    int status = 200;
    QByteArray body = {};
    QByteArray contentType = "application/json";
    std::vector<std::pair<QByteArray, QByteArray>> headers = {};
    std::optional<RawBytes> raw = {};
    bool dropped = false;

    static Answer json(QJsonObject const& object, int status = 200);
    static Answer json(QJsonArray const& array);
    /// For people to read.
    static Answer page(QJsonObject const& object);
    static Answer noContent();
    static Answer drop();
};

/// Every reason for which the service turns a request down; its error code and HTTP status stand in one table.
enum class Reason : int
{
    MalformedBody,
    MissingMember,
    UnknownMember,
    WrongType,
    BadValue,
    BadQuery,
    UnknownReference,
    WrongContent,
    Unauthorized,
    ForeignPage,
    UnknownPath,
    UnknownId,
    WrongMethod,
    NotNow,
    NotVerified,
    NotRecorded
};

/// Thrown by handlers and checks, turned into an error answer in one place. what() is the whole sentence.
class Refusal : public std::invalid_argument
{
public:
    Refusal(Reason reason, QString const& detail);

    Answer answer() const;

private:
    Reason reason_;
};

/// The error array of the service, `[{"Code":"<digits>","Message":"..."}]`, with the HTTP status given.
Answer errorAnswer(int status, QString const& code, QString const& message);

} // namespace simulator
