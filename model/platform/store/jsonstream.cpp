#include "platform/store/jsonstream.h"

namespace store {

void DeviceWriteStream::Flush()
{
    if (m_size == 0)
        return;
    if (m_device.write(m_buffer.get(), static_cast<qint64>(m_size)) != static_cast<qint64>(m_size))
        throw com::ComError(
            com::err::FileAccess, QStringLiteral("sorrelin-store"),
            QStringLiteral("The document could not be written: %1").arg(m_device.errorString()));
    m_size = 0;
}

void writeText(JsonWriter &writer, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()), true);
}

} // namespace store
