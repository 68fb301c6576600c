#include "platform/com/comerror.h"

#include <utility>

namespace com {

ComError::ComError(int32_t number, QString source, QString description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description))
{
    m_what = QStringLiteral("%1 (%2): %3").arg(m_number).arg(m_source, m_description).toStdString();
}

ComError fromCurrentException()
{
    try {
        throw;
    } catch (const ComError &e) {
        return e;
    } catch (const std::exception &e) {
        return ComError(err::CallFailed, QStringLiteral("Sorrelin"), QString::fromLocal8Bit(e.what()));
    } catch (...) {
        return ComError(err::CallFailed, QStringLiteral("Sorrelin"), QStringLiteral("Unknown error"));
    }
}

} // namespace com
