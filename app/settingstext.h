#pragma once

#include <QString>

namespace app {

/// The number a text begins with, "." as the decimal point; 0 when it begins
/// with none. Blanks before it are passed over.
double leadingNumber(const QString &text);

/// A font size as the settings keep it: at most four places after the point
/// and no trailing zeros ("10.8", "10").
QString formatFontSize(double size);

/// "yes" or "no".
inline QString yesNo(bool on)
{
    return on ? QStringLiteral("yes") : QStringLiteral("no");
}

/// Whether a yes-or-no setting says yes; anything but "yes" counts as no.
inline bool isYes(const QString &text)
{
    return text == QLatin1String("yes");
}

} // namespace app
