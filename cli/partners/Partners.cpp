#include "cli/Commands.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSet>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Failures.h"
#include "cli/shell/Listing.h"
#include "cli/shell/OutputFile.h"
#include "cli/shell/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// A file name of letters, digits, "-" and "_" only, whatever the service calls the partner, and not one in `taken`.
QString logoName(QString const& partnerId, QSet<QString>& taken)
{
    QString stem = partnerId.isEmpty() ? u"partner"_s : partnerId.left(100);
    for (QChar& character : stem)
    {
        bool const isPlain = character.unicode() < 0x80 && character.isLetterOrNumber();
        character = isPlain || character == u'-' ? character : QChar(u'_');
    }
    QString name = stem + u".png"_s;
    for (int number = 2; taken.contains(name.toLower()); ++number)
    {
        name = u"%1-%2.png"_s.arg(stem).arg(number);
    }
    taken.insert(name.toLower());
    return name;
}

void checkFolder(QString const& path)
{
    if (!QDir().mkpath(path) || !QFileInfo(path).isWritable())
    {
        throw badInput(u"Cannot write logos to the folder \"%1\"."_s.arg(path));
    }
}

void writeLogo(QImage const& logo, QString const& path, bool mayReplace)
{
    checkPlace(path, mayReplace);
    QBuffer png;
    if (!logo.save(&png, "PNG"))
    {
        throw Failure(ExitCode::FileFailed, u"Cannot make the logo \"%1\"."_s.arg(path));
    }
    constexpr mode_t forAll = 0644;
    OutputFile("logo", path, forAll).write(png.data());
}

/// Where the logos are, as far as there are any and they could be written.
class Logos
{
public:
    Logos(std::vector<PartnerInfo> const& partners, QString const& folder, bool mayReplace)
    {
        QSet<QString> taken;
        for (auto const& partner : partners)
        {
            if (auto const& logo = partner.getLogo())
            {
                QString const path = QDir(folder).filePath(logoName(partner.getId(), taken));
                ++count_;
                if (failures_.attempt([&] { writeLogo(*logo, path, mayReplace); }))
                {
                    paths_.insert(partner.getId(), path);
                }
            }
        }
    }

    QString pathOf(QString const& partnerId) const { return paths_.value(partnerId); }

    /// Throws a Failure if some could not be written.
    void check() const { failures_.raise(count_, u"logos were not written"_s); }

private:
    QHash<QString, QString> paths_;
    Failures failures_;
    qsizetype count_ = 0;
};

} // namespace

Action partnersList(Arguments& arguments)
{
    auto const folder =
        arguments.text("--logos", "Writes the partners' logos to this folder, as PNG files", Offer::Kind::Folders);
    auto const mayReplace = arguments.flag("--overwrite", "Replaces logos that are there already");
    return [=](Context const& context)
    {
        bool const withLogos = !folder->isNull();
        if (withLogos)
        {
            checkFolder(*folder);
        }
        Waiting const waiting([] { return u"Fetching the partners"_s; });
        auto const partners =
            context.valueOf(waiting.until(context.connection().getPartners(context.installation(), withLogos)));
        Logos const logos(partners, *folder, *mayReplace);
        QJsonArray json;
        for (auto const& partner : partners)
        {
            auto object = jsonSerializer::describe(partner);
            if (withLogos)
            {
                object.insert(u"Logo"_s, logos.pathOf(partner.getId()));
            }
            json.append(object);
        }
        std::vector<Column> columns{
            {u"PartnerId"_s, u"PARTNER"_s, Cells::Copied},
            {u"PartnerName"_s, u"NAME"_s},
            {u"ShouldAnonymizeCaseData"_s, u"ANONYMIZE"_s},
            {u"ShouldCreatePartnerConnection"_s, u"CONNECT FIRST"_s},
            {u"CreatePartnerConnectionUrl"_s, u"CONNECT AT"_s}};
        if (withLogos)
        {
            columns.push_back({u"Logo"_s, u"LOGO"_s, Cells::Copied});
        }
        showTable(context.output(), json, columns);
        logos.check();
    };
}

} // namespace cli
