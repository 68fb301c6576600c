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

} // namespace scripts
