#pragma once

#include <memory>
#include <variant>
#include <vector>

#include <QString>
#include <QStringList>

namespace cli
{

/// The value of an argument: the default until the command line is read.
template <class T>
using Value = std::shared_ptr<T const>;

/// What a shell can offer as an argument's value.
struct Offer
{
    enum class Kind : int
    {
        Nothing,
        Words,
        Files, ///< behind an "@", too
        Folders
    };

    constexpr Offer() = default;
    constexpr Offer(Kind offered) : kind(offered) {}
    /// These words. Others are possible unless the check, which is made before anything else, throws a Failure.
    constexpr Offer(QStringList (*offered)(), void (*checked)(QString const& word) = nullptr)
        : kind(Kind::Words), words(offered), check(checked)
    {
    }

    Kind kind = Kind::Nothing;
    QStringList (*words)() = nullptr;
    void (*check)(QString const& word) = nullptr;
};

/// One argument of a command. The parser, the help, the completions and the manual pages are made of this.
struct DeclaredArgument
{
    template <class T>
    using Target = std::shared_ptr<T>;

    QStringList names; ///< of an option, each with its dashes; of a position, the one word that stands for it
    QString help;
    Offer offer;
    std::variant<Target<bool>, Target<QString>, Target<QStringList>, Target<int>> target;
    bool isRequired = false;
    bool isSplit = false;        ///< a text is split at its commas
    bool needsNoService = false; ///< a flag with which the command runs without a service

    bool isOption() const { return names.first().startsWith(u'-'); }

    /// The names of an option; of a position there are none.
    QStringList optionNames() const { return isOption() ? names : QStringList(); }

    bool isFlag() const { return std::holds_alternative<Target<bool>>(target); }

    bool takesSeveral() const { return std::holds_alternative<Target<QStringList>>(target); }

    /// What stands for the value in descriptions, e.g. "FILE"; empty for a flag.
    QString valueName() const;
    /// The words to offer for the value.
    QStringList words() const { return offer.words == nullptr ? QStringList() : offer.words(); }
};

/// Declares the arguments of one command. Names that begin with a dash are options, with commas between their names;
/// others are positions on the command line.
class Arguments
{
public:
    Value<QString> text(char const* name, char const* help, Offer offer = {}, QString const& defaultText = {});
    Value<QString> requiredText(char const* name, char const* help, Offer offer = {});
    /// May be given several times, with several texts, or with texts joined by commas.
    Value<QStringList> texts(char const* name, char const* help, Offer offer = {});
    /// As `texts`, for texts that may hold commas.
    Value<QStringList> paths(char const* name, char const* help);
    Value<int> number(char const* name, char const* help, int defaultNumber);
    Value<bool> flag(char const* name, char const* help);
    /// A flag with which the command needs no service.
    Value<bool> offlineFlag(char const* name, char const* help);

    std::vector<DeclaredArgument> const& all() const { return all_; }

private:
    template <class T>
    Value<T> add(char const* name, char const* help, Offer offer, T const& defaultValue);

    std::vector<DeclaredArgument> all_;
};

} // namespace cli
