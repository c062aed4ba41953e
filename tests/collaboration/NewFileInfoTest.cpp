#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <KeloCommunicationLib/collaboration/RestorationRecords.h>
#include <tests/support/LogCapture.h>

namespace
{

using NewFileInfo = CreateRestorationRequestInfo::NewFileInfo;

TEST(NewFileInfo, DescribesALocalFile)
{
    QTemporaryDir const folder;
    QString const path = folder.filePath(QStringLiteral("scan.part.STL"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("abc");
    file.close();
    auto const info = NewFileInfo::create(QFileInfo(path), 5000000000ULL);
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(info->name, u"scan.part.STL");
    EXPECT_EQ(info->size, 3U);
    EXPECT_EQ(info->chunkSize, 5000000000U);
    EXPECT_EQ(info->checkSum, u"900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(info->fileType, u"STL");
}

TEST(NewFileInfo, RefusesAMissingFileAndDoesNotCreateIt)
{
    QTemporaryDir const folder;
    QString const missing = folder.filePath(QStringLiteral("missing"));
    test::LogCapture const log;
    EXPECT_FALSE(NewFileInfo::create(QFileInfo(missing), 1).has_value());
    EXPECT_FALSE(NewFileInfo::create(QFileInfo(folder.path()), 1).has_value()) << "a folder";
    EXPECT_FALSE(QFileInfo::exists(missing));
    EXPECT_THAT(
        log.warnings(),
        testing::ElementsAre(
            testing::StartsWith("Failed to open file: "), testing::StartsWith("Failed to open file: ")));
}

} // namespace
