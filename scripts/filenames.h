#pragma once

#include <QString>

namespace scripts {

/// Overwrites, from the first character to the last, each character of
/// `text` that is in `chars` with one blank; gives the text.
QString &ReplaceCharsWithBlank(QString &text, const QString &chars);

/// Makes a file name of an agent's name: each of : / \ | > < becomes one
/// blank; the length stays, and no other character is touched.
QString &CleanFileName(QString &name);

} // namespace scripts
