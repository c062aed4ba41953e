#pragma once

#include <QByteArray>

#include <zlib.h>

namespace rest
{

/// Decompresses an answer piece by piece and, unlike libcurl's own decoder, knows whether the compressed stream came to
/// its end.
class ContentDecoder
{
public:
    enum class Result : int
    {
        Ok,
        TooLarge,
        Corrupt
    };

    /// What requests offer; nothing else can be decoded.
    static constexpr char const* offered = "gzip, deflate";

    /// `encoding` is the value of the Content-Encoding header.
    explicit ContentDecoder(QByteArray const& encoding);
    ContentDecoder(ContentDecoder const&) = delete;
    ContentDecoder& operator=(ContentDecoder const&) = delete;
    ~ContentDecoder();

    static bool isNeededFor(QByteArray const& encoding);

    /// Appends the decompressed data to `output`, which grows to `limit` bytes at most.
    Result decode(char const* data, qsizetype size, QByteArray& output, qint64 limit);
    /// False when data is missing at the end.
    bool isComplete() const;

private:
    enum class State : int
    {
        Unused,
        Inside,
        AtEnd,
        Broken
    };

    void begin(unsigned char firstByte);
    Result inflateInput(QByteArray& output, qint64 limit);

    bool isGzip_;
    State state_ = State::Unused;
    z_stream stream_{};
};

} // namespace rest
