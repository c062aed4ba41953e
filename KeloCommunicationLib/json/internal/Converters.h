#pragma once

#include <type_traits>

#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <KeloCommunicationLib/json/internal/Fields.h>

/// What a family's source file includes to give its records their converters.
namespace jsonSerializer
{

template <class T, class Json>
T fromJson(Json const& json)
{
    if constexpr (std::is_enum_v<T>)
    {
        return static_cast<T>(json.toInt(0));
    }
    else
    {
        T record{};
        implementation::readRecord(&record, implementation::fieldsOf<T>, json);
        return record;
    }
}

template <class T>
QJsonValue toJson(T const& record)
{
    return implementation::writeRecord(&record, implementation::fieldsOf<T>);
}

} // namespace jsonSerializer

/// Gives a record its reader, or its writer.
#define KELO_READABLE(...)                                                                                             \
    template KELO_EXPORT __VA_ARGS__ jsonSerializer::fromJson<__VA_ARGS__, QJsonObject>(QJsonObject const&)
#define KELO_WRITABLE(...) template KELO_EXPORT QJsonValue jsonSerializer::toJson<__VA_ARGS__>(__VA_ARGS__ const&)
