#include "cli/partners/CaseFiles.h"

#include <limits>

#include "cli/shell/Listing.h"
#include "cli/shell/Outcome.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

QFileInfo readableFile(char const* role, QString const& path)
{
    QFileInfo const file(path);
    if (!file.isFile() || !file.isReadable())
    {
        throw badInput(u"Cannot read the %1 \"%2\"."_s.arg(QLatin1String(role), path));
    }
    return file;
}

CaseFileArguments::CaseFileArguments(Arguments& arguments)
    : paths_(arguments.paths("--file", "A file that will be uploaded to the case")),
      type_(arguments.text("--type", "What the files are; else each one's extension")),
      subType_(arguments.text("--sub-type", "What the files are, more exactly")),
      arch_(arguments.text("--arch", "The arch that the files show")),
      chunkSize_(arguments.number("--chunk-size", "Bytes sent at a time when they are uploaded", 4 * 1024 * 1024))
{
}

std::vector<mirashare::CaseFileInfo> CaseFileArguments::read() const
{
    if (*chunkSize_ <= 0)
    {
        throw badInput(u"The chunk size %1 is not positive."_s.arg(*chunkSize_));
    }
    std::vector<mirashare::CaseFileInfo> files;
    for (QString const& path : *paths_)
    {
        auto const file = readableFile("file", path);
        if (file.size() > std::numeric_limits<int>::max())
        {
            throw badInput(u"The file \"%1\" is too large for the portal."_s.arg(path));
        }
        files.push_back(
            {.name = file.fileName(),
             .size = static_cast<int>(file.size()),
             .chunkSize = *chunkSize_,
             .type = type_->isNull() ? file.suffix() : *type_,
             .subType = *subType_,
             .archType = *arch_,
             .paddingBytesAdded = 0});
    }
    return files;
}

QString filesText(std::vector<mirashare::CaseFileId> const& files)
{
    return files.empty() ? QString()
                         : tableOf(
                             {{u"FILE"_s, Cells::Copied}, u"NAME"_s}, files,
                             [](mirashare::CaseFileId const& file) {
                                 return QStringList{file.id, file.name};
                             });
}

} // namespace cli
