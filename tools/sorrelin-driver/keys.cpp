#include "tools/sorrelin-driver/keys.h"

#include <QHash>
#include <QStringList>

namespace driver {

KeyStroke parseKey(const QString &name)
{
    static const QHash<QString, int> named = {
        {QStringLiteral("del"), Qt::Key_Delete},
        {QStringLiteral("delete"), Qt::Key_Delete},
        {QStringLiteral("enter"), Qt::Key_Return},
        {QStringLiteral("return"), Qt::Key_Return},
        {QStringLiteral("esc"), Qt::Key_Escape},
        {QStringLiteral("escape"), Qt::Key_Escape},
        {QStringLiteral("tab"), Qt::Key_Tab},
        {QStringLiteral("space"), Qt::Key_Space},
        {QStringLiteral("up"), Qt::Key_Up},
        {QStringLiteral("down"), Qt::Key_Down},
        {QStringLiteral("left"), Qt::Key_Left},
        {QStringLiteral("right"), Qt::Key_Right},
        {QStringLiteral("home"), Qt::Key_Home},
        {QStringLiteral("end"), Qt::Key_End},
        {QStringLiteral("backspace"), Qt::Key_Backspace},
    };
    KeyStroke k;
    QStringList parts = name.split(QLatin1Char('+'));
    // "Num+" names the keypad's plus.
    if (name.endsWith(QLatin1String("++")) || name.compare(QLatin1String("Num+"), Qt::CaseInsensitive) == 0) {
        parts = name.left(name.size() - 1).split(QLatin1Char('+'), Qt::SkipEmptyParts);
        parts.append(QStringLiteral("+"));
    }
    const QString last = parts.takeLast();
    for (const QString &m : parts) {
        const QString l = m.toLower();
        if (l == QLatin1String("ctrl"))
            k.modifiers |= Qt::ControlModifier;
        else if (l == QLatin1String("shift"))
            k.modifiers |= Qt::ShiftModifier;
        else if (l == QLatin1String("alt"))
            k.modifiers |= Qt::AltModifier;
        else if (l == QLatin1String("num"))
            k.modifiers |= Qt::KeypadModifier;
        else
            return {};
    }
    const QString l = last.toLower();
    if (last == QLatin1String("+"))
        k.key = Qt::Key_Plus;
    else if (l.startsWith(QLatin1String("num")) && l.size() == 4) {
        k.modifiers |= Qt::KeypadModifier;
        const QChar c = l.at(3);
        k.key = c == QLatin1Char('-')   ? Qt::Key_Minus
                : c == QLatin1Char('*') ? Qt::Key_Asterisk
                : c.isDigit()           ? Qt::Key_0 + c.digitValue()
                                        : 0;
    } else if (l.size() >= 2 && l.at(0) == QLatin1Char('f') && l.mid(1).toInt() >= 1 &&
               l.mid(1).toInt() <= 24)
        k.key = Qt::Key_F1 + l.mid(1).toInt() - 1;
    else if (named.contains(l))
        k.key = named.value(l);
    else if (last.size() == 1 && last.at(0).unicode() < 0x80)
        k.key = last.toUpper().at(0).unicode();
    else if (const QList<uint> c = last.toUcs4(); c.size() == 1) {
        k.key = static_cast<int>(QChar::toUpper(c.first()));
        k.text = last;
    }
    return k;
}

} // namespace driver
