#include "tests/support/Nginx.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <testkit/Certificates.h>
#include <testkit/ServerSocket.h>

namespace test
{

using namespace testkit;

namespace
{

// Debian's folder for it is not in everybody's search path.
constexpr char const* program = "/usr/sbin/nginx";

constexpr char const* configuration = R"(
load_module /usr/lib/nginx/modules/ngx_http_echo_module.so;
user root;
daemon off;
pid pid;
error_log error.log error;
worker_processes 1;
events { worker_connections 8192; }
http {
  client_body_temp_path client; proxy_temp_path proxy; fastcgi_temp_path fastcgi; uwsgi_temp_path uwsgi; scgi_temp_path scgi;
  client_max_body_size 0;
  client_body_in_single_buffer on;
  default_type application/json;
  root files;
  sendfile on;
  tcp_nopush on;
  keepalive_requests %REQUESTS%;
  log_format chosen escape=none '%FORMAT%';
  access_log %LOG%;
  ssl_certificate certificate.pem;
  ssl_certificate_key key.pem;
  ssl_protocols TLSv1.3;
  server {
    listen 127.0.0.1:%PORT%;
    listen 127.0.0.1:%TLSPORT% ssl %HTTP2%;
    location ~ ^/after/([0-9.]+)(/.*)$ { echo_sleep $1; echo_exec $2; }
    location ~ ^/read(/.*)$ { echo_read_request_body; echo_exec $1; }
    location / { error_page 405 =200 $uri; try_files $uri $uri.json =404; }
  }
}
)";

QByteArray configurationFor(NginxOptions const& options, int port, int tlsPort)
{
    QByteArray const format = options.logFormat;
    std::array<std::pair<char const*, QByteArray>, 6> const values{{
        {"%REQUESTS%", QByteArray::number(options.keepaliveRequests)},
        {"%FORMAT%", format},
        {"%LOG%", format.isEmpty() ? "off" : "access.log chosen"},
        {"%PORT%", QByteArray::number(port)},
        {"%TLSPORT%", QByteArray::number(tlsPort)},
        {"%HTTP2%", options.http2 ? "http2" : ""},
    }};
    QByteArray text = configuration;
    for (auto const& [name, value] : values)
    {
        text.replace(name, value);
    }
    return text;
}

void write(QString const& path, QByteArray const& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
    {
        throw std::runtime_error("A file of nginx cannot be written");
    }
}

/// What it complains about goes to the file `errors`, if there is one. Not by QProcess: the thread sanitizer loses
/// count of who waited for whom when that makes a process.
pid_t spawn(std::vector<std::string> command, QByteArray const& errors)
{
    std::vector<char*> words;
    for (std::string& word : command)
    {
        words.push_back(word.data());
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (!errors.isEmpty())
    {
        posix_spawn_file_actions_addopen(
            &actions, STDERR_FILENO, errors.constData(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    }
    pid_t process = -1;
    bool const isStarted = ::posix_spawnp(&process, words.front(), &actions, nullptr, words.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    if (!isStarted)
    {
        throw std::runtime_error("nginx cannot be started");
    }
    return process;
}

} // namespace

Nginx::Nginx(NginxOptions const& options)
{
    std::array const listeners{listenOnLoopback(port_), listenOnLoopback(tlsPort_)};
    std::array const owners{ServerSocket(listeners[0]), ServerSocket(listeners[1])};
    Key const key = makeKey();
    write(path("certificate.pem"), toPem(makeCertificate(TlsOptions(), key.get()).get()));
    write(path("key.pem"), toPem(key.get()));
    write(path("nginx.conf"), configurationFor(options, port_, tlsPort_));
    QDir(folder_.path()).mkdir(QStringLiteral("files"));
    std::vector<std::string> const arguments{program, "-p",       folder_.path().toStdString(), "-c", "nginx.conf",
                                             "-e",    "error.log"};
    auto check = arguments;
    check.insert(check.end(), {"-t", "-q"});
    int status = 0;
    if (::waitpid(spawn(check, {}), &status, 0) < 0 || status != 0)
    {
        throw std::runtime_error("nginx is not installed or refuses its configuration");
    }
    // Its way of taking over the sockets of an older self. It needs no readiness to wait for: the sockets listen.
    auto command = arguments;
    command.insert(
        command.begin(), {"env", "NGINX=" + std::to_string(listeners[0]) + ';' + std::to_string(listeners[1]) + ';',
                          "setpriv", "--pdeathsig", "TERM"});
    for (int const listener : listeners)
    {
        ::fcntl(listener, F_SETFD, 0);
        ::fcntl(listener, F_SETFL, O_NONBLOCK);
    }
    process_ = spawn(command, path("stderr").toUtf8());
}

Nginx::~Nginx()
{
    end();
}

QUrl Nginx::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port_));
}

QUrl Nginx::tlsUrl() const
{
    return QUrl(QStringLiteral("https://127.0.0.1:%1").arg(tlsPort_));
}

void Nginx::serve(QString const& path, QByteArray const& content) const
{
    QString const file = folder_.filePath(QStringLiteral("files")) + path;
    QDir().mkpath(QFileInfo(file).path());
    write(file, content);
}

QList<QByteArray> Nginx::end()
{
    if (process_ > 0)
    {
        ::kill(process_, SIGTERM);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }
    QFile log(path("access.log"));
    if (!log.open(QIODevice::ReadOnly))
    {
        return {};
    }
    QList<QByteArray> lines = log.readAll().split('\n');
    lines.removeLast();
    return lines;
}

QString Nginx::path(char const* name) const
{
    return folder_.filePath(QString::fromLatin1(name));
}

} // namespace test
