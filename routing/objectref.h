#pragma once

#include "platform/com/comerror.h"

#include <QString>

#include <optional>

namespace routing {

/// An object that a step of a routine going on after errors was to set:
/// raises 424 when that step failed, so that every later step on it fails
/// too, as a call on an unset object does.
template <class T> T &objectRef(std::optional<T> &object)
{
    if (!object)
        throw com::ComError(com::err::ObjectRequired, QStringLiteral("Sorrelin"),
                            QStringLiteral("Object required"));
    return *object;
}

} // namespace routing
