#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

TessalyConnectionInterface::~TessalyConnectionInterface() = default;
