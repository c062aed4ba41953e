#include "simulator/resources/Catalog.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

#include <QVersionNumber>

namespace simulator
{

namespace
{

Catalog const& catalogFor(Call const& call)
{
    return ofInstallation(call.state.catalogs, knownInstallation(call.state, call.id()));
}

/// 4.2 and 4.2.0 are the same version.
QVersionNumber version(QString const& text)
{
    qsizetype end = 0;
    auto const number = QVersionNumber::fromString(text, &end);
    if (number.isNull() || end != text.size())
    {
        throw Refusal(Reason::BadValue, "version " + text);
    }
    return number.normalized();
}

char const* statusOf(Catalog const& catalog, QVersionNumber const& client)
{
    if (client >= version(catalog.version))
    {
        return "None";
    }
    return client >= version(catalog.oldestUsable) ? "Optional" : "Mandatory";
}

Answer catalogInfo(Call const& call)
{
    auto const& catalog = catalogFor(call);
    return Answer::json(QJsonObject{
        {"FileId", catalog.fileId},
        {"FileName", QStringLiteral("catalog-%1.zip").arg(catalog.version)},
        {"FileSize", catalog.fileSize},
        {"Version", catalog.version},
        {"Status", statusOf(catalog, version(call.ids.at(1)))}});
}

Answer catalogStatus(Call const& call)
{
    return Answer::json(QJsonObject{{"Status", statusOf(catalogFor(call), version(call.ids.at(1)))}});
}

} // namespace

std::vector<Route> catalogRoutes()
{
    return {
        {"getCatalogUpdateInfo", "GET", "/Installations/{}/catalog/{}", {}, catalogInfo},
        {"getCatalogUpdateState", "GET", "/Installations/{}/catalog/{}/status", {}, catalogStatus},
    };
}

void seedCatalogs(State& state)
{
    state.catalogs = {
        {"INST-1001", "4.2", "3.5", "CATALOG-42", 18'350'080},
        {"INST-2002", "4.1", "4.0", "CATALOG-41", 17'825'792},
    };
}

} // namespace simulator
