#pragma once

#include <QImage>
#include <QImageIOHandler>
#include <QImageIOPlugin>

namespace test
{

/// An image format, as hosts may install others: "SQUARE 5 16" says beforehand that it has 5 x 5 pixels and is decoded
/// to 16 x 16; with -1 it cannot tell beforehand.
class SquareDecoder : public QImageIOHandler
{
public:
    bool canRead() const override { return true; }

    bool supportsOption(ImageOption option) const override { return option == Size; }

    QVariant option(ImageOption) const override { return QSize(number(1), number(1)); }

    bool read(QImage* image) override
    {
        *image = QImage(number(2), number(2), QImage::Format_Mono);
        image->fill(0);
        return true;
    }

private:
    int number(int index) const { return device()->peek(100).split(' ').value(index).toInt(); }
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
