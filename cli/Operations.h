#pragma once

#include <functional>
#include <vector>

#include <QJsonValue>
#include <QString>
#include <QStringList>

namespace cli
{

class Context;

/// One operation of the library as `kelo call` reaches it.
struct Operation
{
    /// As the library names it; of two with one name, one has a suffix behind a colon.
    QString name;
    /// What the command line has to give, in order: a name and, unless it is text, what it must be. The installation is
    /// not among them: it comes from the options.
    QStringList arguments;
    /// The keys of the argument that is JSON.
    QString members;
    /// Sends nothing unless all arguments are good. Gives the service's reply as it was sent, the HTTP status where the
    /// reply has no value, and the value where the library gives another one.
    std::function<QJsonValue(Context const& context, QStringList const& arguments)> run;
    /// Whether all of the reply is secret.
    bool isSecret = false;
};

/// All operations, in the interface's order.
std::vector<Operation> const& operations();

} // namespace cli
