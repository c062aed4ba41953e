#include <KeloCommunicationLib/partners/internal/LogoChain.h>

#include <QBuffer>
#include <QDebug>
#include <QImageReader>

namespace KeloCommunicationLib::internal::logos
{

namespace
{

/// Logos come from outside: a few bytes can claim an image of gigabytes.
constexpr qint64 mostPixels = qint64{4096} * 4096;

bool isTooLarge(QSize size)
{
    return qint64{size.width()} * size.height() > mostPixels;
}

QImage imageIn(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    if (isTooLarge(reader.size()))
    {
        return QImage();
    }
    // Some decoders do not know the size before, and an icon may hold a larger image than it claims. Until here, Qt's
    // own limit for one image applies.
    QImage image = reader.read();
    return isTooLarge(image.size()) ? QImage() : image;
}

} // namespace

Partner partnerOf(PartnerInfo const& partner)
{
    return {partner.getId(), partner.getName()};
}

Partner partnerOf(PartnerCaseInfo const& partnerCase)
{
    return {partnerCase.getPartnerId(), partnerCase.getPartnerName()};
}

utility::Optional<QImage> decode(QByteArray const& body, Partner const& partner)
{
    if (body.isEmpty())
    {
        return std::nullopt;
    }
    QImage image = imageIn(QByteArray::fromBase64(body));
    if (image.isNull())
    {
        qWarning() << "Failed to download logo for Partner:" << partner.name << partner.id;
        return std::nullopt;
    }
    return image;
}

} // namespace KeloCommunicationLib::internal::logos
