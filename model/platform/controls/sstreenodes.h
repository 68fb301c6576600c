#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <QVector>

#include <span>

namespace controls {

/// The nodes of a folder tree as compact arrays, apart from any view: for
/// each node its parent, `Key`, `Text`, `Tag`, `Image` and whether it opens
/// when shown; keys are unique. Keys are kept as UTF-8 and texts as UTF-16
/// side by side in two buffers, tags once each, so that a million nodes take
/// some tens of megabytes. Several trees can show one table.
class SSTreeNodes {
public:
    static constexpr qint32 kNone = -1;

    SSTreeNodes() = default;
    SSTreeNodes(const SSTreeNodes &) = delete;
    SSTreeNodes &operator=(const SSTreeNodes &) = delete;

    /// Room for `nodes` nodes, and for their keys and texts when their
    /// lengths are given (UTF-8 bytes, UTF-16 units).
    void reserve(qsizetype nodes, qsizetype keyBytes = 0, qsizetype textUnits = 0);

    /// The number of a tag, the same for equal tags.
    qint32 tag(const QString &tag);

    /// Adds a node below `parent` (kNone: at the top) and gives its index;
    /// kNone, and nothing added, when a node has `key` already or `parent`
    /// is no node. Indexes count from 0 in the order of adding.
    qint32 add(qint32 parent, QStringView key, QStringView text, qint32 tag, int image, bool expanded);
    /// The same with the key in UTF-8.
    qint32 addUtf8(qint32 parent, QByteArrayView key, QStringView text, qint32 tag, int image, bool expanded);

    /// Puts every node's children in `Text` order, case counting, equal
    /// texts in the order of adding; once, after the last `add`.
    void sortChildren();

    qsizetype size() const { return m_parent.size(); }
    /// The node with `key`, or kNone.
    qint32 find(QStringView key) const;

    qint32 parent(qint32 node) const { return m_parent.at(node); }
    QString key(qint32 node) const;
    QStringView text(qint32 node) const;
    QString tag(qint32 node) const { return m_tags.at(m_tag.at(node)); }
    int image(qint32 node) const { return m_image.at(node); }
    bool expanded(qint32 node) const { return m_expanded.at(node); }
    /// A node's children (kNone: the top nodes), in text order once sorted.
    std::span<const qint32> children(qint32 node) const;

private:
    QByteArrayView keyBytes(qint32 node) const;
    qint32 findBytes(QByteArrayView key, quint32 hash) const;
    void place(qint32 node, quint32 hash);
    /// Adds the node whose key was appended to m_keys at `at`.
    qint32 addAppendedKey(qsizetype at, qint32 parent, QStringView text, qint32 tag, int image,
                          bool expanded);
    void grow();

    QVector<qint32> m_parent;
    QVector<qint32> m_tag;
    QVector<qint8> m_image;
    QVector<bool> m_expanded;
    QByteArray m_keys;         ///< every key in UTF-8, end to end
    QVector<quint32> m_keyEnd; ///< where each node's key ends
    QString m_texts;
    QVector<quint32> m_textEnd;
    QVector<QString> m_tags;
    /// A node and its key's hash, which spares reading the keys of other
    /// nodes met in the probe.
    struct Slot {
        qint32 node = kNone;
        quint32 hash = 0;
    };
    QVector<Slot> m_slots;        ///< open addressing from a key's hash to its node; kNone for a free slot
    QVector<qint32> m_childStart; ///< per node and one for the top: where its children begin in m_children
    QVector<qint32> m_children;
};

} // namespace controls
