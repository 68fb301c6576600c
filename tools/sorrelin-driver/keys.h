#pragma once

#include <QString>
#include <Qt>

namespace driver {

struct KeyStroke {
    int key = 0;
    Qt::KeyboardModifiers modifiers;
    /// What a key beyond ASCII types ("€" on a keyboard that has it).
    QString text;
};

/// A key as scripts name it: "F2", "Del", "Ctrl+S", "Num+", "Enter", "A",
/// or one character beyond ASCII, "€".
KeyStroke parseKey(const QString &name);

} // namespace driver
