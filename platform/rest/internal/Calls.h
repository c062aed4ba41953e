#pragma once

#include <functional>

#include <platform/rest/NetworkReply.h>
#include <platform/rest/internal/Call.h>
#include <platform/threading/Future.h>

namespace rest
{

/// A call whose reply is read as JSON.
class JsonCall final : public Call
{
public:
    using Call::Call;

    FutureJsonReply future() const { return promise_.future(); }

    void complete(Outcome outcome) override;
    void cancel() override;
    void watchCancellation() override;

private:
    threading::Promise<JsonReply> promise_;
};

/// A call whose reply goes as bytes to a callback.
class DownloadCall final : public Call
{
public:
    using Callback = std::function<void(BinaryReply const&)>;

    DownloadCall(std::shared_ptr<Session> session, Request request, Callback callback);

    threading::Future<void> future() const { return promise_.future(); }

    void complete(Outcome outcome) override;
    void cancel() override;
    void watchCancellation() override;

private:
    Callback callback_;
    threading::Promise<void> promise_;
};

/// A call whose answer goes to the request's target.
class FileCall final : public Call
{
public:
    using Call::Call;

    threading::Future<BinaryReply> future() const { return promise_.future(); }

    void complete(Outcome outcome) override;
    void cancel() override;
    void watchCancellation() override;

private:
    threading::Promise<BinaryReply> promise_;
};

} // namespace rest
