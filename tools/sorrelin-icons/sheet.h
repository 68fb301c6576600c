#pragma once

#include <QString>

/// Draws every picture of the program at each size, and magnified, on one
/// PNG sheet to look at; false when the file can't be written.
bool writeSheet(const QString &target);
