#pragma once

#include <QString>
#include <QTemporaryDir>

namespace bench {

/// The store a benchmark runs on: the file named on its command line, or a
/// generated one of 4 stores, 20,000 folders, 5,000 agents, 2,000 other
/// hidden and 20,000 ordinary messages in `dir`.
QString benchStore(int argc, char *argv[], const QTemporaryDir &dir);

/// Points the user's folders into `dir` and picks the offscreen platform,
/// unless one is set; before the application object is made.
void prepareEnvironment(const QTemporaryDir &dir);

/// The peak resident memory of this process, in megabytes.
long peakMemoryMB();

} // namespace bench
