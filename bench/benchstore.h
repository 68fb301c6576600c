#pragma once

#include <QString>
#include <QTemporaryDir>

namespace store {
class Database;
}

namespace bench {

/// The store a benchmark runs on: the file named on its command line, or a
/// generated one in `dir`: 4 stores, `--folders N` folders (20,000 unless
/// given), `--agents M` agents (5,000), a tenth as many other hidden
/// messages as folders and as many ordinary messages as folders.
QString benchStore(int argc, char *argv[], const QTemporaryDir &dir);

/// Points the user's folders into `dir` and picks the offscreen platform,
/// unless one is set; before the application object is made.
void prepareEnvironment(const QTemporaryDir &dir);

/// The peak resident memory of this process, in megabytes.
long peakMemoryMB();

/// The time of one plain SQL pass over the rows a refresh of the folder
/// tree reads: every folder with the user's rights, the hidden messages'
/// classes, and the binding messages with their handler field, each value
/// read and nothing built from it. In milliseconds, the median of 5.
double sqlPassMs(const store::Database &db, const QString &user);

} // namespace bench
