#include "cli/Commands.h"

#include <chrono>
#include <filesystem>
#include <numeric>
#include <system_error>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>

#include <KeloCommunicationLib/orders/OrderOperations.h>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Failures.h"
#include "cli/shell/Input.h"
#include "cli/shell/OutputFile.h"
#include "cli/shell/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using Shells = QList<TempShellFile>;

/// Whether a file may be called so: in the folder itself, to be seen there, and with room for the ends that it has
/// while it is written.
bool isFileName(QString const& name)
{
    constexpr qsizetype mostBytes = 200;
    return !name.isEmpty() && !name.startsWith(u'.') && !name.contains(u'/') && !name.contains(u'\\')
           && printable(name) == name && name.toUtf8().size() <= mostBytes;
}

/// The files' names, no two alike: a shell's own name where it can be had, else its id, else a number.
QStringList localNames(Shells const& shells)
{
    QStringList names;
    for (auto const& shell : shells)
    {
        auto const isFree = [&names](QString const& name)
        { return isFileName(name) && !names.contains(name, Qt::CaseInsensitive); };
        QString name = isFree(shell.getFileName()) ? shell.getFileName() : shell.getFileId() + ".stl"_L1;
        for (qsizetype number = names.size() + 1; !isFree(name); ++number)
        {
            name = u"shell-%1.stl"_s.arg(number);
        }
        names << name;
    }
    return names;
}

/// Of the service, which has to name the shells so that they can be asked for.
QString shellId(TempShellFile const& shell)
{
    try
    {
        return identifier("shell id", shell.getFileId());
    }
    catch (Failure const& failure)
    {
        throw failure.with(ExitCode::NoConnection);
    }
}

/// Gets the shell into the file; it is not what was announced if it has another size.
void fetch(TempShellFile const& shell, QString const& path, Context const& context)
{
    QString const id = shellId(shell);
    QUrl const url(QString::fromLatin1(operations::getTempShellFile.path).arg(id));
    auto const reply = context.finished(context.connection().downloadTo(url, path, std::chrono::milliseconds(0))).get();
    if (reply->errorCode() < 0)
    {
        throw Failure(ExitCode::FileFailed, u"Cannot write \"%1\": %2"_s.arg(path, reply->errorText()));
    }
    context.check(context.untoldStatus(), Shape::Anything);
    qint64 const size = reply->httpStatusCode() == 200 ? QFileInfo(path).size() : 0;
    if (size != shell.getFileSize())
    {
        throw Failure(
            ExitCode::NoConnection,
            u"The shell %1 came with %2 bytes instead of %3."_s.arg(id).arg(size).arg(shell.getFileSize()));
    }
}

/// A former file stays until the shell has come whole.
void store(TempShellFile const& shell, QString const& path, Context const& context)
{
    QString const part = path + ".kelo-part"_L1;
    try
    {
        fetch(shell, part, context);
    }
    catch (Failure const&)
    {
        QFile::remove(part);
        throw;
    }
    std::error_code error;
    std::filesystem::rename(part.toStdString(), path.toStdString(), error);
    if (error)
    {
        QString const reason = QString::fromStdString(error.message());
        throw Failure(ExitCode::FileFailed, u"Cannot write \"%1\": %2."_s.arg(path, reason));
    }
}

Shells shellsOf(QString const& order, Context const& context)
{
    auto const shells = context.connection().getTempShellCalculationData(order).getTempShellFile();
    context.check(context.untoldStatus(), Shape::List);
    if (shells.isEmpty())
    {
        throw Failure(ExitCode::ServiceError, u"The order %1 has no temporary shells (yet)."_s.arg(order));
    }
    return shells;
}

/// One shell that cannot be had or stored keeps none of the others away; a Failure tells of all such at the end.
void download(Shells const& shells, QString const& folder, bool mayReplace, Context const& context)
{
    auto const bytes = std::accumulate(
        shells.begin(), shells.end(), qint64(0),
        [](qint64 sum, TempShellFile const& shell) { return sum + shell.getFileSize(); });
    Progress progress(context.output(), u"Downloaded"_s, static_cast<int>(shells.size()), bytes);
    auto const names = localNames(shells);
    QJsonArray stored;
    Failures failures;
    for (qsizetype index = 0; index < shells.size(); ++index)
    {
        QString const path = QDir(folder).filePath(names[index]);
        bool const isStored = failures.attempt(
            [&]
            {
                checkPlace(path, mayReplace);
                progress.begin(names[index]);
                store(shells[index], path, context);
                progress.finish(shells[index].getFileSize());
            });
        if (isStored)
        {
            stored.append(QJsonObject{{u"Id"_s, shells[index].getFileId()}, {u"File"_s, path}});
        }
    }
    context.output().show(stored, {});
    failures.raise(shells.size(), u"shells were not stored"_s);
}

} // namespace

Action shellsDownload(Arguments& arguments)
{
    auto const order = arguments.requiredText("ORDER", "The reference of an order whose shells are ready");
    auto const folder =
        arguments.text("--into", "The folder to write to; the current one unless given", Offer::Kind::Folders, u"."_s);
    auto const mayReplace = arguments.flag("--overwrite", "Replaces files that are there already");
    return [=](Context const& context)
    {
        QString const reference = identifier("order reference", *order);
        if (!QFileInfo(*folder).isDir())
        {
            throw badInput(u"There is no folder \"%1\"."_s.arg(*folder));
        }
        download(shellsOf(reference, context), *folder, *mayReplace, context);
    };
}

} // namespace cli
