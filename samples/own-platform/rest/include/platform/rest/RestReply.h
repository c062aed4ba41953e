#pragma once

#include <QString>
#include <QtGlobal>

namespace rest
{

struct RestReplyStatus
{
    quint32 kind = 0; ///< 0 success, 1 no usable answer, 2 an answer with an error
    qint32 code = 0;  ///< the service's, when `kind` is 2
    qint32 httpStatus = 0;
    QString message;
    QString serverResponseStatus;
};

template <class T>
struct RestReply
{
    RestReplyStatus status;
    T value{};
};

template <>
struct RestReply<void>
{
    RestReplyStatus status;
};

} // namespace rest
