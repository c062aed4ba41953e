#include "cli/Commands.h"

#include <QFileInfo>
#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Progress.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action ordersUpload(Arguments& arguments)
{
    auto const slot = arguments.requiredText("SLOT", "The reference of the upload slot that the service opened");
    auto const path = arguments.requiredText("FILE", "The file to send", Offer::Kind::Files);
    return [=](Context const& context)
    {
        QString const reference = identifier("slot reference", *slot);
        auto const file = fileToSend(*path);
        {
            Progress progress(context.output(), u"Uploaded"_s, 1, file.size());
            progress.begin(QFileInfo(*path).fileName());
            context.valueOf(context.connection().uploadOrderFile(reference, file.bytes()));
            progress.finish(file.size());
        }
        context.output().showDone(QJsonObject{{u"Reference"_s, reference}, {u"Size"_s, file.size()}}, {});
    };
}

} // namespace cli
