#include "cli/Commands.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSet>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Listing.h"
#include "cli/shell/OutputFile.h"

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

/// Writes the logos that there are; the paths by the partners' ids.
QHash<QString, QString> writeLogos(std::vector<PartnerInfo> const& partners, QString const& folder)
{
    QHash<QString, QString> paths;
    QSet<QString> taken;
    for (auto const& partner : partners)
    {
        if (partner.getLogo())
        {
            QString const path = QDir(folder).filePath(logoName(partner.getId(), taken));
            QBuffer png;
            if (!partner.getLogo()->save(&png, "PNG"))
            {
                throw Failure(ExitCode::FileFailed, u"Cannot make the logo \"%1\"."_s.arg(path));
            }
            constexpr mode_t forAll = 0644;
            OutputFile("logo", path, forAll).write(png.data());
            paths.insert(partner.getId(), path);
        }
    }
    return paths;
}

} // namespace

Action partnersList(Arguments& arguments)
{
    auto const folder = arguments.text("--logos", "Writes the partners' logos to this folder, as PNG files");
    return [=](Context const& context)
    {
        bool const withLogos = !folder->isNull();
        if (withLogos)
        {
            checkFolder(*folder);
        }
        auto const partners = context.valueOf(context.connection().getPartners(context.installation(), withLogos));
        auto const paths = withLogos ? writeLogos(partners, *folder) : QHash<QString, QString>();
        QJsonArray json;
        for (auto const& partner : partners)
        {
            auto object = jsonSerializer::describe(partner);
            if (withLogos)
            {
                object.insert(u"Logo"_s, paths.value(partner.getId()));
            }
            json.append(object);
        }
        std::vector<Column> columns{
            {u"PartnerId"_s, u"PARTNER"_s},
            {u"PartnerName"_s, u"NAME"_s},
            {u"ShouldAnonymizeCaseData"_s, u"ANONYMIZE"_s},
            {u"ShouldCreatePartnerConnection"_s, u"CONNECT FIRST"_s},
            {u"CreatePartnerConnectionUrl"_s, u"CONNECT AT"_s}};
        if (withLogos)
        {
            columns.push_back({u"Logo"_s, u"LOGO"_s});
        }
        showTable(context.output(), json, columns);
    };
}

} // namespace cli
