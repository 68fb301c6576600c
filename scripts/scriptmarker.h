#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace scripts {

/// What every script of an agent carries; a text holds a valid script when,
/// both upper-cased, the text contains it anywhere.
inline constexpr char kScriptMarker[] = "<SCRIPT RunAt=Server Language=";

bool hasScriptMarker(const QString &text);

/// A script is 8-bit text: one byte is one character of the pane, and back.
QString scriptToPane(const QByteArray &script);
QByteArray paneToScript(const QString &text);

/// The characters of a pane's text that a script can't hold (those beyond
/// 8 bits), each once, in the order the text first has them; empty when the
/// whole text can be kept.
QStringList unkeptCharacters(const QString &text);

/// `text` without any of `characters` (each one whole character).
QString withoutCharacters(const QString &text, const QStringList &characters);

/// The status bar's word on characters left out of the pane.
QString leftOutText(const QStringList &characters);

/// A file an editor gave back: UTF-8 when it is valid UTF-8 beyond plain
/// ASCII (what editors write today), otherwise 8-bit text, as a script.
QString fileToPane(const QByteArray &file);

} // namespace scripts
