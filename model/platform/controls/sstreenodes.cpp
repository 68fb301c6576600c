#include "platform/controls/sstreenodes.h"

#include <QHashFunctions>

#include <algorithm>
#include <utility>

namespace controls {

namespace {

/// Appends `text` in UTF-8; keys are mostly ASCII, which is copied as is.
void appendUtf8(QByteArray &out, QStringView text)
{
    const qsizetype at = out.size();
    out.resize(at + text.size());
    char *to = out.data() + at;
    for (const QChar c : text) {
        if (c.unicode() >= 0x80) {
            out.truncate(at);
            out.append(text.toUtf8());
            return;
        }
        *to++ = char(c.unicode());
    }
}

} // namespace

void SSTreeNodes::reserve(qsizetype nodes, qsizetype keyBytes, qsizetype textUnits)
{
    m_parent.reserve(nodes);
    m_tag.reserve(nodes);
    m_image.reserve(nodes);
    m_expanded.reserve(nodes);
    m_keyEnd.reserve(nodes);
    m_textEnd.reserve(nodes);
    m_keys.reserve(std::max(m_keys.size(), keyBytes));
    m_texts.reserve(std::max(m_texts.size(), textUnits));
    qsizetype slots = 16;
    while (slots < 2 * nodes)
        slots *= 2;
    if (slots > m_slots.size()) {
        const QVector<Slot> old = std::exchange(m_slots, QVector<Slot>(slots));
        for (const Slot &slot : old)
            if (slot.node != kNone)
                place(slot.node, slot.hash);
    }
}

void SSTreeNodes::place(qint32 node, quint32 hash)
{
    const size_t mask = size_t(m_slots.size()) - 1;
    for (size_t s = hash & mask;; s = (s + 1) & mask)
        if (m_slots.at(s).node == kNone) {
            m_slots[s] = Slot{node, hash};
            return;
        }
}

void SSTreeNodes::grow()
{
    reserve(std::max<qsizetype>(16, size() * 2));
}

qint32 SSTreeNodes::tag(const QString &tag)
{
    // A tree has a tag for each store: few, and the last is the likeliest.
    for (qsizetype i = m_tags.size() - 1; i >= 0; --i)
        if (m_tags.at(i) == tag)
            return qint32(i);
    m_tags.append(tag);
    return qint32(m_tags.size() - 1);
}

QByteArrayView SSTreeNodes::keyBytes(qint32 node) const
{
    const quint32 begin = node == 0 ? 0 : m_keyEnd.at(node - 1);
    return QByteArrayView(m_keys.constData() + begin, m_keyEnd.at(node) - begin);
}

QString SSTreeNodes::key(qint32 node) const
{
    return QString::fromUtf8(keyBytes(node));
}

QStringView SSTreeNodes::text(qint32 node) const
{
    const quint32 begin = node == 0 ? 0 : m_textEnd.at(node - 1);
    return QStringView(m_texts.constData() + begin, m_textEnd.at(node) - begin);
}

qint32 SSTreeNodes::findBytes(QByteArrayView key, quint32 hash) const
{
    if (m_slots.isEmpty())
        return kNone;
    const size_t mask = size_t(m_slots.size()) - 1;
    for (size_t s = hash & mask;; s = (s + 1) & mask) {
        const Slot &slot = m_slots.at(s);
        if (slot.node == kNone || (slot.hash == hash && keyBytes(slot.node) == key))
            return slot.node;
    }
}

qint32 SSTreeNodes::find(QStringView key) const
{
    const QByteArray bytes = key.toUtf8();
    return findBytes(bytes, quint32(qHash(QByteArrayView(bytes))));
}

qint32 SSTreeNodes::add(qint32 parent, QStringView key, QStringView text, qint32 tag, int image,
                        bool expanded)
{
    const qsizetype at = m_keys.size();
    appendUtf8(m_keys, key);
    return addAppendedKey(at, parent, text, tag, image, expanded);
}

qint32 SSTreeNodes::addUtf8(qint32 parent, QByteArrayView key, QStringView text, qint32 tag, int image,
                            bool expanded)
{
    const qsizetype at = m_keys.size();
    m_keys.append(key);
    return addAppendedKey(at, parent, text, tag, image, expanded);
}

qint32 SSTreeNodes::addAppendedKey(qsizetype at, qint32 parent, QStringView text, qint32 tag, int image,
                                   bool expanded)
{
    // The key is in place first, and goes out again when it stands already.
    if (parent != kNone && (parent < 0 || parent >= size())) {
        m_keys.truncate(at);
        return kNone;
    }
    if (2 * (size() + 1) > m_slots.size())
        grow();
    const QByteArrayView bytes(m_keys.constData() + at, m_keys.size() - at);
    const auto hash = quint32(qHash(bytes));
    if (findBytes(bytes, hash) != kNone) {
        m_keys.truncate(at);
        return kNone;
    }
    const auto node = qint32(size());
    m_parent.append(parent);
    m_tag.append(tag);
    m_image.append(qint8(image));
    m_expanded.append(expanded);
    m_keyEnd.append(quint32(m_keys.size()));
    m_texts.append(text);
    m_textEnd.append(quint32(m_texts.size()));
    place(node, hash);
    return node;
}

void SSTreeNodes::sortChildren()
{
    // Each node's children side by side; the top nodes' list comes last.
    const qsizetype n = size();
    m_childStart.fill(0, n + 2);
    for (qint32 i = 0; i < n; ++i)
        ++m_childStart[(m_parent.at(i) == kNone ? n : m_parent.at(i)) + 1];
    for (qsizetype i = 1; i < m_childStart.size(); ++i)
        m_childStart[i] += m_childStart.at(i - 1);
    m_children.resize(n);
    QVector<qint32> next(m_childStart.begin(), m_childStart.end() - 1);
    for (qint32 i = 0; i < n; ++i)
        m_children[next[m_parent.at(i) == kNone ? n : m_parent.at(i)]++] = i;
    // Equal texts keep the order of adding, which the indexes are.
    for (qsizetype p = 0; p <= n; ++p)
        if (m_childStart.at(p + 1) - m_childStart.at(p) > 1)
            std::sort(m_children.begin() + m_childStart.at(p), m_children.begin() + m_childStart.at(p + 1),
                      [this](qint32 a, qint32 b) {
                          const int order = text(a).compare(text(b), Qt::CaseSensitive);
                          return order < 0 || (order == 0 && a < b);
                      });
}

std::span<const qint32> SSTreeNodes::children(qint32 node) const
{
    if (m_childStart.isEmpty())
        return {};
    const qsizetype at = node == kNone ? size() : node;
    return std::span<const qint32>(m_children.constData() + m_childStart.at(at),
                                   size_t(m_childStart.at(at + 1) - m_childStart.at(at)));
}

} // namespace controls
