#pragma once

#include "platform/com/comerror.h"

#include <QString>

namespace routing {

/// The source of every error the routing objects raise.
inline const QString kRoutingSource = QStringLiteral("Exchange Routing Objects");

inline com::ComError routingError(int32_t number, const QString &description)
{
    return com::ComError(number, kRoutingSource, description);
}

} // namespace routing
