#include "cli/commands/Commands.h"

#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using KeloCommunicationLib::CatalogUpdateState;

QVersionNumber versionOf(QString const& text)
{
    qsizetype end = 0;
    auto const version = QVersionNumber::fromString(text, &end);
    if (version.isNull() || end != text.size())
    {
        throw badInput(u"\"%1\" is no version such as 4.2."_s.arg(text));
    }
    return version;
}

QString nameOf(CatalogUpdateState state)
{
    switch (state)
    {
    case CatalogUpdateState::Optional:
        return u"Optional"_s;
    case CatalogUpdateState::Mandatory:
        return u"Mandatory"_s;
    case CatalogUpdateState::NoUpdate:
        break;
    }
    return u"NoUpdate"_s;
}

} // namespace

Action catalog(Arguments& arguments)
{
    auto const given = arguments.text("--version", "The version in use; none unless given", u"0"_s);
    return [=](Context const& context)
    {
        auto const version = versionOf(*given);
        auto const state = context.connection().getCatalogUpdateState(context.installation(), version);
        context.checkNewExchanges(Shape::Object);
        auto const offer = context.valueOf(context.connection().getCatalogUpdateInfo(context.installation(), version));
        QString const update = nameOf(state);
        QJsonObject const json{
            {u"Update"_s, update},
            {u"Version"_s, offer.getCatalogVersion().toString()},
            {u"FileId"_s, offer.getFileReference()},
            {u"FileName"_s, offer.getFileName()},
            {u"FileSize"_s, offer.getFileSize()}};
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
