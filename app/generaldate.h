#pragma once

#include <QDateTime>
#include <QString>

/// A time in the named format "General Date": the user's short date, a
/// blank, and the user's long time without its time zone.
QString generalDate(const QDateTime &at);
