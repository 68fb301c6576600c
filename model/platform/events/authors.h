#pragma once

#include "platform/mapi/sessionstate.h"

#include <QString>

namespace events {

/// Whether the session's user may write bindings on `host`: everyone may on
/// a host that lists no authors, or that the store doesn't know.
bool isAuthor(const mapi::StatePtr &state, const QString &host);

/// Raises error 70 (permission denied) unless the session's user may write
/// bindings on `host`.
void checkAuthor(const mapi::StatePtr &state, const QString &host);

} // namespace events
