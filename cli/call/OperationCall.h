#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include <QJsonObject>

#include "cli/call/Operations.h"
#include "cli/call/RecordMembers.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

/// Makes operations out of the interface's member functions: arguments are read and results shown by their types.
namespace cli
{

using Interface = TessalyConnectionInterface;

// clang-format off
template <class T> inline constexpr ArgumentKind kindOf = ArgumentKind::Json;
template <> inline constexpr ArgumentKind kindOf<QString> = ArgumentKind::Id;
template <> inline constexpr ArgumentKind kindOf<collaboration::RequestKeyRequest> = ArgumentKind::Id;
template <> inline constexpr ArgumentKind kindOf<collaboration::SalesOrderNumberRequest> = ArgumentKind::Id;
template <> inline constexpr ArgumentKind kindOf<bool> = ArgumentKind::Flag;
template <> inline constexpr ArgumentKind kindOf<QVersionNumber> = ArgumentKind::Version;
template <> inline constexpr ArgumentKind kindOf<QByteArray> = ArgumentKind::Path;
template <> inline constexpr ArgumentKind kindOf<mirashare::Cases> = ArgumentKind::Ids;
// clang-format on

/// Hands out the words of the command line, each as what the operation wants, and shows what it returns.
class CallArguments
{
public:
    CallArguments(Context const& context, Operation const& operation, QStringList words)
        : context_(context), operation_(operation), words_(std::move(words))
    {
    }

    Interface& connection() const { return context_.connection(); }

    template <class T>
    T next()
    {
        if constexpr (kindOf<T> == ArgumentKind::Json)
        {
            auto const json = nextObject();
            auto record = jsonSerializer::fromDescription<T>(json);
            setPathMember(record, pathMember<T>, json);
            return record;
        }
        else
        {
            T value{};
            read(value);
            return value;
        }
    }

    // Waits for what an operation returns, throws a Failure if it has not succeeded, and gives what there is to show.
    template <class T>
    QJsonValue shown(Interface::Reply<T> future) const
    {
        context_.finished(future);
        auto const reply = std::move(future).take();
        checkReply(reply.status);
        if constexpr (std::is_void_v<T>)
        {
            return QJsonObject{{QStringLiteral("HttpStatus"), reply.status.httpStatus}};
        }
        else
        {
            return described(reply.value);
        }
    }
    QJsonValue shown(threading::Future<QByteArray> const& future) const;
    QJsonValue shown(threading::Future<std::pair<QString, KeloErrorCode>> const& future) const;
    QJsonValue shown(KeloCommunicationLib::CatalogUpdateState state) const;
    QJsonValue shown(TempShellDataResponse const& response) const;
    QJsonValue shown(std::pair<KeloErrorCode, std::vector<QString>> const& keys) const;
    QJsonValue shown(QString const& url) const;

private:
    Argument const& argument() const { return operation_.arguments.at(position_); }

    /// The next word; that of the installation comes from the context.
    QString nextWord();
    /// JSON, or the content of the file behind an "@".
    QJsonObject nextObject();
    void checkReply(rest::RestReplyStatus const& status) const;

    void read(QString& id);
    void read(bool& value);
    void read(QVersionNumber& version) { version = versionOf("version", nextWord()); }
    void read(QByteArray& content);
    void read(collaboration::RequestKeyRequest& search) { read(search.requestKey); }
    void read(collaboration::SalesOrderNumberRequest& search) { read(search.salesOrderNumber); }
    void read(mirashare::Cases& cases);

    template <class Record>
    static void setPathMember(Record& /*record*/, std::nullptr_t /*none*/, QJsonObject const& /*json*/)
    {
    }
    template <class Record>
    static void setPathMember(Record& record, PathMember<QString Record::*> const& member, QJsonObject const& json)
    {
        record.*member.target = json[QLatin1String(member.key)].toString();
    }
    template <class Record>
    static void setPathMember(
        Record& record, PathMember<void (Record::*)(QString)> const& member, QJsonObject const& json)
    {
        (record.*member.target)(json[QLatin1String(member.key)].toString());
    }

    Context const& context_;
    Operation const& operation_;
    QStringList words_;
    std::size_t position_ = 0;
    std::optional<rest::MappedFile> file_;
};

/// An operation as a row of the table.
struct Row
{
    operations::OperationSchema (*schema)();
    std::array<char const*, 2> names;
    std::array<ArgumentKind, 2> kinds;
    char const* pathMember;
    bool isSecret;
    QJsonValue (*run)(CallArguments& arguments);
};

/// The rows of sessions, connections and requests; in a file of their own because the table takes long to compile.
extern std::span<Row const> const collaborationRows;

template <class Target>
constexpr char const* keyOf(PathMember<Target> const& member)
{
    return member.key;
}

constexpr char const* keyOf(std::nullptr_t /*none*/)
{
    return "";
}

/// What is given and shown by a call of the function.
template <auto function>
struct Call
{
    template <class... Values>
    explicit Call(CallArguments& arguments, Values const&... values)
        : result(arguments.shown((arguments.connection().*function)(values...)))
    {
    }

    QJsonValue result;
};

template <auto function, class... Arguments>
QJsonValue run(CallArguments& arguments)
{
    // The braces keep the arguments in order, and all are read before the call.
    return Call<function>{arguments, arguments.next<Arguments>()...}.result;
}

template <auto const& operation>
operations::OperationSchema schema()
{
    return operations::schemaOf(operation);
}

/// The row of an operation that the interface's member function does. The names are those of its arguments.
template <auto const& operation, auto function, class Result, class... Arguments>
constexpr Row makeRow(std::array<char const*, 2> names)
{
    char const* pathKey = "";
    ((pathKey = kindOf<Arguments> == ArgumentKind::Json ? keyOf(pathMember<Arguments>) : pathKey), ...);
    return {
        schema<operation>,
        names,
        {kindOf<Arguments>...},
        pathKey,
        std::is_same_v<Result, std::pair<KeloErrorCode, std::vector<QString>>>,
        run<function, Arguments...>};
}

template <auto const& operation, auto function, class Result, class... Arguments>
constexpr Row makeRow(std::array<char const*, 2> names, Result (Interface::* /*function*/)(Arguments...))
{
    return makeRow<operation, function, Result, std::remove_cvref_t<Arguments>...>(names);
}

template <auto const& operation, auto function, class Result, class... Arguments>
constexpr Row makeRow(std::array<char const*, 2> names, Result (Interface::* /*function*/)(Arguments...) const)
{
    return makeRow<operation, function, Result, std::remove_cvref_t<Arguments>...>(names);
}

template <auto const& operation, auto function>
constexpr Row row(std::array<char const*, 2> names)
{
    return makeRow<operation, function>(names, function);
}

} // namespace cli
