#pragma once

#include <utility>
#include <variant>

namespace utility
{

/// Either a value or an error, never both and never neither.
template <class T, class E>
class Result
{
public:
    /// A success that holds `value`.
    static Result success(T value) { return Result(std::in_place_index<0>, std::move(value)); }

    /// A failure that holds `error`.
    static Result failure(E error) { return Result(std::in_place_index<1>, std::move(error)); }

    bool hasValue() const { return content_.index() == 0; }

    /// The value; only to be asked for when `hasValue()`.
    T const& value() const { return *std::get_if<0>(&content_); }

    /// The error; only to be asked for when not `hasValue()`.
    E const& error() const { return *std::get_if<1>(&content_); }

private:
    template <std::size_t Index, class Content>
    Result(std::in_place_index_t<Index> index, Content&& content) : content_(index, std::forward<Content>(content))
    {
    }

    std::variant<T, E> content_;
};

} // namespace utility
