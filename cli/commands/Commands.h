#pragma once

#include <functional>

namespace cli
{

class Arguments;
class Context;

/// What a command does once the command line is read. It throws a Failure when it cannot.
using Action = std::function<void(Context& context)>;

/// Declares a command's arguments and returns what it does with them.
using Declaration = Action(Arguments& arguments);

/// A command: one file in this folder, its declaration here, and one row in `commands`.
struct Command
{
    char const* path; ///< the words that call it
    char const* summary;
    char const* example;
    Declaration* declare;
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

inline constexpr CommandGroup commandGroups[] = {
    {"requests", "Collaboration requests with partner labs and clinicians"},
    {"connections", "Connections with partners"},
    {"sessions", "Collaboration sessions"},
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
};
// clang-format on

} // namespace cli
