#pragma once

#include <functional>

#include <QStringList>

namespace cli
{

class Arguments;
class Context;

/// What a command does once the command line is read. It throws a Failure when it cannot.
using Action = std::function<void(Context& context)>;

/// Declares a command's arguments and returns what it does with them.
using Declaration = Action(Arguments& arguments);

/// A command: one file in one of the rooms, its declaration here, and one row in `commands`.
struct Command
{
    char const* path = nullptr; ///< the words that call it
    char const* summary = nullptr;
    char const* example = nullptr;
    Declaration* declare = nullptr;
    bool isOffline = false; ///< needs no service, or makes its own way to it; its context has none
    /// Tells more than the help of the command about the words behind it; none for most.
    QString (*help)(QStringList const& words) = nullptr;
};

/// The first word of commands that consist of two.
struct CommandGroup
{
    char const* name;
    char const* summary;
};

Declaration connectionsList, connectionsSetStatus, connectionsStart;
Declaration requestsCreate, requestsFind, requestsList, requestsLockState, requestsNotes, requestsRefresh, requestsSeen,
    requestsShow, requestsStatus, requestsUnlock, requestsUrl;
Declaration sessionsCreate;
Declaration partnersAccounts, partnersList, partnersTest;
Declaration casesAdd, casesCreate, casesList, casesPortal, casesRefresh, casesShare;
Declaration account, documents, keys, software, statsUpload, studies, users;
Declaration call, describe, doctor, help, completion, man;
Declaration ordersCreate, ordersFinish, ordersPrice, ordersStatus, ordersUpload, ordersWatch;
Declaration addresses, articles, catalog, shellsDownload, shellsList;

/// How an operation is called.
QString callHelp(QStringList const& words);

inline constexpr CommandGroup commandGroups[] = {
    {"requests", "Collaboration requests with partner labs and clinicians"},
    {"connections", "Connections with partners"},
    {"sessions", "Collaboration sessions"},
    {"orders", "Production orders"},
    {"shells", "Temporary shells of orders"},
    {"cases", "Cases on the portal and with partners"},
    {"stats", "Usage statistics"},
};

// clang-format off
/// In the order of the help.
inline constexpr Command commands[] = {
    {"requests list", "Lists requests with their transaction ids", "kelo requests list --type Referral LabDesign --all", requestsList},
    {"requests refresh", "Shows the details of requests that are new or have changed, and which are gone", "kelo requests refresh --known ~/.kelo-known.json", requestsRefresh},
    {"requests show", "Shows everything about one request", "kelo requests show REQ-000017", requestsShow},
    {"requests create", "Opens a session and creates a request in it", "kelo requests create --connection CON-101 --type LabDesign --note \"Crown 21\" --due 2026-12-31 --file jaw.stl", requestsCreate},
    {"requests status", "Sets the status of a request", "kelo requests status REQ-000017 3", requestsStatus},
    {"requests notes", "Shows the notes of a request", "kelo requests notes REQ-000017", requestsNotes},
    {"requests find", "Finds a request by its key or its sales order number", "kelo requests find --key KC-0017", requestsFind},
    {"requests seen", "Marks a file of a request as seen", "kelo requests seen FILE-000021", requestsSeen},
    {"requests lock-state", "Tells whether the file of a template request is locked", "kelo requests lock-state REQ-000017", requestsLockState},
    {"requests unlock", "Unlocks the file of a template request", "kelo requests unlock REQ-000017", requestsUnlock},
    {"requests url", "Shows where a restoration request is viewed", "kelo requests url REQ-000017", requestsUrl},
    {"connections list", "Lists the installation's partners", "kelo connections list --json", connectionsList},
    {"connections start", "Starts a connection with the partner that gave out a token", "kelo connections start --token 7F3K --note \"Hello\"", connectionsStart},
    {"connections set-status", "Sets the status of a connection", "kelo connections set-status CON-101 Stopped", connectionsSetStatus},
    {"sessions create", "Opens a session, over a partner connection or without one", "kelo sessions create --connection CON-101", sessionsCreate},
    {"orders price", "Shows what the items of an order file cost", "kelo orders price order.json", ordersPrice},
    {"orders create", "Places the order of an order file: prices, creates, uploads, finishes; or goes on with it", "kelo orders create order.json --files scans", ordersCreate},
    {"orders upload", "Sends a file to an upload slot", "kelo orders upload UPLOAD-000004 tooth-36-2.stl", ordersUpload},
    {"orders finish", "Tells the service that all files of an order are up", "kelo orders finish ORD-000002", ordersFinish},
    {"orders status", "Shows the states of orders and of their items", "kelo orders status ORD-000001 ORD-000002", ordersStatus},
    {"orders watch", "Shows the states of orders whenever they change", "kelo orders watch ORD-000001 --until 4", ordersWatch},
    {"addresses", "Lists where orders may be shipped to", "kelo addresses", addresses},
    {"articles", "Lists the articles that may be ordered", "kelo articles --json", articles},
    {"shells list", "Lists the temporary shells of an order", "kelo shells list ORD-000001", shellsList},
    {"shells download", "Downloads the temporary shells of an order", "kelo shells download ORD-000001 --into shells", shellsDownload},
    {"catalog", "Shows the article catalogue on offer and whether it replaces the one in use", "kelo catalog --version 4.1", catalog},
    {"partners", "Lists the partner platforms", "kelo partners --logos ./logos", partnersList},
    {"partners accounts", "Lists the account's partner connections", "kelo partners accounts", partnersAccounts},
    {"partners test", "Tells whether a partner connection works", "kelo partners test PAC-301", partnersTest},
    {"cases list", "Lists a patient's cases that were sent to partners", "kelo cases list --patient PAT-000001", casesList},
    {"cases portal", "Lists a patient's cases on the portal", "kelo cases portal --patient PAT-000001", casesPortal},
    {"cases share", "Shares a portal case with a partner", "kelo cases share PORTAL-000001 --connection PAC-301", casesShare},
    {"cases create", "Creates a case on the portal and announces its files", "kelo cases create --patient PAT-000001 --file jaw.stl", casesCreate},
    {"cases add", "Announces further files to a case on the portal", "kelo cases add PORTAL-000001 --file jaw.stl", casesAdd},
    {"cases refresh", "Has the status of partner cases refreshed", "kelo cases refresh PORTAL-000001 PORTAL-000002", casesRefresh},
    {"account", "Shows the settings of the account and its installation", "kelo account --json", account},
    {"documents", "Lists the current documents and help files", "kelo documents --language de", documents},
    {"software", "Shows the latest release of the application", "kelo software", software},
    {"users", "Lists the installation's users", "kelo users", users},
    {"studies", "Lists the clinical studies", "kelo studies", studies},
    {"keys", "Shows the authentication keys of outside parties", "kelo keys --with-secrets", keys},
    {"stats upload", "Uploads a usage statistics file", "kelo stats upload usage.bin --id DailyUsage --stats-url https://stats.example", statsUpload},
    {"call", "Calls any operation of the library and shows its reply", "kelo call getUsersForLicense", call, false, callHelp},
    {"describe", "Prints the service as an OpenAPI document", "kelo describe > openapi.json", describe, true},
    {"doctor", "Finds out what keeps kelo from the service, step by step, and what to do about it", "kelo doctor --json", doctor, true},
    {"help", "Shows the help of kelo, of a command, or of an operation that is called", "kelo help call getPriceInfo", help, true},
    {"completion", "Prints what a shell needs to complete kelo's command lines", "kelo completion bash > ~/.local/share/bash-completion/completions/kelo", completion, true},
    {"man", "Prints a manual page, or writes all of them", "kelo man requests | man -l -", man, true},
};
// clang-format on

/// What a part of the table is called in the help.
struct CommandSection
{
    char const* title;
    char const* firstCommand;
};

inline constexpr CommandSection commandSections[] = {
    {"Requests", "requests list"},
    {"Orders", "orders price"},
    {"Partners and cases", "partners"},
    {"Account", "account"},
    {"Any operation, and kelo itself", "call"},
};

} // namespace cli
