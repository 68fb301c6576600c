#pragma once

#include <QStringList>
#include <QTextStream>

/// The store administrator's commands. Each takes the words after its name,
/// writes its output, and gives the exit code: 0 done, 1 failed, 2 misused.
namespace storetool {

struct Output {
    QTextStream &out;
    QTextStream &err;
};

int run(const QStringList &arguments, Output io);
QString usage();

} // namespace storetool
