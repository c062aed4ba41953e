#include "Logos.h"

#include <QImage>

#include <platform/core/HostInfo.h>

namespace board
{

namespace
{

constexpr int mostAttempts = 3;
constexpr int side = 64; // enough for a table on any display

QImage logoIn(QByteArray const& base64)
{
    QImage const image = QImage::fromData(QByteArray::fromBase64(base64));
    return image.isNull() ? image : image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

Logos::Logos(TessalyConnectionInterface const& connection, QObject* parent) : QObject(parent), connection_(connection)
{
}

void Logos::want(QString const& partnerId)
{
    if (partnerId.isEmpty() || settled_.contains(partnerId))
    {
        return;
    }
    settled_.insert(partnerId);
    // Decoded where it arrives, so that a large one does not hold up the window.
    connection_.getPartnerLogo(settings::registry::getInstallationReference(QString()), partnerId)
        .then(logoIn)
        .then(
            this,
            [this, partnerId](threading::Future<QImage> const& finished)
            {
                QImage const logo = finished.get();
                if (!logo.isNull())
                {
                    Q_EMIT ready(partnerId, QIcon(QPixmap::fromImage(logo)));
                }
                else if (++failures_[partnerId] < mostAttempts)
                {
                    settled_.remove(partnerId);
                }
            });
}

} // namespace board
