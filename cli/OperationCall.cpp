#include "cli/OperationCall.h"

#include "cli/Input.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

rest::TraceData first(Context const& context)
{
    auto const exchanges = context.exchanges();
    if (exchanges.empty())
    {
        throw context.unfinished();
    }
    return exchanges.front();
}

} // namespace

QString const installationArgument = u"INSTALLATION"_s;

QString CallArguments::nextWord()
{
    QString const& name = names_.at(position_++);
    return name == installationArgument ? context_.installation() : words_.takeFirst();
}

QJsonObject CallArguments::nextObject()
{
    QString const& name = names_.at(position_);
    QString const word = nextWord();
    auto const text = word.startsWith(u'@') ? contentOf("JSON file", word.mid(1)) : word.toUtf8();
    QJsonParseError error;
    auto const document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
    {
        throw badInput(u"The argument %1 is no JSON object%2."_s.arg(
            name, error.error == QJsonParseError::NoError ? QString() : u": "_s + error.errorString()));
    }
    return document.object();
}

void CallArguments::read(QString& id)
{
    auto const name = names_.at(position_).toLatin1();
    id = identifier(name.constData(), nextWord());
}

void CallArguments::read(bool& value)
{
    QString const word = nextWord();
    if (word != "true"_L1 && word != "false"_L1)
    {
        throw badInput(u"The argument \"%1\" is neither true nor false."_s.arg(word));
    }
    value = word == "true"_L1;
}

void CallArguments::read(QVersionNumber& version)
{
    QString const word = nextWord();
    qsizetype end = 0;
    version = QVersionNumber::fromString(word, &end);
    if (version.isNull() || end != word.size())
    {
        throw badInput(u"The argument \"%1\" is no version of the form 1.2.3."_s.arg(word));
    }
}

void CallArguments::read(QByteArray& content)
{
    content = contentOf("file", nextWord());
}

void CallArguments::read(collaboration::RequestKeyRequest& search)
{
    read(search.requestKey);
}

void CallArguments::read(collaboration::SalesOrderNumberRequest& search)
{
    read(search.salesOrderNumber);
}

void CallArguments::read(mirashare::Cases& cases)
{
    for (QString const& id : nextWord().split(u','))
    {
        cases.caseIds << identifier("case id", id);
    }
}

QJsonValue firstReply(Context const& context)
{
    auto const reply = QJsonDocument::fromJson(first(context).responseBody);
    return reply.isArray() ? QJsonValue(reply.array()) : QJsonValue(reply.object());
}

QJsonValue firstStatus(Context const& context)
{
    return QJsonObject{{u"HttpStatus"_s, first(context).httpStatus}};
}

QJsonValue resultOf(Context const& context, Interface::Reply<std::vector<mirashare::MiraShareItemData>> const& future)
{
    context.finished(future);
    context.checkNewExchanges(Shape::Object);
    return firstReply(context);
}

QJsonValue resultOf(Context const& context, threading::Future<QByteArray> const& future)
{
    auto const bytes = context.finished(future).get();
    context.checkNewExchanges(Shape::Anything);
    return QJsonObject{{u"Size"_s, bytes.size()}, {u"Base64"_s, QString::fromLatin1(bytes.toBase64())}};
}

QJsonValue resultOf(Context const& context, threading::Future<std::pair<QString, KeloErrorCode>> const& future)
{
    auto const [url, code] = context.finished(future).get();
    context.checkNewExchanges(Shape::Object);
    if (code != KeloErrorCode::Success)
    {
        throw context.unfinished();
    }
    return QJsonObject{{u"Url"_s, url}};
}

QJsonValue resultOf(Context const& context, KeloCommunicationLib::CatalogUpdateState state)
{
    using State = KeloCommunicationLib::CatalogUpdateState;
    context.checkNewExchanges(Shape::Anything);
    QString const name = state == State::Optional    ? u"Optional"_s
                         : state == State::Mandatory ? u"Mandatory"_s
                                                     : u"NoUpdate"_s;
    return QJsonObject{{u"State"_s, name}};
}

QJsonValue resultOf(Context const& context, TempShellDataResponse const& /*response*/)
{
    context.checkNewExchanges(Shape::List);
    return firstReply(context);
}

QJsonValue resultOf(Context const& context, std::pair<KeloErrorCode, std::vector<QString>> const& keys)
{
    context.checkNewExchanges(Shape::Anything);
    if (keys.first != KeloErrorCode::Success)
    {
        throw context.unfinished();
    }
    return QJsonArray::fromStringList(QStringList(keys.second.begin(), keys.second.end()));
}

QJsonValue resultOf(Context const& context, QString const& url)
{
    context.checkNewExchanges(Shape::Object);
    return QJsonObject{{u"Url"_s, url}};
}

} // namespace cli
