#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

namespace test
{

struct NginxOptions
{
    /// Whether the TLS port offers HTTP/2.
    bool http2 = false;
    /// Requests after which a connection is closed.
    int keepaliveRequests = 1000;
    /// What the access log tells of a request, in nginx's variables, without quotes; empty for no log.
    QByteArray logFormat = {};
};

/// A web server that is not ours, in a process of its own on two loopback ports that the system chooses, one plain and
/// one with TLS 1.3 and a certificate that signs itself. It ends with the thread that made it.
///
/// A request of any method is answered with 200 and the file at its path, or at its path with ".json" behind it.
/// `/after/0.05/x` is answered as `/x`, 0.05 s later; `/read/x` as `/x`, and its body is known to the access log.
class Nginx
{
public:
    /// Throws when nginx is missing or refuses the configuration.
    explicit Nginx(NginxOptions const& options = {});
    Nginx(Nginx const&) = delete;
    Nginx& operator=(Nginx const&) = delete;
    ~Nginx();

    QUrl url() const;
    QUrl tlsUrl() const;
    void serve(QString const& path, QByteArray const& content) const;
    /// Ends the server; the lines of its access log, which is complete only then.
    QList<QByteArray> end();

private:
    QString path(char const* name) const;

    QTemporaryDir folder_;
    pid_t process_ = -1;
    int port_ = 0;
    int tlsPort_ = 0;
};

} // namespace test
