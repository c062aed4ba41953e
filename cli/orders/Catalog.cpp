#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action catalog(Arguments& arguments)
{
    auto const given = arguments.text("--version", "The version in use; none unless given", {}, u"0"_s);
    return [=](Context const& context)
    {
        auto const version = versionOf("version", *given);
        auto const state = context.connection().getCatalogUpdateState(context.installation(), version);
        context.check(context.untoldStatus(), Shape::Object);
        auto const offer = context.valueOf(context.connection().getCatalogUpdateInfo(context.installation(), version));
        QString const update = nameOf(state);
        auto json = jsonSerializer::describe(offer);
        json.insert(u"Update"_s, update);
        context.output().show(
            json, fieldsText(
                      {{u"Update"_s, update},
                       {u"On offer"_s, offer.getCatalogVersion().toString()},
                       {u"File"_s, offer.getFileName()},
                       {u"Bytes"_s, QString::number(offer.getFileSize())},
                       {u"File id"_s, offer.getFileReference()}}));
    };
}

} // namespace cli
