#include "cli/call/OperationCall.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

auto const installationArgument = "INSTALLATION"_L1;

/// What stands behind an argument's name, in the order of the kinds.
constexpr char const* forms[] = {"", "(true|false)", "(1.2.3)", "(path)", "(ID,ID)", "(JSON)"};

/// The sender's references are filled in where they are missing.
void addSender(Form& form, Context const& context)
{
    for (Form& member : form.parts)
    {
        if (member.key == "InstallationReference"_L1)
        {
            member.otherwise = context.installation();
            member.isId = true;
        }
        else if (member.key.compare("UserReference"_L1, Qt::CaseInsensitive) == 0)
        {
            member.otherwise = context.user();
        }
    }
}

} // namespace

QStringList Operation::usage() const
{
    QStringList words;
    for (Argument const& argument : arguments)
    {
        if (argument.name != installationArgument)
        {
            words << argument.name + QLatin1String(forms[static_cast<std::size_t>(argument.kind)]);
        }
    }
    return words;
}

std::optional<Form> Operation::form() const
{
    if (arguments.empty() || arguments.back().kind != ArgumentKind::Json)
    {
        return std::nullopt;
    }
    Form form = formOf(*schema.body);
    if (!pathMember.isEmpty())
    {
        Form& member = form[pathMember];
        member.isRequired = true;
        member.isId = true;
    }
    return form;
}

QJsonValue Operation::call(Context const& context, QStringList const& words) const
{
    CallArguments given(context, *this, words);
    return run(given);
}

QString CallArguments::nextWord()
{
    auto const& name = operation_.arguments.at(position_++).name;
    return name == installationArgument ? context_.installation() : words_.takeFirst();
}

QJsonObject CallArguments::nextObject()
{
    Form form = *operation_.form();
    addSender(form, context_);
    QString const& name = argument().name;
    QString const word = nextWord();
    bool const isFile = word.startsWith(u'@') || word == "-"_L1;
    auto const [source, content] =
        isFile ? given("JSON file", word.startsWith(u'@') ? word.mid(1) : word) : Given{name, word.toUtf8()};
    return readStrictly(source, content, form);
}

void CallArguments::read(QString& id)
{
    auto const name = argument().name.toLatin1();
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

void CallArguments::read(QByteArray& content)
{
    file_ = fileToSend(nextWord());
    content = file_->bytes();
}

void CallArguments::read(mirashare::Cases& cases)
{
    for (QString const& id : nextWord().split(u','))
    {
        cases.caseIds << identifier("case id", id);
    }
}

void CallArguments::checkReply(rest::RestReplyStatus const& status) const
{
    auto const& reply = operation_.schema.reply;
    context_.check(
        status, !reply                                             ? Shape::Anything
                : reply->kind() == jsonSerializer::ValueKind::List ? Shape::List
                                                                   : Shape::Object);
}

QJsonValue CallArguments::shown(threading::Future<QByteArray> const& future) const
{
    auto const bytes = context_.finished(future).get();
    context_.check(context_.untoldStatus(), Shape::Anything);
    return QJsonObject{{u"Size"_s, bytes.size()}, {u"Base64"_s, QString::fromLatin1(bytes.toBase64())}};
}

QJsonValue CallArguments::shown(threading::Future<std::pair<QString, KeloErrorCode>> const& future) const
{
    return shown(context_.finished(future).get().first);
}

QJsonValue CallArguments::shown(KeloCommunicationLib::CatalogUpdateState state) const
{
    context_.check(context_.untoldStatus(), Shape::Anything);
    return QJsonObject{{u"State"_s, nameOf(state)}};
}

QJsonValue CallArguments::shown(TempShellDataResponse const& response) const
{
    context_.check(context_.untoldStatus(), Shape::List);
    return described(response.getTempShellFile());
}

QJsonValue CallArguments::shown(std::pair<KeloErrorCode, std::vector<QString>> const& keys) const
{
    context_.check(context_.untoldStatus(), Shape::Anything);
    return QJsonArray::fromStringList(QStringList(keys.second.begin(), keys.second.end()));
}

QJsonValue CallArguments::shown(QString const& url) const
{
    context_.check(context_.untoldStatus(), Shape::Object);
    return QJsonObject{{u"Url"_s, url}};
}

} // namespace cli
