#include "platform/mapi/field.h"

#include "platform/mapi/messagedata.h"
#include "platform/mapi/tags.h"

namespace mapi {

QVariant fieldValue(const QVariant &value, uint32_t tag)
{
    if (!value.isValid() || value.isNull())
        return QVariant();
    if (tag != 0 && propType(tag) == PT_LONG)
        return value.toInt();
    // Texts are bytes: the store keeps them as BLOBs, and a text given as a
    // QString is taken one character to one byte.
    if (value.typeId() == QMetaType::QString)
        return value.toString().toLatin1();
    return value;
}

Field::Field(std::shared_ptr<MessageData> message, QString key, uint32_t tag)
    : m_message(std::move(message)), m_key(std::move(key)), m_tag(tag)
{
}

QVariant Field::Value() const
{
    const auto it = m_message->pending.constFind(m_key);
    if (it != m_message->pending.constEnd())
        return it.value();
    QSqlQuery &q = m_message->state->run(
        QStringLiteral("SELECT value FROM fields WHERE message = ? AND tag = ?"), {m_message->row, m_key});
    const QVariant value = q.next() ? fieldValue(q.value(0), m_tag) : QVariant();
    q.finish();
    return value;
}

void Field::setValue(const QVariant &value)
{
    m_message->pending.insert(m_key, fieldValue(value, m_tag));
}

} // namespace mapi
