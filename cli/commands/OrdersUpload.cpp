#include "cli/commands/Commands.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QByteArray contentOf(QString const& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
    {
        throw badInput(u"Cannot read \"%1\": it must be a file that can be read."_s.arg(path));
    }
    auto const size = file.size();
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError || content.size() != size)
    {
        throw badInput(u"Cannot read \"%1\" to its end."_s.arg(path));
    }
    return content;
}

} // namespace

Action ordersUpload(Arguments& arguments)
{
    auto const slot = arguments.requiredText("SLOT", "The reference of the upload slot that the service opened");
    auto const path = arguments.requiredText("FILE", "The file to send");
    return [=](Context const& context)
    {
        QString const reference = identifier("slot reference", *slot);
        QByteArray const content = contentOf(*path);
        {
            Progress progress(context.output(), u"Uploaded"_s, 1, content.size());
            progress.begin(QFileInfo(*path).fileName());
            context.valueOf(context.connection().uploadOrderFile(reference, content));
            progress.finish(content.size());
        }
        context.output().show(QJsonObject{{u"Reference"_s, reference}, {u"Size"_s, content.size()}}, {});
    };
}

} // namespace cli
