#include "cli/commands/Commands.h"

#include <numeric>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>

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

QByteArray fetch(TempShellFile const& shell, Context const& context)
{
    QString const id = identifier("shell id", shell.getFileId());
    auto const future = context.connection().getTempShellFile(id);
    QByteArray content = context.finished(future).get();
    context.checkNewExchanges(Shape::Anything);
    if (content.size() != shell.getFileSize())
    {
        throw Failure(
            ExitCode::NoConnection,
            u"The shell %1 came with %2 bytes instead of %3."_s.arg(id).arg(content.size()).arg(shell.getFileSize()));
    }
    return content;
}

void store(QString const& path, QByteArray const& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
    {
        throw badInput(u"Cannot write \"%1\": %2."_s.arg(path, file.errorString()));
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
        context.checkNewExchanges(Shape::List);
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
            store(path, fetch(shell, context));
            progress.finish(shell.getFileSize());
            json.append(QJsonObject{{u"Id"_s, shell.getFileId()}, {u"File"_s, path}});
        }
        context.output().show(json, {});
    };
}

} // namespace cli
