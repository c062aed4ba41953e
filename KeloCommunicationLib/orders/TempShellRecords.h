#pragma once

#include <QJsonArray>
#include <QList>
#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>

/// A temporary shell that the service computed for an order.
class KELO_EXPORT TempShellFile
{
public:
    /// What the file is downloaded by: the argument of `getTempShellFile`.
    QString getFileId() const { return fileId_; }

    void setFileId(QString const& fileId) { fileId_ = fileId; }

    QString getFileName() const { return fileName_; }

    void setFileName(QString const& fileName) { fileName_ = fileName; }

    /// Pieces of the file.
    int getNumberOfChuncks() const { return numberOfChuncks_; }

    void setNumberOfChuncks(int const& numberOfChuncks) { numberOfChuncks_ = numberOfChuncks; }

    /// Bytes of the whole file.
    int getFileSize() const { return fileSize_; }

    void setFileSize(int const& fileSize) { fileSize_ = fileSize; }

    /// Bytes of one piece.
    int getChunkSize() const { return chunkSize_; }

    void setChunkSize(int const& chunkSize) { chunkSize_ = chunkSize; }

    QString getArticleNumber() const { return articleNumber_; }

    void setArticleNumber(QString const& articleNumber) { articleNumber_ = articleNumber; }

    /// First tooth of the shell, in FDI two-digit notation: quadrant, then position, as in 36.
    int getToothNumberStart() const { return toothNumberStart_; }

    void setToothNumberStart(int const& toothNumberStart) { toothNumberStart_ = toothNumberStart; }

    /// Last tooth of the shell, in the same notation.
    int getToothNumberEnd() const { return toothNumberEnd_; }

    void setToothNumberEnd(int const& toothNumberEnd) { toothNumberEnd_ = toothNumberEnd; }

private:
    QString fileId_;
    QString fileName_;
    int numberOfChuncks_ = 0;
    int fileSize_ = 0;
    int chunkSize_ = 0;
    QString articleNumber_;
    int toothNumberStart_ = 0;
    int toothNumberEnd_ = 0;
};

/// The temporary shells of an order. Reply of GET Orders/{reference}/files/tempshell.
class KELO_EXPORT TempShellDataResponse
{
public:
    /// All of them, in the service's order.
    QList<TempShellFile> getTempShellFile() const { return tempShellFile_; }

    void setTempShellFile(QList<TempShellFile> const& tempShellFile) { tempShellFile_ = tempShellFile; }

private:
    QList<TempShellFile> tempShellFile_;
};

namespace jsonSerializer
{

/// Reads the reply, which is a bare array.
template <>
KELO_EXPORT TempShellDataResponse fromJson<TempShellDataResponse, QJsonArray>(QJsonArray const& json);

} // namespace jsonSerializer
