#pragma once

#include "platform/com/comerror.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <rapidjson/prettywriter.h>

#include <memory>

namespace store {

/// A buffered output stream for RapidJSON's writer onto a device: it
/// holds at most one buffer of the document. Raises a ComError when the
/// device takes fewer bytes than it is given.
class DeviceWriteStream {
public:
    using Ch = char;
    explicit DeviceWriteStream(QIODevice &device) : m_device(device) {}
    DeviceWriteStream(const DeviceWriteStream &) = delete;
    DeviceWriteStream &operator=(const DeviceWriteStream &) = delete;

    void Put(char c)
    {
        if (m_size == kBuffer)
            Flush();
        m_buffer[m_size++] = c;
    }
    void Flush();

private:
    static constexpr std::size_t kBuffer = 1 << 16;
    QIODevice &m_device;
    std::unique_ptr<char[]> m_buffer = std::make_unique<char[]>(kBuffer);
    std::size_t m_size = 0;
};

using JsonWriter = rapidjson::PrettyWriter<DeviceWriteStream>;

/// Writes `text` as a JSON string.
void writeText(JsonWriter &writer, const QString &text);

} // namespace store
