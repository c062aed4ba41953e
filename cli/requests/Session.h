#pragma once

#include <QString>

namespace cli
{

class Context;

/// The connection id as given, checked; a null text, for no partner, stays one.
QString checkedConnection(QString const& connectionId);

/// Opens a session over the partner connection, or one of the installation alone, and returns its id.
QString openSession(Context const& context, QString const& connectionId);

} // namespace cli
