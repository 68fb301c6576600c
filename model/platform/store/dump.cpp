#include "platform/events/guid.h"
#include "platform/mapi/tags.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/folderlevels.h"
#include "platform/store/jsonstream.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QSqlQuery>
#include <QTime>

#include <algorithm>
#include <array>
#include <vector>

namespace store {

namespace {

/// How many folders' contents are read at a time, in the document's order.
constexpr int kFoldersARead = 256;

/// The deepest store whose dump is indented.
constexpr int kIndentedLevels = 50;

QString clock(int minutes)
{
    return QTime(0, 0).addSecs(minutes * 60).toString(QStringLiteral("HH:mm"));
}

/// "1, 2, 3": row numbers written into a statement, which binding hundreds
/// of values one by one would cost more than the reads.
QString rowList(const std::vector<qint64> &rows)
{
    QString list;
    for (const qint64 row : rows)
        list += (list.isEmpty() ? QString() : QStringLiteral(", ")) + QString::number(row);
    return list;
}

struct MessageRow {
    qint64 id = 0;
    bool hidden = false;
    QString entryId, cls, subject, created, modified;
    QVariant received;
};

struct BindingRow {
    QString name, handler;
    int mask = 0, type = 0, interval = 0, start = 0, end = 0, days = 0, at = 0;
    bool active = false;
    QVariant stateMessage;
};

struct StateRow {
    qint64 id = 0;
    QVariant log;
};

struct MapRow {
    QString activity, action, flags, args;
};

struct FolderRow {
    QString name;
    int access = 0;
    bool eventSource = false;
};

using Fields = std::vector<std::pair<QString, QVariant>>;

/// What the document says of a run of folders, read in one query a table.
struct Contents {
    QHash<qint64, FolderRow> folders;
    QHash<qint64, std::vector<MessageRow>> messages; ///< by folder, in the order of their rows
    QHash<QString, BindingRow> bindings;             ///< by binding message
    QHash<QString, StateRow> states;                 ///< by state message
    QHash<qint64, Fields> fields;                    ///< by message, in the order of their tags
    QHash<qint64, std::vector<MapRow>> maps;
    QHash<qint64, QVariantList> instances;
    QHash<qint64, std::vector<QStringList>> votes;
};

/// Writes the store as a fixture, one folder after the other: the folders'
/// shape is read first (three numbers a folder), then their contents a run
/// of folders at a time, so that the memory it takes doesn't grow with the
/// messages, and no depth of folders costs stack.
class Dumper {
public:
    Dumper(const Database &db, JsonWriter &writer) : m_db(db), w(writer) {}

    void dump()
    {
        // The contents are read a run of folders at a time, each run from
        // all over the file: mapped, its pages are read once.
        if (!m_db.onServer())
            m_db.run(QStringLiteral("PRAGMA mmap_size = %1").arg(qint64(1) << 32));
        w.StartObject();
        w.Key("user");
        writeText(w, m_db.meta(QStringLiteral("user")));
        w.Key("profile");
        writeText(w, m_db.meta(QStringLiteral("profile")));
        w.Key("hosts");
        hosts();
        readShape();
        w.Key("stores");
        w.StartArray();
        QSqlQuery s =
            m_db.run(QStringLiteral("SELECT id, name, provider, host FROM stores ORDER BY seq, id"));
        while (s.next()) {
            w.StartObject();
            w.Key("name");
            writeText(w, s.value(1).toString());
            w.Key("provider");
            writeText(w, s.value(2).toString());
            w.Key("host");
            writeText(w, s.value(3).toString());
            w.Key("folders");
            w.StartArray();
            const QVariant root = m_db.scalar(
                QStringLiteral("SELECT id FROM folders WHERE store = ? AND parent IS NULL"), {s.value(0)});
            if (root.isValid())
                folders(root.toLongLong());
            w.EndArray();
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
    }

private:
    void hosts()
    {
        w.StartArray();
        QSqlQuery h = m_db.run(QStringLiteral("SELECT id, name, restricted FROM hosts ORDER BY id"));
        while (h.next()) {
            w.StartObject();
            w.Key("name");
            writeText(w, h.value(1).toString());
            if (h.value(2).toInt()) {
                w.Key("authors");
                w.StartArray();
                QSqlQuery a = m_db.run(
                    QStringLiteral("SELECT \"user\" FROM host_authors WHERE host = ? ORDER BY \"user\""),
                    {h.value(0)});
                while (a.next())
                    writeText(w, a.value(0).toString());
                w.EndArray();
            }
            w.Key("handlers");
            w.StartArray();
            QSqlQuery k = m_db.run(
                QStringLiteral("SELECT class_id, name FROM handlers WHERE host = ? ORDER BY seq, id"),
                {h.value(0)});
            while (k.next()) {
                w.StartObject();
                w.Key("class");
                writeText(w, k.value(0).toString());
                w.Key("name");
                writeText(w, k.value(1).toString());
                w.EndObject();
            }
            w.EndArray();
            w.EndObject();
        }
        w.EndArray();
    }

    /// Every folder as (parent, seq, id), in the order of their parents and
    /// then the store's order.
    void readShape()
    {
        QSqlQuery f = m_db.run(QStringLiteral("SELECT COALESCE(parent, 0), seq, id FROM folders"));
        while (f.next())
            m_shape.push_back({f.value(0).toLongLong(), f.value(1).toLongLong(), f.value(2).toLongLong()});
        std::sort(m_shape.begin(), m_shape.end());
    }

    /// The folders below `root`, each before its subfolders, with their depth.
    std::vector<std::pair<qint64, int>> below(qint64 root) const
    {
        using It = std::vector<std::array<qint64, 3>>::const_iterator;
        const auto children = [this](qint64 parent) {
            return std::equal_range(m_shape.cbegin(), m_shape.cend(), std::array<qint64, 3>{parent, 0, 0},
                                    [](const auto &a, const auto &b) { return a[0] < b[0]; });
        };
        std::vector<std::pair<qint64, int>> order;
        std::vector<std::pair<It, It>> stack{children(root)};
        while (!stack.empty()) {
            auto &[next, end] = stack.back();
            if (next == end) {
                stack.pop_back();
                continue;
            }
            const qint64 id = (*next)[2];
            ++next;
            order.emplace_back(id, static_cast<int>(stack.size()));
            stack.push_back(children(id));
        }
        return order;
    }

    void folders(qint64 root)
    {
        const std::vector<std::pair<qint64, int>> order = below(root);
        int open = 0;
        for (size_t i = 0; i < order.size(); ++i) {
            if (i % kFoldersARead == 0) {
                std::vector<qint64> ids;
                for (size_t j = i; j < std::min(order.size(), i + kFoldersARead); ++j)
                    ids.push_back(order[j].first);
                read(rowList(ids));
            }
            const auto &[id, depth] = order[i];
            for (; open >= depth; --open) {
                w.EndArray();
                w.EndObject();
            }
            folderStart(id);
            open = depth;
        }
        for (; open > 0; --open) {
            w.EndArray();
            w.EndObject();
        }
    }

    /// A folder's members up to its list of subfolders, which is left open.
    void folderStart(qint64 id)
    {
        const FolderRow f = m_in.folders.value(id);
        const std::vector<MessageRow> messages = m_in.messages.value(id);
        w.StartObject();
        w.Key("name");
        writeText(w, f.name);
        w.Key("access");
        w.Int(f.access);
        w.Key("eventSource");
        w.Bool(f.eventSource);
        w.Key("agents");
        w.StartArray();
        for (const MessageRow &m : messages)
            if (m.hidden && m.cls == mapi::kBindingClass)
                agent(m);
        w.EndArray();
        w.Key("messages");
        w.StartArray();
        for (const MessageRow &m : messages)
            if (!m.hidden)
                message(m);
        w.EndArray();
        w.Key("hidden");
        w.StartArray();
        for (const MessageRow &m : messages)
            if (m.hidden && !m_claimed.contains(m.id)) // else part of an agent
                message(m);
        w.EndArray();
        w.Key("folders");
        w.StartArray();
    }

    /// 8-bit text as JSON carries it: one byte to one character.
    void text8(const QVariant &v)
    {
        if (v.isNull())
            writeText(w, QString());
        else if (v.typeId() == QMetaType::QByteArray)
            writeText(w, QString::fromLatin1(v.toByteArray()));
        else if (v.typeId() == QMetaType::QString)
            writeText(w, v.toString());
        else
            w.Int(v.toInt());
    }

    /// A field of a message; invalid when it has none.
    QVariant field(qint64 message, uint32_t tag) const
    {
        const QString key = mapi::tagKey(tag);
        for (const auto &[k, v] : m_in.fields.value(message))
            if (k == key)
                return v;
        return QVariant();
    }

    /// A message's fields by tag or name, but for those told apart.
    void fields(qint64 message, const QList<uint32_t> &apart)
    {
        QStringList skip;
        for (const uint32_t tag : apart)
            skip << mapi::tagKey(tag);
        w.Key("fields");
        w.StartObject();
        for (const auto &[key, value] : m_in.fields.value(message))
            if (!skip.contains(key)) {
                writeText(w, key);
                text8(value);
            }
        w.EndObject();
    }

    /// The route map on a message, row by row.
    void map(qint64 message)
    {
        w.Key("map");
        w.StartArray();
        for (const MapRow &r : m_in.maps.value(message)) {
            w.StartObject();
            w.Key("activity");
            writeText(w, r.activity);
            w.Key("action");
            writeText(w, r.action);
            w.Key("flags");
            writeText(w, r.flags);
            w.Key("args");
            const QByteArray args = QJsonDocument(QJsonDocument::fromJson(r.args.toUtf8()).array())
                                        .toJson(QJsonDocument::Compact);
            w.RawValue(args.constData(), static_cast<size_t>(args.size()), rapidjson::kArrayType);
            w.EndObject();
        }
        w.EndArray();
    }

    void agent(const MessageRow &m)
    {
        const auto binding = m_in.bindings.constFind(m.entryId);
        QString handler;
        if (binding == m_in.bindings.cend()) {
            // Without a binding the class is known only from the handler
            // field; one that doesn't read back the same stays a plain
            // hidden message.
            const QString handlerField = QString::fromLatin1(field(m.id, mapi::PR_HANDLER).toByteArray());
            handler = events::registryForm(handlerField);
            if (handler.isEmpty() || events::memoryOrderHex(handler) != handlerField)
                return;
        }
        m_claimed.insert(m.id);
        w.StartObject();
        w.Key("name");
        writeText(w, m.subject);
        w.Key("binding");
        w.Bool(binding != m_in.bindings.cend());
        QVariant stateId;
        if (binding != m_in.bindings.cend()) {
            const BindingRow &b = *binding;
            w.Key("handler");
            writeText(w, b.handler);
            w.Key("mask");
            w.Int(b.mask);
            w.Key("active");
            w.Bool(b.active);
            w.Key("schedule");
            w.StartObject();
            w.Key("type");
            w.Int(b.type);
            w.Key("interval");
            w.Int(b.interval);
            w.Key("start");
            writeText(w, clock(b.start));
            w.Key("end");
            writeText(w, clock(b.end));
            w.Key("days");
            w.Int(b.days);
            w.Key("at");
            writeText(w, clock(b.at));
            w.EndObject();
            stateId = b.stateMessage;
        } else {
            w.Key("handler");
            writeText(w, handler);
        }
        w.Key("created");
        writeText(w, m.created);
        w.Key("createdBy");
        text8(field(m.id, mapi::PR_CREATOR_NAME));
        w.Key("modified");
        writeText(w, m.modified);
        w.Key("modifiedBy");
        text8(field(m.id, mapi::PR_LAST_MODIFIER_NAME));
        w.Key("script");
        text8(field(m.id, mapi::PR_SCRIPT));
        fields(m.id, {mapi::PR_SCRIPT, mapi::PR_HANDLER, mapi::PR_CREATOR_NAME, mapi::PR_LAST_MODIFIER_NAME});
        map(m.id);
        const auto state = stateId.isNull() ? m_in.states.cend() : m_in.states.constFind(stateId.toString());
        w.Key("stateMessage");
        w.Bool(state != m_in.states.cend());
        w.Key("log");
        if (state != m_in.states.cend()) {
            text8(state->log);
            m_claimed.insert(state->id);
        } else {
            writeText(w, QString());
        }
        w.EndObject();
    }

    void message(const MessageRow &m)
    {
        w.StartObject();
        w.Key("subject");
        writeText(w, m.subject);
        w.Key("class");
        writeText(w, m.cls);
        w.Key("created");
        writeText(w, m.created);
        w.Key("modified");
        writeText(w, m.modified);
        if (!m.received.isNull()) {
            w.Key("received");
            writeText(w, m.received.toString());
        }
        const QVariant from = field(m.id, mapi::PR_SENDER_NAME);
        if (from.isValid()) {
            w.Key("from");
            text8(from);
        }
        fields(m.id, {mapi::PR_SENDER_NAME});
        map(m.id);
        const auto instance = m_in.instances.constFind(m.id);
        if (instance != m_in.instances.cend()) {
            w.Key("instance");
            w.StartObject();
            w.Key("rui");
            w.Int(instance->at(0).toInt());
            w.Key("status");
            writeText(w, instance->at(1).toString());
            w.Key("row");
            w.Int(instance->at(2).toInt());
            w.EndObject();
        }
        w.Key("votes");
        w.StartArray();
        for (const QStringList &v : m_in.votes.value(m.id)) {
            w.StartObject();
            w.Key("name");
            writeText(w, v.at(0));
            w.Key("status");
            writeText(w, v.at(1));
            w.Key("at");
            writeText(w, v.at(2));
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
    }

    /// The contents of the folders `in` ("1, 2, 3"), in one query a table.
    void read(const QString &in)
    {
        m_in = Contents();
        QSqlQuery f = m_db.run(
            QStringLiteral("SELECT id, name, access, event_source FROM folders WHERE id IN (%1)").arg(in));
        while (f.next())
            m_in.folders.insert(f.value(0).toLongLong(), FolderRow{f.value(1).toString(), f.value(2).toInt(),
                                                                   f.value(3).toInt() != 0});
        QSqlQuery m =
            m_db.run(QStringLiteral("SELECT id, folder, hidden, entry_id, class, subject, created,"
                                    " modified, received FROM messages WHERE folder IN (%1) ORDER BY id")
                         .arg(in));
        std::vector<qint64> messageRows;
        while (m.next()) {
            messageRows.push_back(m.value(0).toLongLong());
            m_in.messages[m.value(1).toLongLong()].push_back(
                MessageRow{m.value(0).toLongLong(), m.value(2).toInt() != 0, m.value(3).toString(),
                           m.value(4).toString(), m.value(5).toString(), m.value(6).toString(),
                           m.value(7).toString(), m.value(8)});
        }
        // The bindings of the binding messages, found by their folders; one
        // kept in another folder than its message is looked for alone.
        const QString bindingColumns = QStringLiteral(
            "SELECT message, name, active, event_mask, handler_class, state_message, sched_type,"
            " sched_interval, sched_start, sched_end, sched_days, sched_at FROM bindings");
        const auto take = [this](QSqlQuery &b) {
            while (b.next()) {
                const QString message = b.value(0).toString();
                if (!m_in.bindings.contains(message))
                    m_in.bindings.insert(
                        message, BindingRow{b.value(1).toString(), b.value(4).toString(), b.value(3).toInt(),
                                            b.value(6).toInt(), b.value(7).toInt(), b.value(8).toInt(),
                                            b.value(9).toInt(), b.value(10).toInt(), b.value(11).toInt(),
                                            b.value(2).toInt() != 0, b.value(5)});
            }
        };
        QSqlQuery b = m_db.run(bindingColumns + QStringLiteral(" WHERE folder IN (%1) ORDER BY id").arg(in));
        take(b);
        QStringList states;
        for (const std::vector<MessageRow> &messages : std::as_const(m_in.messages))
            for (const MessageRow &m : messages) {
                if (!m.hidden || m.cls != mapi::kBindingClass)
                    continue;
                if (!m_in.bindings.contains(m.entryId)) {
                    QSqlQuery one = m_db.run(
                        bindingColumns + QStringLiteral(" WHERE message = ? ORDER BY id"), {m.entryId});
                    take(one);
                }
                const auto found = m_in.bindings.constFind(m.entryId);
                if (found != m_in.bindings.cend() && !found->stateMessage.isNull())
                    states << QLatin1Char('\'') +
                                  found->stateMessage.toString().replace(QLatin1Char('\''),
                                                                         QStringLiteral("''")) +
                                  QLatin1Char('\'');
            }
        if (!states.isEmpty()) {
            QSqlQuery s =
                m_db.run(QStringLiteral("SELECT m.entry_id, m.id, l.value FROM messages m LEFT JOIN fields l"
                                        " ON l.message = m.id AND l.tag = ? WHERE m.entry_id IN (%1)")
                             .arg(states.join(QStringLiteral(", "))),
                         {mapi::tagKey(mapi::PR_AGENT_LOG)});
            while (s.next())
                m_in.states.insert(s.value(0).toString(), StateRow{s.value(1).toLongLong(), s.value(2)});
        }
        if (messageRows.empty())
            return;
        // The messages by their rows: a server's planner reads a few rows
        // of a large table by its index for a list, where for a query of
        // them it may read the whole table.
        const QString ofMessages = rowList(messageRows);
        QSqlQuery v =
            m_db.run(QStringLiteral(
                         "SELECT message, tag, value FROM fields WHERE message IN (%1) ORDER BY message, tag")
                         .arg(ofMessages));
        while (v.next())
            m_in.fields[v.value(0).toLongLong()].emplace_back(v.value(1).toString(), v.value(2));
        QSqlQuery r = m_db.run(QStringLiteral("SELECT message, activity, action, flags, args FROM map_rows"
                                              " WHERE message IN (%1) ORDER BY message, row")
                                   .arg(ofMessages));
        while (r.next())
            m_in.maps[r.value(0).toLongLong()].push_back(MapRow{
                r.value(1).toString(), r.value(2).toString(), r.value(3).toString(), r.value(4).toString()});
        QSqlQuery i =
            m_db.run(QStringLiteral("SELECT message, rui, status, row FROM instances WHERE message IN (%1)")
                         .arg(ofMessages));
        while (i.next())
            m_in.instances.insert(i.value(0).toLongLong(), {i.value(1), i.value(2), i.value(3)});
        QSqlQuery t = m_db.run(
            QStringLiteral(
                "SELECT message, name, status, at FROM votes WHERE message IN (%1) ORDER BY message, seq")
                .arg(ofMessages));
        while (t.next())
            m_in.votes[t.value(0).toLongLong()].push_back(
                {t.value(1).toString(), t.value(2).toString(), t.value(3).toString()});
    }

    const Database &m_db;
    JsonWriter &w;
    std::vector<std::array<qint64, 3>> m_shape;
    Contents m_in;
    QSet<qint64> m_claimed;
};

} // namespace

void dumpStore(const Database &db, QIODevice &out)
{
    DeviceWriteStream stream(out);
    JsonWriter writer(stream);
    // Indented, a deep store's lines would grow with its depth and the
    // document with its square; below some depth the lines start flush.
    if (folderLevels(db) > kIndentedLevels)
        writer.SetIndent(' ', 0);
    Dumper(db, writer).dump();
    stream.Put('\n');
    stream.Flush();
}

QJsonObject dumpStore(const Database &db)
{
    QByteArray text;
    QBuffer buffer(&text);
    buffer.open(QIODevice::WriteOnly);
    dumpStore(db, buffer);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        throw com::ComError(
            com::err::InvalidParameter, QStringLiteral("sorrelin-store"),
            QStringLiteral("%1 can't be held as one object: %2").arg(db.path(), error.errorString()));
    return document.object();
}

} // namespace store
