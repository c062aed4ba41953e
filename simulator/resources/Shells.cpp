#include "simulator/resources/Shells.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

#include <QDataStream>
#include <QIODevice>

#include <array>
#include <cmath>
#include <numbers>

namespace simulator
{

namespace
{

constexpr int chunkSize = 65'536;

struct Shell
{
    QString id = {};
    OrderItem const* item = nullptr;
};

std::vector<Shell> shellsOf(Order const& order)
{
    std::vector<Shell> shells;
    if (order.state < OrderState::Checked)
    {
        return shells;
    }
    for (auto const& item : order.items)
    {
        if (item.firstTooth > 0)
        {
            auto const number = shells.size() + 1;
            shells.push_back({.id = QStringLiteral("SHELL-%1-%2").arg(order.id).arg(number), .item = &item});
        }
    }
    return shells;
}

// ---- the bytes: a tube in binary STL, with the shell's id in its header -------------------------------------------

constexpr int segments = 72;
constexpr int rings = 20;
constexpr int triangles = 2 * segments * rings;
constexpr int fileSize = 84 + 50 * triangles;
using Point = std::array<float, 3>;

Point pointAt(int segment, int ring)
{
    auto const angle = 2 * std::numbers::pi * segment / segments;
    auto const height = 8.0 * ring / rings;
    auto const radius = 4.5 - 0.1 * height;
    return {
        static_cast<float>(radius * std::cos(angle)), static_cast<float>(radius * std::sin(angle)),
        static_cast<float>(height)};
}

void writeTriangle(QDataStream& stream, std::array<Point, 3> const& corners)
{
    constexpr Point noNormal = {}; // readers take it from the corners
    for (auto const& point : {noNormal, corners[0], corners[1], corners[2]})
    {
        stream << point[0] << point[1] << point[2];
    }
    stream << quint16(0);
}

QByteArray bytesOf(Shell const& shell)
{
    auto bytes = shell.id.toLatin1().leftJustified(80, ' ', true);
    QDataStream stream(&bytes, QIODevice::Append);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    stream << quint32(triangles);
    for (int ring = 0; ring < rings; ++ring)
    {
        for (int segment = 0; segment < segments; ++segment)
        {
            auto const a = pointAt(segment, ring);
            auto const b = pointAt(segment + 1, ring);
            auto const c = pointAt(segment + 1, ring + 1);
            auto const d = pointAt(segment, ring + 1);
            writeTriangle(stream, {a, b, c});
            writeTriangle(stream, {a, c, d});
        }
    }
    return bytes;
}

QJsonObject shellJson(Shell const& shell)
{
    return {
        {"Id", shell.id},
        {"Name", QStringLiteral("tempshell-%1-%2.stl").arg(shell.item->firstTooth).arg(shell.item->lastTooth)},
        {"NumberOfChunks", (fileSize + chunkSize - 1) / chunkSize},
        {"FileSize", fileSize},
        {"ChunkSize", chunkSize},
        {"ArticleNumber", shell.item->articleNumber},
        {"ToothNumberStart", shell.item->firstTooth},
        {"ToothNumberEnd", shell.item->lastTooth},
    };
}

Answer listShells(Call const& call)
{
    QJsonArray list;
    for (auto const& shell : shellsOf(byId(call.state.orders.orders, call.id())))
    {
        list.append(shellJson(shell));
    }
    return Answer::json(list);
}

Answer shellFile(Call const& call)
{
    for (auto const& order : call.state.orders.orders)
    {
        for (auto const& shell : shellsOf(order))
        {
            if (shell.id == call.id())
            {
                return {.body = bytesOf(shell), .contentType = "application/octet-stream"};
            }
        }
    }
    throw Refusal(Reason::UnknownId, call.id());
}

} // namespace

std::vector<Route> shellRoutes()
{
    return {
        {"getTempShellCalculationData", "GET", "/Orders/{}/files/tempshell", {}, listShells},
        {"getTempShellFile", "GET", "/Orders/file/tempshell/{}", {}, shellFile},
    };
}

} // namespace simulator
