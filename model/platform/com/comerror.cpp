#include "platform/com/comerror.h"

#include <utility>

namespace com {

ComError::ComError(int32_t number, QString source, QString description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description))
{
    m_what = QStringLiteral("%1 (%2): %3").arg(m_number).arg(m_source, m_description).toStdString();
}

} // namespace com
