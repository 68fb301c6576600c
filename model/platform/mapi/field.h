#pragma once

#include <QString>
#include <QVariant>

#include <cstdint>
#include <memory>

namespace mapi {

struct MessageData;

/// One field of a message, by tag or by name. Its value is read from the
/// store; a value written stays with the message until its `Update`.
///
/// Values: 8-bit texts (tags of type 0x001E, and named fields) are
/// QByteArray, byte for byte, never re-encoded; 0x0003 tags are int. A
/// QString written to a text field is taken as Latin-1. A field the message
/// doesn't have reads as an invalid QVariant; writing an invalid QVariant
/// removes the field at the next `Update`.
class Field {
public:
    Field(std::shared_ptr<MessageData> message, QString key, uint32_t tag);

    QVariant Value() const;
    void setValue(const QVariant &value);

    /// The field's key in the store: "0x7102001E", or the name.
    const QString &key() const { return m_key; }

private:
    std::shared_ptr<MessageData> m_message;
    QString m_key;
    uint32_t m_tag; ///< 0 for a named field
};

/// A stored or written value as the field gives it to the caller.
QVariant fieldValue(const QVariant &value, uint32_t tag);

} // namespace mapi
