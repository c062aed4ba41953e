#include "cli/prompt/Completion.h"

#include <QJsonObject>

namespace cli
{

using namespace Qt::Literals::StringLiterals;

static QStringList shells()
{
    return {u"bash"_s, u"zsh"_s, u"fish"_s};
}

Action completion(Arguments& arguments)
{
    auto const shell = arguments.requiredText("SHELL", "The shell", shells);
    return [=](Context const& context)
    {
        auto const at = shells().indexOf(*shell);
        if (at < 0)
        {
            throw badInput(u"Unknown shell \"%1\": it is one of %2."_s.arg(*shell, shells().join(", "_L1)));
        }
        static constexpr decltype(&bashCompletion) scripts[] = {bashCompletion, zshCompletion, fishCompletion};
        auto const text = scripts[at](Program());
        context.output().show(QJsonObject{{u"Script"_s, text}}, text);
    };
}

} // namespace cli
