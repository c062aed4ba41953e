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
        implementation::readRecord(&record, implementation::typeOf<T>.rows, json);
        return record;
    }
}

template <class T>
QJsonValue toJson(T const& record)
{
    return implementation::writeValue(implementation::typeOf<T>, &record);
}

template <class T>
implementation::Type const& implementation::recordType()
{
    return typeOf<T>;
}

} // namespace jsonSerializer

/// Marks a record as one that the service sends, takes, or both, and gives it its public converters accordingly: what
/// it has none for fails to link.
#define KELO_READABLE(...)                                                                                             \
    KELO_DESCRIBED(__VA_ARGS__);                                                                                       \
    template KELO_EXPORT __VA_ARGS__ jsonSerializer::fromJson<__VA_ARGS__, QJsonObject>(QJsonObject const&)
#define KELO_WRITABLE(...)                                                                                             \
    KELO_DESCRIBED(__VA_ARGS__);                                                                                       \
    template KELO_EXPORT QJsonValue jsonSerializer::toJson<__VA_ARGS__>(__VA_ARGS__ const&)
#define KELO_READABLE_AND_WRITABLE(...)                                                                                \
    KELO_READABLE(__VA_ARGS__);                                                                                        \
    template KELO_EXPORT QJsonValue jsonSerializer::toJson<__VA_ARGS__>(__VA_ARGS__ const&)
/// A record that only has a schema.
#define KELO_DESCRIBED(...)                                                                                            \
    template KELO_EXPORT jsonSerializer::implementation::Type const&                                                   \
    jsonSerializer::implementation::recordType<__VA_ARGS__>()
