#pragma once

// The state a binding handle shares with its schedule; private to the
// event configuration objects.

#include "platform/events/sourceref.h"
#include "platform/mapi/sessionstate.h"

#include <QString>
#include <QTime>

#include <cstdint>

namespace events {

/// A binding's timer settings as the store keeps them.
struct ScheduleData {
    int16_t type = 0;
    int16_t interval = 0;
    int16_t days = 0;
    QTime start{0, 0};
    QTime end{0, 0};
    QTime at{0, 0};
};

struct BindingData {
    mapi::StatePtr state;
    SourceRef source;
    qint64 row = 0; ///< 0 until the first save
    QString entryId, stateId;
    QString name;
    bool active = false;
    int16_t mask = 0;
    QString handler;
    ScheduleData schedule;
};

} // namespace events
