#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <type_traits>
#include <vector>

#include <QByteArray>
#include <QList>

#include <KeloCommunicationLib/json/RecordSchema.h>
#include <platform/rest/HttpMethod.h>

/// The service's operations as data: one constant each, in the header of its family.
namespace operations
{

/// Where an operation's request goes.
struct Route
{
    /// As the interface names it; of two with one name each has a suffix behind a colon.
    char const* name;
    rest::HttpMethod method;
    /// The path with its query, relative to the service's base URL. "%1" and "%2" stand for values.
    char const* path;
    /// What these values are called.
    std::array<char const*, 2> values{};
    /// What is appended to the path before its values are filled in is called so.
    char const* appended = nullptr;
    /// Fills "%1" where no value of the caller does.
    char const* constant = nullptr;
    /// How long the exchange may take; 0 means the connection's own time-out.
    std::chrono::milliseconds timeout{0};
    /// Changes nothing although it is no GET: no harm is done when it is sent again.
    bool isQuery = false;
};

/// One operation. `Body` and `Reply` are records, lists of records, `QByteArray` for bytes, or void for none.
template <class Body, class Reply>
struct Operation : Route
{
};

/// An operation without its types.
struct OperationSchema
{
    Route route;
    /// Nothing for no body, and for bytes.
    std::optional<jsonSerializer::ValueSchema> body;
    std::optional<jsonSerializer::ValueSchema> reply;
    bool sendsBytes = false;
    bool receivesBytes = false;
};

namespace implementation
{

template <class T>
struct SchemaOf
{
    static std::optional<jsonSerializer::ValueSchema> get() { return jsonSerializer::schemaOf<T>(); }
};

template <>
struct SchemaOf<void>
{
    static std::optional<jsonSerializer::ValueSchema> get() { return std::nullopt; }
};

template <>
struct SchemaOf<QByteArray> : SchemaOf<void>
{
};

template <class T>
struct SchemaOf<std::vector<T>>
{
    static std::optional<jsonSerializer::ValueSchema> get() { return jsonSerializer::schemaOf<T>().asList(); }
};

template <class T>
struct SchemaOf<QList<T>> : SchemaOf<std::vector<T>>
{
};

} // namespace implementation

template <class Body, class Reply>
OperationSchema schemaOf(Operation<Body, Reply> const& operation)
{
    return {
        operation, implementation::SchemaOf<Body>::get(), implementation::SchemaOf<Reply>::get(),
        std::is_same_v<Body, QByteArray>, std::is_same_v<Reply, QByteArray>};
}

} // namespace operations
