#include "scripts/editors.h"

#include "app/basregistry.h"

namespace scripts {

namespace {

/// What stands before "%1", the whole text when there is none.
QString cutAtFile(const QString &command)
{
    const qsizetype at = command.indexOf(QLatin1String("%1"));
    return at < 0 ? command : command.left(at);
}

QString classKey(const QString &editor)
{
    if (editor == QLatin1String("Notepad"))
        return QStringLiteral("txtFile\\shell\\open\\command");
    if (editor == QLatin1String("Wordpad"))
        return QStringLiteral("Wordpad.Document.1\\shell\\open\\command");
    if (editor == QLatin1String("Visual Basic"))
        return QStringLiteral("VisualBasic.Module\\shell\\open\\command");
    if (editor == QLatin1String("Visual InterDev"))
        return QStringLiteral("dspfile\\shell\\open\\command");
    return QString();
}

} // namespace

QString registryClassCommand(const QString &key)
{
    return basRegistry::QueryValue(registry::HKEY_CLASSES_ROOT, key, QString()).toString();
}

std::optional<QString> editorCommand(const QString &editor, const QString &otherPath, bool isNT,
                                     const ClassCommand &classCommand)
{
    if (editor == QLatin1String("Other")) {
        const QString path = otherPath.trimmed();
        if (path.isEmpty() || path == QLatin1String("n/a"))
            return QString();
        return path + QLatin1Char(' ');
    }
    if (editor == QLatin1String("Notepad") && isNT)
        return QStringLiteral("notepad ");
    const QString key = classKey(editor);
    if (key.isEmpty())
        return std::nullopt;
    QString command = cutAtFile(classCommand(key));
    if (editor != QLatin1String("Notepad") && command.endsWith(QLatin1Char('"')))
        command.chop(1);
    return command;
}

std::optional<QString> viewerCommand(const QString &viewer, bool isNT, const ClassCommand &classCommand)
{
    if (viewer != QLatin1String("Notepad") && viewer != QLatin1String("Wordpad"))
        return std::nullopt;
    return editorCommand(viewer, QString(), isNT, classCommand);
}

QString editorForSize(const QString &editor, qint64 size, bool isNT)
{
    return size > 64000 && editor == QLatin1String("Notepad") && !isNT ? QStringLiteral("Wordpad") : editor;
}

QString notAvailableText(const QString &editor)
{
    return editor +
           QStringLiteral(" not available.\rPlease use View Options to select another default editor.");
}

} // namespace scripts
