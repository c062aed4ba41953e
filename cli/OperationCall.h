#pragma once

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "cli/Context.h"
#include "cli/Operations.h"
#include "cli/RecordMembers.h"

/// Makes operations out of the interface's member functions: arguments are read and results shown by their types.
namespace cli
{

using Interface = TessalyConnectionInterface;

/// Hands out the words of the command line, each as what the operation wants.
class CallArguments
{
public:
    CallArguments(Context const& context, std::vector<QString> names, QStringList words)
        : context_(context), names_(std::move(names)), words_(std::move(words))
    {
    }

    template <class T>
    T next()
    {
        if constexpr (MembersReadable<T>)
        {
            return readRecord<T>(nextObject(), {context_.installation(), context_.user()});
        }
        else
        {
            T value{};
            read(value);
            return value;
        }
    }

private:
    /// The next word; that of the installation comes from the context.
    QString nextWord();
    /// JSON, or the content of the file behind an "@".
    QJsonObject nextObject();
    void read(QString& id);
    void read(bool& value);
    void read(QVersionNumber& version);
    void read(QByteArray& content);
    void read(collaboration::RequestKeyRequest& search);
    void read(collaboration::SalesOrderNumberRequest& search);
    void read(mirashare::Cases& cases);

    Context const& context_;
    std::vector<QString> names_;
    QStringList words_;
    std::size_t position_ = 0;
};

/// What the command line has to give for an argument of the type.
template <class T>
QString formOf(QString const& name)
{
    if constexpr (MembersReadable<T>)
    {
        return name + QStringLiteral("(JSON)");
    }
    else if constexpr (std::is_same_v<T, bool>)
    {
        return name + QStringLiteral("(true|false)");
    }
    else if constexpr (std::is_same_v<T, QVersionNumber>)
    {
        return name + QStringLiteral("(1.2.3)");
    }
    else if constexpr (std::is_same_v<T, QByteArray>)
    {
        return name + QStringLiteral("(path)");
    }
    else if constexpr (std::is_same_v<T, mirashare::Cases>)
    {
        return name + QStringLiteral("(ID,ID)");
    }
    else
    {
        return name;
    }
}

// Waits for what an operation returns, throws a Failure if it has not succeeded, and gives what there is to show.

/// The reply that came first: those of logos follow the list's.
QJsonValue firstReply(Context const& context);
QJsonValue firstStatus(Context const& context);

template <class T>
QJsonValue resultOf(Context const& context, Interface::Reply<T> const& future)
{
    context.valueOf(future);
    if constexpr (std::is_void_v<T>)
    {
        return firstStatus(context);
    }
    else
    {
        return firstReply(context);
    }
}
QJsonValue resultOf(Context const& context, Interface::Reply<std::vector<mirashare::MiraShareItemData>> const& future);
QJsonValue resultOf(Context const& context, threading::Future<QByteArray> const& future);
QJsonValue resultOf(Context const& context, threading::Future<std::pair<QString, KeloErrorCode>> const& future);
QJsonValue resultOf(Context const& context, KeloCommunicationLib::CatalogUpdateState state);
QJsonValue resultOf(Context const& context, TempShellDataResponse const& response);
QJsonValue resultOf(Context const& context, std::pair<KeloErrorCode, std::vector<QString>> const& keys);
QJsonValue resultOf(Context const& context, QString const& url);

extern QString const installationArgument;

template <class Function, class Result, class... Arguments>
Operation makeOperation(char const* name, std::vector<char const*> const& argumentNames, Function function)
{
    std::vector<QString> names;
    names.reserve(argumentNames.size());
    for (char const* const argument : argumentNames)
    {
        names.push_back(QString::fromLatin1(argument));
    }
    Operation operation;
    operation.name = QString::fromLatin1(name);
    std::size_t index = 0;
    [[maybe_unused]] auto const describe = [&]<class T>(T*)
    {
        QString const& argument = names.at(index++);
        if (argument != installationArgument)
        {
            operation.arguments << formOf<T>(argument);
        }
        operation.members += membersOf<T>();
    };
    (describe(static_cast<std::remove_cvref_t<Arguments>*>(nullptr)), ...);
    operation.isSecret = std::is_same_v<Result, std::pair<KeloErrorCode, std::vector<QString>>>;
    operation.run = [names, function](Context const& context, QStringList const& words)
    {
        [[maybe_unused]] CallArguments arguments(context, names, words);
        // The braces keep the arguments in order, and all are read before the call.
        std::tuple<std::remove_cvref_t<Arguments>...> values{arguments.next<std::remove_cvref_t<Arguments>>()...};
        Interface& connection = context.connection();
        return std::apply(
            [&](auto const&... value) { return resultOf(context, (connection.*function)(value...)); }, values);
    };
    return operation;
}

template <class Result, class... Arguments>
Operation operation(
    char const* name, std::vector<char const*> const& argumentNames, Result (Interface::*function)(Arguments...))
{
    return makeOperation<decltype(function), Result, Arguments...>(name, argumentNames, function);
}

template <class Result, class... Arguments>
Operation operation(
    char const* name, std::vector<char const*> const& argumentNames, Result (Interface::*function)(Arguments...) const)
{
    return makeOperation<decltype(function), Result, Arguments...>(name, argumentNames, function);
}

} // namespace cli
