#include <KeloCommunicationLib/collaboration/RestorationRecords.h>

#include <QCryptographicHash>
#include <QDebug>
#include <QFile>

utility::Optional<CreateRestorationRequestInfo::NewFileInfo> CreateRestorationRequestInfo::NewFileInfo::create(
    QFileInfo const& file, unsigned long long chunkSize)
{
    QFile device(file.absoluteFilePath());
    // Opening for writing refuses files that the user may not change; without ExistingOnly it would create a missing
    // one.
    if (!device.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
    {
        qWarning().noquote() << "Failed to open file:" << device.errorString();
        return std::nullopt;
    }
    QCryptographicHash hash(QCryptographicHash::Md5);
    if (!hash.addData(&device))
    {
        qWarning() << "Was unable to add data to the QCryptographicHash class.";
        return std::nullopt;
    }
    NewFileInfo info;
    info.name = file.fileName();
    info.size = static_cast<quint64>(file.size());
    info.chunkSize = chunkSize;
    info.checkSum = QString::fromLatin1(hash.result().toHex());
    info.fileType = file.suffix();
    return info;
}
