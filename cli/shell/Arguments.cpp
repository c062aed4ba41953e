#include "cli/shell/Arguments.h"

namespace cli
{

QString DeclaredArgument::valueName() const
{
    if (isFlag())
    {
        return {};
    }
    if (!isOption())
    {
        return names.first();
    }
    switch (offer.kind)
    {
    case Offer::Kind::Files:
        return QStringLiteral("FILE");
    case Offer::Kind::Folders:
        return QStringLiteral("FOLDER");
    case Offer::Kind::Words:
    case Offer::Kind::Nothing:
        break;
    }
    return names.first().section(u'-', -1).toUpper();
}

template <class T>
Value<T> Arguments::add(char const* name, char const* help, Offer offer, T const& defaultValue)
{
    auto const value = std::make_shared<T>(defaultValue);
    all_.push_back({QString::fromLatin1(name).split(u','), QString::fromLatin1(help), offer, value});
    return value;
}

Value<QString> Arguments::text(char const* name, char const* help, Offer offer, QString const& defaultText)
{
    return add(name, help, offer, defaultText);
}

Value<QString> Arguments::requiredText(char const* name, char const* help, Offer offer)
{
    auto const value = add(name, help, offer, QString());
    all_.back().isRequired = true;
    return value;
}

Value<QStringList> Arguments::texts(char const* name, char const* help, Offer offer)
{
    auto const values = add(name, help, offer, QStringList());
    all_.back().isSplit = true;
    return values;
}

Value<QStringList> Arguments::paths(char const* name, char const* help)
{
    return add(name, help, Offer::Kind::Files, QStringList());
}

Value<int> Arguments::number(char const* name, char const* help, int defaultNumber)
{
    return add(name, help, {}, defaultNumber);
}

Value<bool> Arguments::flag(char const* name, char const* help)
{
    return add(name, help, {}, false);
}

Value<bool> Arguments::offlineFlag(char const* name, char const* help)
{
    auto const value = flag(name, help);
    all_.back().needsNoService = true;
    return value;
}

} // namespace cli
