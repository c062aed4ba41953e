#include "cli/commands/Commands.h"

#include <chrono>
#include <numeric>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QUrl>

#include <KeloCommunicationLib/orders/OrderOperations.h>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// The shell's own name, unless it is none for a file or another shell of the order has it, too.
QString localName(TempShellFile const& shell, QSet<QString> const& used)
{
    QString const name = shell.getFileName();
    bool const isPlain = !name.isEmpty() && !name.startsWith(u'.') && !name.contains(u'/') && !name.contains(u'\\')
                         && printable(name) == name;
    return isPlain && !used.contains(name) ? name : shell.getFileId() + ".stl"_L1;
}

void fetch(TempShellFile const& shell, QString const& path, Context const& context)
{
    QString const id = identifier("shell id", shell.getFileId());
    QUrl const url(QString::fromLatin1(operations::getTempShellFile.path).arg(id));
    auto const reply = context.finished(context.connection().downloadTo(url, path, std::chrono::milliseconds(0))).get();
    if (reply->errorCode() < 0)
    {
        throw badInput(u"Cannot write \"%1\": %2"_s.arg(path, reply->errorText()));
    }
    context.check(context.untoldStatus(), Shape::Anything);
    bool const isStored = reply->httpStatusCode() == 200;
    qint64 const size = isStored ? QFileInfo(path).size() : 0;
    if (size != shell.getFileSize())
    {
        if (isStored)
        {
            QFile::remove(path);
        }
        throw Failure(
            ExitCode::NoConnection,
            u"The shell %1 came with %2 bytes instead of %3."_s.arg(id).arg(size).arg(shell.getFileSize()));
    }
}

} // namespace

Action shellsDownload(Arguments& arguments)
{
    auto const order = arguments.requiredText("ORDER", "The reference of an order whose shells are ready");
    auto const folder = arguments.text("--into", "The folder to write to; the current one unless given", u"."_s);
    return [=](Context const& context)
    {
        QString const reference = identifier("order reference", *order);
        if (!QFileInfo(*folder).isDir())
        {
            throw badInput(u"There is no folder \"%1\"."_s.arg(*folder));
        }
        auto const shells = context.connection().getTempShellCalculationData(reference).getTempShellFile();
        context.check(context.untoldStatus(), Shape::List);
        if (shells.isEmpty())
        {
            throw Failure(ExitCode::ServiceError, u"The order %1 has no temporary shells (yet)."_s.arg(reference));
        }
        auto const bytes = std::accumulate(
            shells.begin(), shells.end(), qint64(0),
            [](qint64 sum, TempShellFile const& shell) { return sum + shell.getFileSize(); });
        Progress progress(context.output(), u"Downloaded"_s, static_cast<int>(shells.size()), bytes);
        QSet<QString> used;
        QJsonArray json;
        for (auto const& shell : shells)
        {
            QString const name = localName(shell, used);
            used.insert(name);
            progress.begin(name);
            QString const path = QDir(*folder).filePath(name);
            fetch(shell, path, context);
            progress.finish(shell.getFileSize());
            json.append(QJsonObject{{u"Id"_s, shell.getFileId()}, {u"File"_s, path}});
        }
        context.output().show(json, {});
    };
}

} // namespace cli
