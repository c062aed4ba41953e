// An image format for tests: "SQUARE 16" is 16 x 16 pixels. As with some formats that hosts install, its decoder does
// not tell the size before it has decoded.
#define QT_STATICPLUGIN
#include <QImage>
#include <QImageIOHandler>
#include <QImageIOPlugin>
#include <QtPlugin>

namespace test
{

class SquareDecoder : public QImageIOHandler
{
public:
    bool canRead() const override { return true; }

    bool read(QImage* image) override
    {
        int const side = device()->readAll().mid(7).toInt();
        *image = QImage(side, side, QImage::Format_Mono);
        image->fill(0);
        return true;
    }
};

class SquareFormat : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "SquareDecoder.json")

public:
    Capabilities capabilities(QIODevice* device, QByteArray const&) const override
    {
        return device != nullptr && device->isReadable() && device->peek(7) == "SQUARE " ? CanRead : Capabilities();
    }

    QImageIOHandler* create(QIODevice* device, QByteArray const&) const override
    {
        auto* const decoder = new SquareDecoder;
        decoder->setDevice(device);
        return decoder;
    }
};

} // namespace test

Q_IMPORT_PLUGIN(SquareFormat)

#include "SquareDecoder.moc"
