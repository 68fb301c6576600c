#include "platform/registry/defaults.h"

#include "platform/registry/registry.h"

#include <QStandardPaths>
#include <QStringList>

namespace registry {

namespace {

/// The first program of `candidates` that the system has, as a quoted path.
QString firstProgram(const ProgramLookup &lookup, const QStringList &candidates)
{
    for (const QString &name : candidates) {
        const QString path = lookup(name);
        if (!path.isEmpty())
            return QLatin1Char('"') + path + QLatin1Char('"');
    }
    return QString();
}

void setDefault(Registry &r, HKEY root, const QString &key, const QString &value)
{
    HKEY h = 0;
    if (r.RegCreateKeyEx(root, key, &h) != ERROR_SUCCESS)
        return;
    r.RegSetValueEx(h, QString(), REG_SZ, value.toUtf8());
    r.RegCloseKey(h);
}

void setValue(Registry &r, HKEY root, const QString &key, const QString &name, const QString &value)
{
    HKEY h = 0;
    if (r.RegCreateKeyEx(root, key, &h) != ERROR_SUCCESS)
        return;
    r.RegSetValueEx(h, name, REG_SZ, value.toUtf8());
    r.RegCloseKey(h);
}

} // namespace

ProgramLookup defaultProgramLookup()
{
    return [](const QString &name) { return QStandardPaths::findExecutable(name); };
}

void fillDesktopDefaults(Registry &r, const ProgramLookup &lookup)
{
    // Editors that keep running until their window closes (no single-instance
    // hand-off), plainest first.
    const QString plain =
        firstProgram(lookup, {QStringLiteral("mousepad"), QStringLiteral("featherpad"),
                              QStringLiteral("leafpad"), QStringLiteral("xed"), QStringLiteral("pluma"),
                              QStringLiteral("gedit"), QStringLiteral("kate"), QStringLiteral("xedit")});
    const QString rich =
        firstProgram(lookup, {QStringLiteral("abiword"), QStringLiteral("lowriter"), QStringLiteral("kwrite"),
                              QStringLiteral("gedit"), QStringLiteral("mousepad"), QStringLiteral("xedit")});
    const QString code =
        firstProgram(lookup, {QStringLiteral("codium"), QStringLiteral("code"), QStringLiteral("geany"),
                              QStringLiteral("kate"), QStringLiteral("gedit"), QStringLiteral("mousepad")});
    const auto command = [](const QString &program, const QString &extra = QString()) {
        return program.isEmpty() ? QString() : program + extra + QStringLiteral(" \"%1\"");
    };
    // A missing class stays missing, so that the program says the editor is
    // not available instead of starting nothing.
    if (!plain.isEmpty()) {
        setDefault(r, HKEY_CLASSES_ROOT, QStringLiteral(".txt"), QStringLiteral("txtfile"));
        setDefault(r, HKEY_CLASSES_ROOT, QStringLiteral("txtfile\\shell\\open\\command"), command(plain));
    }
    if (!rich.isEmpty())
        setDefault(r, HKEY_CLASSES_ROOT, QStringLiteral("Wordpad.Document.1\\shell\\open\\command"),
                   command(rich));
    if (!code.isEmpty()) {
        const QString wait = code.contains(QLatin1String("code")) || code.contains(QLatin1String("codium"))
                                 ? QStringLiteral(" --wait")
                                 : QString();
        setDefault(r, HKEY_CLASSES_ROOT, QStringLiteral("VisualBasic.Module\\shell\\open\\command"),
                   command(code, wait));
        setDefault(r, HKEY_CLASSES_ROOT, QStringLiteral("dspfile\\shell\\open\\command"),
                   command(code, wait));
    }
    const QString info =
        firstProgram(lookup, {QStringLiteral("hardinfo"), QStringLiteral("hardinfo2"),
                              QStringLiteral("kinfocenter"), QStringLiteral("gnome-system-monitor")});
    if (!info.isEmpty())
        setValue(r, HKEY_LOCAL_MACHINE, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                 QStringLiteral("PATH"), info.mid(1, info.size() - 2));
}

} // namespace registry
