#pragma once

#include <QString>
#include <QtGlobal>

namespace events {

/// Where an event source's bindings live: the folder's row, its store's row
/// and the host that runs them.
struct SourceRef {
    qint64 folder = 0;
    qint64 storeRow = 0;
    QString host;
};

} // namespace events
