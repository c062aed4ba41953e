#include <platform/core/HostEnvironment.h>

#include <mutex>
#include <optional>
#include <utility>

#include <QStringList>

namespace core
{

namespace
{

struct Holder
{
    std::mutex mutex;
    std::optional<HostEnvironment> environment;
};

Holder& holder()
{
    static Holder instance;
    return instance;
}

bool isTrue(QString const& text)
{
    static QStringList const words{
        QStringLiteral("1"), QStringLiteral("true"), QStringLiteral("yes"), QStringLiteral("on")};
    return words.contains(text.trimmed(), Qt::CaseInsensitive);
}

HostEnvironment fromProcessEnvironment()
{
    HostEnvironment environment;
    environment.apiUrl = QUrl(qEnvironmentVariable("KELO_API_URL"));
    environment.statsUrl = QUrl(qEnvironmentVariable("KELO_STATS_URL"));
    environment.username = qEnvironmentVariable("KELO_USERNAME");
    environment.password = qEnvironmentVariable("KELO_PASSWORD");
    environment.proxyAutoDiscovery = isTrue(qEnvironmentVariable("KELO_PROXY_AUTO_DISCOVERY"));
    environment.installationReference = [](QString const&) { return qEnvironmentVariable("KELO_INSTALLATION"); };
    environment.collaborationRequestVersion =
        QVersionNumber::fromString(qEnvironmentVariable("KELO_COLLABORATION_VERSION"));
    return environment;
}

} // namespace

void setHostEnvironment(HostEnvironment environment)
{
    // Swapped rather than assigned: the old one may hold a function of the host, which is not destroyed under the lock.
    std::optional<HostEnvironment> next(std::move(environment));
    std::lock_guard const lock(holder().mutex);
    holder().environment.swap(next);
}

HostEnvironment hostEnvironment()
{
    {
        std::lock_guard const lock(holder().mutex);
        if (holder().environment)
        {
            return *holder().environment;
        }
    }
    return fromProcessEnvironment();
}

} // namespace core
