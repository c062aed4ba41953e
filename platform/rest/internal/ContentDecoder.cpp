#include <platform/rest/internal/ContentDecoder.h>

#include <array>

#include <platform/rest/internal/ReplyBuffer.h>

namespace rest
{

namespace
{

constexpr int gzipFormat = 16 + MAX_WBITS;
constexpr int zlibFormat = MAX_WBITS;
constexpr int rawFormat = -MAX_WBITS;

bool startsWithZlibHeader(unsigned char byte)
{
    return (byte & 0x0f) == Z_DEFLATED && byte >> 4 <= MAX_WBITS - 8;
}

} // namespace

ContentDecoder::ContentDecoder(QByteArray const& encoding)
    : isGzip_(encoding == "gzip" || encoding == "x-gzip"),
      state_(isGzip_ || encoding == "deflate" ? State::Unused : State::Broken)
{
}

ContentDecoder::~ContentDecoder()
{
    inflateEnd(&stream_);
}

bool ContentDecoder::isNeededFor(QByteArray const& encoding)
{
    return !encoding.isEmpty() && encoding != "identity";
}

void ContentDecoder::begin(unsigned char firstByte)
{
    // "deflate" means the zlib format, but there are servers that leave its header away.
    int const deflateFormat = startsWithZlibHeader(firstByte) ? zlibFormat : rawFormat;
    state_ = inflateInit2(&stream_, isGzip_ ? gzipFormat : deflateFormat) == Z_OK ? State::Inside : State::Broken;
}

ContentDecoder::Result ContentDecoder::decode(char const* data, qsizetype size, QByteArray& output, qint64 limit)
{
    auto const* const input = reinterpret_cast<unsigned char const*>(data);
    if (state_ == State::Unused && size > 0)
    {
        begin(*input);
    }
    // zlib reads only; its interface merely lacks the const.
    stream_.next_in = const_cast<unsigned char*>(input);
    stream_.avail_in = static_cast<uInt>(size);
    Result result = Result::Ok;
    while (result == Result::Ok && stream_.avail_in > 0)
    {
        result = inflateInput(output, limit);
    }
    return result;
}

ContentDecoder::Result ContentDecoder::inflateInput(QByteArray& output, qint64 limit)
{
    if (state_ == State::AtEnd && isGzip_)
    {
        // Several gzip members may follow each other.
        inflateReset(&stream_);
        state_ = State::Inside;
    }
    if (state_ != State::Inside)
    {
        return Result::Corrupt;
    }
    std::array<unsigned char, 32768> piece{};
    int outcome = Z_OK;
    do
    {
        stream_.next_out = piece.data();
        stream_.avail_out = static_cast<uInt>(piece.size());
        outcome = inflate(&stream_, Z_NO_FLUSH);
        auto const produced = static_cast<qsizetype>(piece.size() - stream_.avail_out);
        if (output.size() + produced > limit)
        {
            return Result::TooLarge;
        }
        makeRoom(output, produced);
        output.append(reinterpret_cast<char const*>(piece.data()), produced);
    } while (outcome == Z_OK && stream_.avail_out == 0);
    if (outcome == Z_STREAM_END)
    {
        state_ = State::AtEnd;
    }
    // Z_BUF_ERROR: all input is used up and no output was due.
    else if (outcome != Z_OK && outcome != Z_BUF_ERROR)
    {
        state_ = State::Broken;
        return Result::Corrupt;
    }
    return Result::Ok;
}

bool ContentDecoder::isComplete() const
{
    return state_ == State::Unused || state_ == State::AtEnd;
}

} // namespace rest
