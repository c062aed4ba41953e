#pragma once

#include <optional>

#include <QByteArray>
#include <QUrl>

namespace rest
{

/// A base URL in the forms that requests need: encoded, without user-info and fragment.
struct BaseUrl
{
    QByteArray unchanged; ///< with its path and query as given
    QByteArray root;      ///< up to the path, without trailing slashes
    QByteArray origin;    ///< "scheme://host:port", the port always there

    /// Nothing unless `url` is an http or https URL with a host.
    static std::optional<BaseUrl> from(QUrl const& url);
};

/// "scheme://host:port" of an absolute URL.
QByteArray originOf(QUrl const& url);

/// Appends `relative` to the base's path, with one slash between them; an empty one gives the base URL unchanged.
/// Whatever `relative` looks like ("//other/x", "a:b/x", "x#y"), it is path and query at the base's own host. Nothing
/// when `relative` could not be parsed.
std::optional<QByteArray> joinUrl(BaseUrl const& base, QUrl const& relative);

} // namespace rest
