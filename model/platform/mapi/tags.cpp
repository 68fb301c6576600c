#include "platform/mapi/tags.h"

namespace mapi {

QString tagKey(uint32_t tag)
{
    return QStringLiteral("0x") + QStringLiteral("%1").arg(tag, 8, 16, QLatin1Char('0')).toUpper();
}

} // namespace mapi
