#pragma once

#include <vector>

#include <QFileInfo>
#include <QString>

#include <KeloCommunicationLib/partners/MiraShareRecords.h>

#include "cli/shell/Arguments.h"

namespace cli
{

/// A file that can be read; throws a Failure that names any other, and its role.
QFileInfo readableFile(char const* role, QString const& path);

/// The options that announce files to the portal.
class CaseFileArguments
{
public:
    explicit CaseFileArguments(Arguments& arguments);

    /// Throws a Failure for a file that cannot be read or announced.
    std::vector<mirashare::CaseFileInfo> read() const;

private:
    Value<QStringList> paths_;
    Value<QString> type_, subType_, arch_;
    Value<int> chunkSize_;
};

/// The identities under which announced files are to be uploaded.
QString filesText(std::vector<mirashare::CaseFileId> const& files);

} // namespace cli
