#pragma once

#include <optional>
#include <vector>

#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <KeloCommunicationLib/connection/Operation.h>

#include "cli/shell/StrictReader.h"

namespace cli
{

class CallArguments;
class Context;

/// What the command line gives for an argument of an operation.
enum class ArgumentKind : int
{
    Id,
    Flag,
    Version,
    Path,
    Ids,
    Json ///< the operation's body
};

struct Argument
{
    QString name;
    ArgumentKind kind = ArgumentKind::Id;
};

/// One operation of the library as `kelo call` reaches it.
struct Operation
{
    operations::OperationSchema schema = {};
    /// In the order of the library's function. The installation comes from the options.
    std::vector<Argument> arguments;
    QString pathMember;    ///< a member of the JSON that is not in the body on the wire; empty if there is none
    bool isSecret = false; ///< all of the reply is
    QJsonValue (*run)(CallArguments& arguments) = nullptr;

    QString name() const { return QString::fromLatin1(schema.route.name); }

    /// What the command line has to give, in order: a name and, unless it is text, what it must be.
    QStringList usage() const;
    /// What the argument that is JSON may hold; none without one.
    std::optional<Form> form() const;
    /// Sends nothing unless all arguments are good. Gives what the library made of the reply, and the HTTP status where
    /// the reply has no value.
    QJsonValue call(Context const& context, QStringList const& words) const;
};

/// All operations, family by family.
std::vector<Operation> const& allOperations();
QStringList operationNames();
/// Throws a Failure for a name that no operation has.
Operation const& operationNamed(QString const& name);

} // namespace cli
