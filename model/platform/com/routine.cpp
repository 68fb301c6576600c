#include "platform/com/routine.h"

namespace com {

QString errorText(const ComError &e, ErrorForm form)
{
    const QString number = QString::number(e.number());
    if (form == ErrorForm::Description)
        return QStringLiteral("Error# ") + number + QLatin1Char('\r') + QStringLiteral("Description: ") +
               e.description();
    return QStringLiteral("Error#: ") + number + QLatin1Char('\r') + e.description();
}

} // namespace com
