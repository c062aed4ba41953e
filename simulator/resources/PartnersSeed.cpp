#include "simulator/Lookup.h"
#include "simulator/State.h"

#include <QBuffer>
#include <QColor>
#include <QImage>

#include <array>

namespace simulator
{

namespace
{

enum class Logo : int
{
    Png,
    None,
    NoImage // bytes that are no image, as a partner might upload them by mistake
};

struct PlatformRow
{
    char const* installation;
    char const* id;
    char const* name;
    bool shouldCreateConnection;
    bool shouldAnonymize;
    Logo logo;
    QRgb color; // of the logo
};

constexpr std::array<PlatformRow, 5> platforms = {{
    {"INST-1001", "PLT-11", "Brightline Aligners", true, false, Logo::Png, 0xff1f6f8b},
    {"INST-1001", "PLT-12", "Guidewell Surgical Planning", true, true, Logo::Png, 0xffb5542d},
    {"INST-1001", "PLT-13", "Second Opinion Network", false, true, Logo::None, 0},
    {"INST-1001", "PLT-14", "Cerapoint Milling", true, false, Logo::NoImage, 0},
    {"INST-2002", "PLT-11", "Brightline Aligners", true, false, Logo::Png, 0xff1f6f8b},
}};

struct LogoRow
{
    char const* partnerId;
    QRgb color;
};

/// Of laboratories and clinics, which are partners without being platforms.
constexpr std::array<LogoRow, 4> collaboratorLogos = {{
    {"LAB-301", 0xff2e7d5b},
    {"CLIN-412", 0xff3d5a98},
    {"LAB-318", 0xffc28a1e},
    {"LAB-322", 0xff8a3f6e},
}};

struct AccountRow
{
    char const* installation;
    char const* id;
    char const* partnerId;
    char const* userName;
    char const* givenName;
    bool isConnected;
};

constexpr std::array<AccountRow, 4> accounts = {{
    {"INST-1001", "PAC-301", "PLT-11", "office@harbour-street.example", "Harbour Street", true},
    {"INST-1001", "PAC-302", "PLT-12", "planning@harbour-street.example", "", true},
    {"INST-1001", "PAC-303", "PLT-14", "lab@harbour-street.example", "Lab desk", false},
    {"INST-2002", "PAC-401", "PLT-11", "praxis@lindqvist.example", "Maja", true},
}};

struct SentCaseRow
{
    char const* caseId;
    char const* accountId;
    char const* status;
    bool allowsUpdates;
};

constexpr std::array<SentCaseRow, 6> sentCases = {{
    {"PORTAL-000001", "PAC-302", "Created", true},
    {"PORTAL-000002", "PAC-301", "Accepted", false},
    {"PORTAL-000005", "PAC-301", "Draft", true},
    {"PORTAL-000006", "PAC-302", "Finished", false},
    {"PORTAL-000007", "PAC-302", "Updating Status", true},
    {"PORTAL-000008", "PAC-303", "Rejected", false},
}};

/// A disc in the partner's color.
QByteArray png(QRgb color)
{
    constexpr int size = 64;
    constexpr int radius = 28;
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 0; y < size; ++y)
    {
        for (int x = 0; x < size; ++x)
        {
            auto const dx = x - size / 2;
            auto const dy = y - size / 2;
            if (dx * dx + dy * dy <= radius * radius)
            {
                image.setPixel(x, y, color);
            }
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray logoOf(PlatformRow const& row)
{
    switch (row.logo)
    {
    case Logo::Png:
        return png(row.color).toBase64();
    case Logo::NoImage:
        return QByteArray("no image at all").toBase64();
    case Logo::None:
        break;
    }
    return {};
}

} // namespace

void seedPartners(State& state)
{
    for (auto const& row : platforms)
    {
        state.partners.platforms.push_back(
            {.id = row.id,
             .installation = row.installation,
             .name = row.name,
             .shouldCreateConnection = row.shouldCreateConnection,
             .shouldAnonymize = row.shouldAnonymize,
             .logo = logoOf(row)});
    }
    for (auto const& row : collaboratorLogos)
    {
        state.partners.collaboratorLogos.insert(row.partnerId, png(row.color).toBase64());
    }
    for (auto const& row : accounts)
    {
        state.partners.accounts.add(
            {.id = row.id,
             .installation = row.installation,
             .partnerId = row.partnerId,
             .userName = row.userName,
             .givenName = row.givenName,
             .isConnected = row.isConnected});
    }
    for (auto const& row : sentCases)
    {
        auto& sent = sendToPartner(state, row.caseId, byId(state.partners.accounts, row.accountId));
        sent.status = row.status;
        sent.allowsUpdates = row.allowsUpdates;
    }
}

} // namespace simulator
