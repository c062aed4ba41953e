#include "cli/Commands.h"

#include <QJsonArray>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action keys(Arguments& arguments)
{
    auto const withSecrets = arguments.flag("--with-secrets", "Says that the keys are to be shown");
    return [=](Context const& context)
    {
        if (!*withSecrets)
        {
            throw badInput(u"The keys are secrets: give --with-secrets to have them shown."_s);
        }
        context.recordSecrets();
        auto const keys = context.connection().getThirdPartyAuthenticationKeys(context.installation()).second;
        context.check(context.untoldStatus(), Shape::Anything);
        QStringList const list(keys.begin(), keys.end());
        QString text;
        for (QString const& key : list)
        {
            text += printable(key) + u'\n';
        }
        context.output().show(QJsonArray::fromStringList(list), text);
    };
}

} // namespace cli
