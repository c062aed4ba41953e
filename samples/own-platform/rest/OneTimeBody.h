#pragma once

#include <QByteArray>
#include <QIODevice>

namespace rest
{

/// A request's body that can be read once. When a connection is lost before the answer Qt sends the request again, a
/// write too; but not if it cannot have the body again.
class OneTimeBody : public QIODevice
{
public:
    OneTimeBody(QByteArray bytes, QObject* parent);

    qint64 size() const override;
    bool reset() override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(char const* data, qint64 maxSize) override;

private:
    QByteArray bytes_;
};

} // namespace rest
