#include "platform/registry/defaults.h"

#include "platform/registry/registry.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

namespace registry {

namespace {

// Editors whose process lasts as long as the user edits the file. Those
// that hand a file over to an open window of theirs and return at once get
// the arguments that keep them waiting; one without such arguments (xed,
// pluma) isn't offered, since the edit made in it would be lost.
const QList<Editor> &plainEditors()
{
    static const QList<Editor> editors{
        {QStringLiteral("mousepad"), QStringLiteral("--disable-server")},
        {QStringLiteral("featherpad"), QStringLiteral("--standalone")},
        {QStringLiteral("leafpad"), QString()},
        {QStringLiteral("kwrite"), QString()},
        {QStringLiteral("gedit"), QStringLiteral("--wait")},
        {QStringLiteral("kate"), QStringLiteral("--block")},
        {QStringLiteral("geany"), QStringLiteral("--new-instance")},
        {QStringLiteral("xedit"), QString()},
    };
    return editors;
}

// For large files: the editors that handle them best first.
const QList<Editor> &largeFileEditors()
{
    static const QList<Editor> editors{
        {QStringLiteral("kate"), QStringLiteral("--block")},
        {QStringLiteral("kwrite"), QString()},
        {QStringLiteral("gedit"), QStringLiteral("--wait")},
        {QStringLiteral("geany"), QStringLiteral("--new-instance")},
        {QStringLiteral("mousepad"), QStringLiteral("--disable-server")},
        {QStringLiteral("featherpad"), QStringLiteral("--standalone")},
        {QStringLiteral("leafpad"), QString()},
        {QStringLiteral("xedit"), QString()},
    };
    return editors;
}

// For the development environment classes: programmers' editors first.
const QList<Editor> &codeEditors()
{
    static const QList<Editor> editors{
        {QStringLiteral("codium"), QStringLiteral("--wait")},
        {QStringLiteral("code"), QStringLiteral("--wait")},
        {QStringLiteral("geany"), QStringLiteral("--new-instance")},
        {QStringLiteral("kate"), QStringLiteral("--block")},
        {QStringLiteral("gedit"), QStringLiteral("--wait")},
        {QStringLiteral("kwrite"), QString()},
        {QStringLiteral("mousepad"), QStringLiteral("--disable-server")},
        {QStringLiteral("featherpad"), QStringLiteral("--standalone")},
        {QStringLiteral("leafpad"), QString()},
        {QStringLiteral("xedit"), QString()},
    };
    return editors;
}

const QStringList &systemInformationPrograms()
{
    static const QStringList programs{QStringLiteral("hardinfo"), QStringLiteral("hardinfo2"),
                                      QStringLiteral("kinfocenter"), QStringLiteral("gnome-system-monitor")};
    return programs;
}

void setValue(Registry &r, HKEY root, const QString &key, const QString &name, const QString &value)
{
    if (value.isEmpty())
        return;
    HKEY h = 0;
    if (r.RegCreateKeyEx(root, key, &h) != ERROR_SUCCESS)
        return;
    r.RegSetValueEx(h, name, REG_SZ, value.toUtf8());
    r.RegCloseKey(h);
}

} // namespace

DesktopLookup defaultDesktopLookup()
{
    DesktopLookup lookup;
    lookup.findProgram = [](const QString &name) { return QStandardPaths::findExecutable(name); };
    lookup.defaultApplication = [](const QString &mimeType) {
        // A process of its own needs the event machinery of an application.
        if (!QCoreApplication::instance() ||
            QStandardPaths::findExecutable(QStringLiteral("xdg-mime")).isEmpty())
            return QString();
        QProcess xdgMime;
        xdgMime.start(QStringLiteral("xdg-mime"),
                      {QStringLiteral("query"), QStringLiteral("default"), mimeType});
        if (!xdgMime.waitForFinished(5000) || xdgMime.exitStatus() != QProcess::NormalExit ||
            xdgMime.exitCode() != 0)
            return QString();
        return QString::fromLocal8Bit(xdgMime.readAllStandardOutput()).trimmed();
    };
    return lookup;
}

QString programOfDesktopFile(const QString &desktopFile)
{
    QString id = desktopFile.trimmed();
    if (id.endsWith(QLatin1String(".desktop")))
        id.chop(8);
    return id.section(QLatin1Char('.'), -1).toLower();
}

QString editorCommand(const DesktopLookup &lookup, const QList<Editor> &candidates, FileArgument file,
                      const QString &preferred)
{
    QList<Editor> order = candidates;
    for (qsizetype i = 0; !preferred.isEmpty() && i < order.size(); ++i) {
        if (order.at(i).program == preferred) {
            order.move(i, 0);
            break;
        }
    }
    for (const Editor &editor : order) {
        const QString path = lookup.findProgram(editor.program);
        if (path.isEmpty())
            continue;
        QString command = QLatin1Char('"') + path + QLatin1Char('"');
        if (!editor.waitArguments.isEmpty())
            command += QLatin1Char(' ') + editor.waitArguments;
        return command + (file == FileArgument::Bare ? QStringLiteral(" %1") : QStringLiteral(" \"%1\""));
    }
    return QString();
}

void fillDesktopDefaults(Registry &r, const DesktopLookup &lookup)
{
    const QString desktopEditor =
        lookup.defaultApplication
            ? programOfDesktopFile(lookup.defaultApplication(QStringLiteral("text/plain")))
            : QString();
    const QString plain = editorCommand(lookup, plainEditors(), FileArgument::Bare, desktopEditor);
    if (!plain.isEmpty()) {
        setValue(r, HKEY_CLASSES_ROOT, QStringLiteral(".txt"), QString(), QStringLiteral("txtfile"));
        setValue(r, HKEY_CLASSES_ROOT, QStringLiteral("txtfile\\shell\\open\\command"), QString(), plain);
        setValue(r, HKEY_CLASSES_ROOT, QStringLiteral(".vbs"), QString(), QStringLiteral("VBSFile"));
        // Scripts are edited, never run, from here: VBSFile gets no open command.
        setValue(r, HKEY_CLASSES_ROOT, QStringLiteral("VBSFile\\shell\\edit\\command"), QString(),
                 editorCommand(lookup, plainEditors(), FileArgument::Quoted, desktopEditor));
    }
    setValue(r, HKEY_CLASSES_ROOT, QStringLiteral("Wordpad.Document.1\\shell\\open\\command"), QString(),
             editorCommand(lookup, largeFileEditors(), FileArgument::Quoted, desktopEditor));
    const QString code = editorCommand(lookup, codeEditors(), FileArgument::Quoted);
    setValue(r, HKEY_CLASSES_ROOT, QStringLiteral("VisualBasic.Module\\shell\\open\\command"), QString(),
             code);
    setValue(r, HKEY_CLASSES_ROOT, QStringLiteral("dspfile\\shell\\open\\command"), QString(), code);
    for (const QString &program : systemInformationPrograms()) {
        const QString path = lookup.findProgram(program);
        if (!path.isEmpty()) {
            setValue(r, HKEY_LOCAL_MACHINE, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                     QStringLiteral("PATH"), path);
            break;
        }
    }
}

} // namespace registry
