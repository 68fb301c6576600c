#include "catalogue/agentexport.h"

#include "catalogue/agentwalk.h"
#include "platform/com/comerror.h"

#include <QFile>

namespace catalogue {

void exportAgentList(frmMain &main, const QString &fileName, const QString &status)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw com::ComError(com::err::PathNotFound, QStringLiteral("Sorrelin"),
                            QStringLiteral("Path not found: %1 (%2)").arg(fileName, file.errorString()));
    const auto write = [&file](const QString &line) {
        // UTF-8, which is what the spreadsheet programs read: names keep every letter.
        const QByteArray bytes = line.toUtf8();
        if (file.write(bytes) != bytes.size())
            throw com::ComError(com::err::FileAccess, QStringLiteral("Sorrelin"),
                                QStringLiteral("Path/File access error: %1").arg(file.errorString()));
    };
    write(exportHeader());
    walkAgents(main, status, [&](const AgentFacts &agent) { write(exportLine(agent)); });
}

} // namespace catalogue
