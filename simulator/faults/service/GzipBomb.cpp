#include "simulator/faults/JsonAnswer.h"
#include "simulator/faults/ServiceFaultKinds.h"

#include <zlib.h>

namespace simulator::faults
{

namespace
{

constexpr Member parameters[] = {
    integer("Mebibytes", 1, 1 << 14, "300", "what the answer unpacks to"),
};

QByteArray compressedZeros(int mebibytes)
{
    constexpr int gzipFormat = 15 + 16;
    constexpr qsizetype mebibyte = 1 << 20;
    QByteArray zeros(mebibyte, '\0');
    QByteArray packed(mebibyte + qsizetype{mebibytes} * 2048, Qt::Uninitialized);
    z_stream stream = {};
    ::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipFormat, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY);
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    for (int count = 1; count <= mebibytes; ++count)
    {
        stream.next_in = reinterpret_cast<Bytef*>(zeros.data());
        stream.avail_in = static_cast<uInt>(zeros.size());
        ::deflate(&stream, count == mebibytes ? Z_FINISH : Z_NO_FLUSH);
    }
    packed.truncate(static_cast<qsizetype>(stream.total_out));
    ::deflateEnd(&stream);
    return packed;
}

} // namespace

FaultKind const gzipBomb = {
    .name = "gzipBomb",
    .meaning = "The operation is carried out, and its answer unpacks to a lot of zeros.",
    .parameters = parameters,
    .distort =
        [](Answer& answer, QJsonObject const& settings)
    {
        // Not given to the HTTP server, which compresses once more.
        auto const bomb = compressedZeros(settings["Mebibytes"].toInt());
        auto const framing = "Content-Encoding: gzip\r\nContent-Length: " + QByteArray::number(bomb.size()) + "\r\n";
        answer.raw = {.bytes = wireHead(answer, framing) + bomb};
    },
    .writesRaw = true};

} // namespace simulator::faults
