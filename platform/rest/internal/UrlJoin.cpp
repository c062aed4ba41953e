#include <platform/rest/internal/UrlJoin.h>

namespace rest
{

namespace
{

bool isSecure(QUrl const& url)
{
    return url.scheme() == QLatin1String("https");
}

} // namespace

QByteArray originOf(QUrl const& url)
{
    QUrl origin;
    origin.setScheme(url.scheme());
    origin.setHost(url.host());
    origin.setPort(url.port(isSecure(url) ? 443 : 80));
    return origin.toEncoded();
}

std::optional<BaseUrl> BaseUrl::from(QUrl const& url)
{
    bool const isHttp = isSecure(url) || url.scheme() == QLatin1String("http");
    if (!url.isValid() || !isHttp || url.host().isEmpty())
    {
        return std::nullopt;
    }
    QUrl const plain = url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    QByteArray root = plain.toEncoded(QUrl::RemoveQuery);
    while (root.endsWith('/'))
    {
        root.chop(1);
    }
    return BaseUrl{plain.toEncoded(), root, originOf(plain)};
}

std::optional<QByteArray> joinUrl(BaseUrl const& base, QUrl const& relative)
{
    if (!relative.errorString().isEmpty())
    {
        return std::nullopt;
    }
    if (relative.isEmpty())
    {
        return base.unchanged;
    }
    QByteArray const text = relative.toEncoded();
    qsizetype start = 0;
    while (start < text.size() && text[start] == '/')
    {
        ++start;
    }
    QByteArray joined;
    joined.reserve(base.root.size() + 1 + text.size() - start);
    joined.append(base.root).append('/').append(text.constData() + start, text.size() - start);
    if (joined.contains('#'))
    {
        joined.replace('#', "%23");
    }
    return joined;
}

} // namespace rest
