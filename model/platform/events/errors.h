#pragma once

#include "platform/com/comerror.h"

#include <QString>

namespace events {

/// The source of every error the event configuration objects raise.
inline const QString kEventsSource = QStringLiteral("MSExchange.Events");

inline com::ComError eventsError(int32_t number, const QString &description)
{
    return com::ComError(number, kEventsSource, description);
}

} // namespace events
