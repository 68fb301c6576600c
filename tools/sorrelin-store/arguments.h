#pragma once

#include <QStringList>

/// The words a command is given, checked: a misused command is told as
/// Misuse, with its usage.
namespace storetool {

struct Misuse {
    QString what;
};

inline int number(const QString &text, const QString &what)
{
    bool ok = false;
    const int n = text.toInt(&ok);
    if (!ok)
        throw Misuse{QStringLiteral("%1 must be a whole number, not \"%2\"").arg(what, text)};
    return n;
}

inline void need(const QStringList &args, int count)
{
    if (args.size() != count)
        throw Misuse{QStringLiteral("expected %1 argument(s), got %2").arg(count).arg(args.size())};
}

} // namespace storetool
