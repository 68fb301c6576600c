#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace registry {

class Registry;

/// What the desktop offers, as the defaults below look it up.
struct DesktopLookup {
    /// A program's full path by its name; empty when the system has none.
    std::function<QString(const QString &name)> findProgram;
    /// The desktop file of the default application for a MIME type
    /// ("org.gnome.gedit.desktop"); empty when none is set.
    std::function<QString(const QString &mimeType)> defaultApplication;
};

/// The programs of the PATH and the desktop's default applications (as
/// xdg-mime tells them).
DesktopLookup defaultDesktopLookup();

/// An editor the defaults may name, with the arguments that make it stay
/// until the user has closed the file (instead of handing the file to a
/// window of the editor that is already open).
struct Editor {
    QString program;
    QString waitArguments;
};

/// How the file's place holder stands in a command: "%1" bare, as in the
/// plain text class, whose readers cut the command there; or "\"%1\"", as
/// in the other classes, whose readers also drop the quote before it.
enum class FileArgument { Bare, Quoted };

/// The open command of the first of `candidates` that the system has
/// (`"/usr/bin/kate" --block "%1"`), the program `preferred` first when it
/// is one of them; empty when the system has none of them.
QString editorCommand(const DesktopLookup &lookup, const QList<Editor> &candidates, FileArgument file,
                      const QString &preferred = QString());

/// The program of a desktop file: "org.gnome.gedit.desktop" gives "gedit".
QString programOfDesktopFile(const QString &desktopFile);

/// Fills a new registry with the open commands of the editor classes (under
/// HKEY_CLASSES_ROOT) and the system information program (under
/// HKEY_LOCAL_MACHINE) from the desktop's own programs, its default text
/// editor first when that is a known one: each editor command
/// takes the file as "%1" and returns only when the user has closed it. A
/// class whose programs the system lacks stays out, so that the program
/// tells the user that editor isn't available.
void fillDesktopDefaults(Registry &registry, const DesktopLookup &lookup);

} // namespace registry
