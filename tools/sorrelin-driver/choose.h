#pragma once

#include <QString>

#include <functional>

class QObject;

namespace driver {

/// A user's pick of an entry in a combo or drop-down list: the list opens,
/// the entry is clicked, the list closes and the combo's close-up handler
/// runs. Gives the act to run, or an empty function with `error` set when
/// the control is no combo, is disabled or has no such entry.
std::function<void()> chooseEntry(QObject *control, const QString &item, QString &error);

} // namespace driver
