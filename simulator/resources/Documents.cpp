#include "simulator/resources/Documents.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

namespace simulator
{

namespace
{

/// Throws a Refusal when the installation has no such document.
Document const& documentOf(Call const& call, QString const& kind, bool isHelp)
{
    auto const installation = knownInstallation(call.state, call.id());
    for (auto const& row : call.state.documents.documents)
    {
        if (row.installation == installation && row.kind == kind && isHelp != row.language.isEmpty())
        {
            return row;
        }
    }
    throw Refusal(Reason::UnknownId, kind);
}

QJsonObject fileInfo(Document const& row)
{
    return {{"FileId", row.fileId}, {"FileName", row.fileName}, {"FileSize", row.fileSize}};
}

Handler statusOf(char const* kind)
{
    return [kind](Call const& call) {
        return Answer::json(QJsonObject{{"FileId", documentOf(call, kind, false).fileId}});
    };
}

Handler fileInfoOf(char const* kind)
{
    return [kind](Call const& call) { return Answer::json(fileInfo(documentOf(call, kind, false))); };
}

Answer helpStatus(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    QJsonArray list;
    for (auto const& row : call.state.documents.documents)
    {
        if (row.installation == installation && !row.language.isEmpty())
        {
            list.append(QJsonObject{{"LanguageCode", row.kind}, {"DisplayName", row.language}, {"Id", row.fileId}});
        }
    }
    return Answer::json(list);
}

Answer helpFileInfo(Call const& call)
{
    return Answer::json(fileInfo(documentOf(call, call.ids.value(1), true)));
}

Answer softwareUpdate(Call const& call)
{
    auto const& row = ofInstallation(call.state.documents.releases, knownInstallation(call.state, call.id()));
    auto const page = QStringLiteral("https://software.kelo.example/%1/").arg(row.version);
    return Answer::json(QJsonObject{
        {"Version", row.version},
        {"ForcedUpdate", row.isForced},
        {"ReleaseImageUrl", page + "image.png"},
        {"InformationUrl", page + "notes.html"},
        {"DirectDownloadUrl", page + "setup.exe"}});
}

} // namespace

// clang-format off
std::vector<Route> documentRoutes()
{
    return {
        {"getSoftwareUpdateInfo", "GET", "/Installations/{}/softwareupdate?api-version=1.0", {}, softwareUpdate},
        {"getIfuFileReference", "GET", "/Installations/{}/ifu/status", {}, statusOf("ifu")},
        {"getIfuFileInfo", "GET", "/Installations/{}/ifu", {}, fileInfoOf("ifu")},
        {"getUITranslationFileReference", "GET", "/Installations/{}/uitranslation/status", {}, statusOf("uitranslation")},
        {"getUITranslationFileInfo", "GET", "/Installations/{}/uitranslation", {}, fileInfoOf("uitranslation")},
        {"getAboutFileReference", "GET", "/Installations/{}/about/status", {}, statusOf("about")},
        {"getAboutFileInfo", "GET", "/Installations/{}/about", {}, fileInfoOf("about")},
        {"getHelpFilesInfo", "GET", "/Installations/{}/help/status", {}, helpStatus},
        {"getHelpFileInfo", "GET", "/Installations/{}/help/{}", {}, helpFileInfo},
    };
}
// clang-format on

void seedDocuments(State& state)
{
    state.documents.documents = {
        {"INST-1001", "ifu", "IFU-0412", "instructions-for-use-4.2.pdf", 8'412'330},
        {"INST-1001", "uitranslation", "UIT-0388", "ui-translation-4.2.zip", 1'730'118},
        {"INST-1001", "about", "ABT-0107", "about-4.2.pdf", 214'502},
        {"INST-1001", "en", "HLP-0920", "help-en-4.2.zip", 41'220'874, "English"},
        {"INST-1001", "de", "HLP-0921", "help-de-4.2.zip", 41'865'010, "Deutsch"},
        {"INST-1001", "fr", "HLP-0922", "help-fr-4.2.zip", 41'733'920, "Français"},
        {"INST-1001", "pt-BR", "HLP-0925", "help-pt-BR-4.1.zip", 40'118'233, "Português (Brasil)"},
        {"INST-1001", "ja", "HLP-0927", "help-ja-4.2.zip", 43'002'116, "日本語"},
        {"INST-2002", "ifu", "IFU-0398", "instructions-for-use-4.1.pdf", 8'120'774},
        {"INST-2002", "uitranslation", "UIT-0371", "ui-translation-4.1.zip", 1'690'341},
        {"INST-2002", "about", "ABT-0102", "about-4.1.pdf", 213'960},
    };
    state.documents.releases = {
        {"INST-1001", "4.2.1", false},
        {"INST-2002", "4.2.1.118", true},
    };
}

} // namespace simulator
