#pragma once

#include <QString>
#include <Qt>

namespace driver {

struct KeyStroke {
    int key = 0;
    Qt::KeyboardModifiers modifiers;
};

/// A key as scripts name it: "F2", "Del", "Ctrl+S", "Num+", "Enter", "A".
KeyStroke parseKey(const QString &name);

} // namespace driver
