#include "platform/os/commandline.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace os {

bool isStartable(const QString &word)
{
    if (word.contains(QLatin1Char('/'))) {
        const QFileInfo file(word);
        return file.isFile() && file.isExecutable();
    }
    return !QStandardPaths::findExecutable(word).isEmpty();
}

QStringList splitCommandLine(const QString &commandLine, const ProgramCheck &startable)
{
    const QString line = commandLine.trimmed();
    QStringList words = QProcess::splitCommand(line);
    if (words.isEmpty() || line.startsWith(QLatin1Char('"')) || startable(words.constFirst()))
        return words;
    // Unquoted blanks up to the first quote may belong to the program's path.
    const qsizetype quote = line.indexOf(QLatin1Char('"'));
    const QString head = quote < 0 ? line : line.left(quote);
    for (qsizetype blank = head.indexOf(QLatin1Char(' ')); blank >= 0;
         blank = head.indexOf(QLatin1Char(' '), blank + 1)) {
        const QString program = line.left(blank).trimmed();
        if (program.contains(QLatin1Char(' ')) && startable(program))
            return QStringList{program} + QProcess::splitCommand(line.mid(blank));
    }
    if (!line.contains(QLatin1Char('"')) && startable(line))
        return QStringList{line};
    return words;
}

} // namespace os
