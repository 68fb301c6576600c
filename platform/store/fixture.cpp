#include "platform/store/fixture.h"

#include "platform/events/guid.h"
#include "platform/mapi/tags.h"
#include "platform/store/buildstore.h"
#include "platform/store/database.h"
#include "platform/store/folderlevels.h"
#include "platform/store/ids.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTime>

#include <cmath>

namespace store {

namespace {

const QString kSource = QStringLiteral("sorrelin-store");
const QString kExchange = QStringLiteral("Microsoft Exchange Server");

com::ComError bad(const QString &path, const QString &what)
{
    return com::ComError(com::err::InvalidParameter, kSource, path + QStringLiteral(": ") + what);
}

/// 8-bit text: one character U+0000..U+00FF to one byte.
QByteArray latin1(const QString &text, const QString &path)
{
    for (const QChar c : text)
        if (c.unicode() > 0xFF)
            throw bad(path, QStringLiteral("8-bit text may hold only characters U+0000 to U+00FF"));
    return text.toLatin1();
}

/// Reads the members of one fixture object, naming the member path in every
/// error.
class Reader {
public:
    Reader(const QJsonObject &object, QString path, QStringList known)
        : m_object(object), m_path(std::move(path))
    {
        for (auto it = object.begin(); it != object.end(); ++it)
            if (!known.contains(it.key()))
                throw bad(member(it.key()), QStringLiteral("unknown member"));
    }

    QString member(const QString &name) const
    {
        return m_path.isEmpty() ? name : m_path + QLatin1Char('.') + name;
    }
    bool has(const QString &name) const { return m_object.contains(name); }

    QString text(const QString &name, const QString &fallback = QString(), bool required = false) const
    {
        const QJsonValue v = m_object.value(name);
        if (v.isUndefined()) {
            if (required)
                throw bad(member(name), QStringLiteral("missing"));
            return fallback.isNull() ? QStringLiteral("") : fallback;
        }
        if (!v.isString())
            throw bad(member(name), QStringLiteral("expected a text"));
        return v.toString();
    }

    QByteArray bytes(const QString &name) const { return latin1(text(name), member(name)); }

    int number(const QString &name, int fallback, int low, int high) const
    {
        const QJsonValue v = m_object.value(name);
        if (v.isUndefined())
            return fallback;
        const double d = v.toDouble();
        if (!v.isDouble() || d != std::floor(d) || d < low || d > high)
            throw bad(member(name),
                      QStringLiteral("expected a whole number from %1 to %2").arg(low).arg(high));
        return static_cast<int>(d);
    }

    bool flag(const QString &name, bool fallback) const
    {
        const QJsonValue v = m_object.value(name);
        if (v.isUndefined())
            return fallback;
        if (!v.isBool())
            throw bad(member(name), QStringLiteral("expected true or false"));
        return v.toBool();
    }

    QJsonArray array(const QString &name) const
    {
        const QJsonValue v = m_object.value(name);
        if (v.isUndefined())
            return {};
        if (!v.isArray())
            throw bad(member(name), QStringLiteral("expected a list"));
        return v.toArray();
    }

    QJsonObject object(const QString &name) const
    {
        const QJsonValue v = m_object.value(name);
        if (v.isUndefined())
            return {};
        if (!v.isObject())
            throw bad(member(name), QStringLiteral("expected an object"));
        return v.toObject();
    }

    QString time(const QString &name, const QString &fallback) const
    {
        const QString t = text(name, fallback);
        if (!QDateTime::fromString(t, QStringLiteral("yyyy-MM-dd HH:mm:ss")).isValid())
            throw bad(member(name), QStringLiteral("expected a time \"YYYY-MM-DD HH:MM:SS\""));
        return t;
    }

    int clock(const QString &name, int fallback) const
    {
        if (!has(name))
            return fallback;
        const QTime t = QTime::fromString(text(name), QStringLiteral("HH:mm"));
        if (!t.isValid())
            throw bad(member(name), QStringLiteral("expected a time of day \"HH:MM\""));
        return t.hour() * 60 + t.minute();
    }

    const QString &path() const { return m_path; }

private:
    QJsonObject m_object;
    QString m_path;
};

QJsonObject element(const QJsonArray &array, int i, const QString &path)
{
    if (!array.at(i).isObject())
        throw bad(QStringLiteral("%1[%2]").arg(path).arg(i), QStringLiteral("expected an object"));
    return array.at(i).toObject();
}

class Loader {
public:
    explicit Loader(Database &db) : m_db(db), m_now(Database::now()) {}

    void load(const QJsonObject &root)
    {
        const Reader r(root, QString(),
                       {QStringLiteral("user"), QStringLiteral("profile"), QStringLiteral("hosts"),
                        QStringLiteral("stores")});
        m_user = r.text(QStringLiteral("user"), QString(), true);
        m_db.setMeta(QStringLiteral("user"), m_user);
        m_db.setMeta(QStringLiteral("profile"), r.text(QStringLiteral("profile"), QStringLiteral("Demo")));
        const QJsonArray hosts = r.array(QStringLiteral("hosts"));
        for (int i = 0; i < hosts.size(); ++i)
            loadHost(element(hosts, i, QStringLiteral("hosts")), QStringLiteral("hosts[%1]").arg(i));
        const QJsonArray stores = r.array(QStringLiteral("stores"));
        for (int i = 0; i < stores.size(); ++i)
            loadStore(element(stores, i, QStringLiteral("stores")), QStringLiteral("stores[%1]").arg(i), i);
    }

private:
    void loadHost(const QJsonObject &o, const QString &path)
    {
        const Reader r(o, path,
                       {QStringLiteral("name"), QStringLiteral("authors"), QStringLiteral("handlers")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        if (m_db.scalar(QStringLiteral("SELECT 1 FROM hosts WHERE name = ?"), {name}).isValid())
            throw bad(r.member(QStringLiteral("name")),
                      QStringLiteral("a host of this name is already listed"));
        const bool restricted = r.has(QStringLiteral("authors"));
        const qint64 host = m_db.insert(QStringLiteral("INSERT INTO hosts(name, restricted) VALUES(?, ?)"),
                                        {name, restricted ? 1 : 0});
        const QJsonArray authors = r.array(QStringLiteral("authors"));
        for (int i = 0; i < authors.size(); ++i) {
            if (!authors.at(i).isString())
                throw bad(QStringLiteral("%1.authors[%2]").arg(path).arg(i),
                          QStringLiteral("expected a text"));
            m_db.run(QStringLiteral(
                         "INSERT INTO host_authors(host, \"user\") VALUES(?, ?) ON CONFLICT DO NOTHING"),
                     {host, authors.at(i).toString()});
        }
        const QJsonArray handlers = r.array(QStringLiteral("handlers"));
        for (int i = 0; i < handlers.size(); ++i) {
            const QString hpath = QStringLiteral("%1.handlers[%2]").arg(path).arg(i);
            const Reader h(element(handlers, i, path + QStringLiteral(".handlers")), hpath,
                           {QStringLiteral("class"), QStringLiteral("name")});
            m_db.run(QStringLiteral("INSERT INTO handlers(host, seq, class_id, name) VALUES(?, ?, ?, ?)"),
                     {host, i, h.text(QStringLiteral("class"), QString(), true),
                      h.text(QStringLiteral("name"), QString(), true)});
        }
    }

    void loadStore(const QJsonObject &o, const QString &path, int seq)
    {
        const Reader r(o, path,
                       {QStringLiteral("name"), QStringLiteral("provider"), QStringLiteral("host"),
                        QStringLiteral("folders")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        m_store = m_db.insert(QStringLiteral("INSERT INTO stores(store_id, seq, name, provider, host)"
                                             " VALUES('', ?, ?, ?, ?)"),
                              {seq, name, r.text(QStringLiteral("provider"), kExchange),
                               r.text(QStringLiteral("host"), QString())});
        m_db.run(QStringLiteral("UPDATE stores SET store_id = ? WHERE id = ?"),
                 {makeStoreId(m_store), m_store});
        const qint64 root = insertFolder(QVariant(), 0, QStringLiteral("Top of Information Store"), 63, true);
        loadFolders(r, root, 1);
    }

    qint64 insertFolder(const QVariant &parent, int seq, const QString &name, int access, bool eventSource)
    {
        const qint64 row =
            m_db.insert(QStringLiteral("INSERT INTO folders(store, parent, seq, name, access, event_source)"
                                       " VALUES(?, ?, ?, ?, ?, ?)"),
                        {m_store, parent, seq, name, access, eventSource ? 1 : 0});
        m_db.assignEntryId(IdKind::Folder, m_store, row);
        return row;
    }

    /// The folders of level `level` below `parent`; the reader's nesting
    /// limit keeps the recursion shallow.
    void loadFolders(const Reader &r, qint64 parent, int level)
    {
        const QJsonArray folders = r.array(QStringLiteral("folders"));
        if (!folders.isEmpty() && level > kMaxFolderLevels)
            throw bad(r.member(QStringLiteral("folders")),
                      QStringLiteral("folders nest at most %1 levels deep").arg(kMaxFolderLevels));
        for (int i = 0; i < folders.size(); ++i) {
            const QString path = QStringLiteral("%1[%2]").arg(r.member(QStringLiteral("folders"))).arg(i);
            loadFolder(element(folders, i, r.member(QStringLiteral("folders"))), path, parent, i, level);
        }
    }

    void loadFolder(const QJsonObject &o, const QString &path, qint64 parent, int seq, int level)
    {
        const Reader r(o, path,
                       {QStringLiteral("name"), QStringLiteral("access"), QStringLiteral("eventSource"),
                        QStringLiteral("folders"), QStringLiteral("agents"), QStringLiteral("messages"),
                        QStringLiteral("hidden")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        if (name.isEmpty() || name.contains(QLatin1Char('\\')))
            throw bad(r.member(QStringLiteral("name")),
                      QStringLiteral("a folder's name is not empty and has no \\"));
        const qint64 folder = insertFolder(parent, seq, name, r.number(QStringLiteral("access"), 63, 0, 63),
                                           r.flag(QStringLiteral("eventSource"), true));
        const QJsonArray agents = r.array(QStringLiteral("agents"));
        for (int i = 0; i < agents.size(); ++i)
            loadAgent(element(agents, i, r.member(QStringLiteral("agents"))),
                      QStringLiteral("%1[%2]").arg(r.member(QStringLiteral("agents"))).arg(i), folder);
        for (const QString &kind : {QStringLiteral("messages"), QStringLiteral("hidden")}) {
            const QJsonArray messages = r.array(kind);
            for (int i = 0; i < messages.size(); ++i)
                loadMessage(element(messages, i, r.member(kind)),
                            QStringLiteral("%1[%2]").arg(r.member(kind)).arg(i), folder,
                            kind == QLatin1String("hidden"));
        }
        loadFolders(r, folder, level + 1);
    }

    qint64 insertMessage(qint64 folder, bool hidden, const QString &cls, const QString &subject,
                         const QString &created, const QString &modified, const QVariant &received)
    {
        const qint64 row = m_db.insert(
            QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created, modified,"
                           " received, delivered) VALUES(?, ?, ?, ?, ?, ?, ?, ?)"),
            {folder, hidden ? 1 : 0, cls, subject, created, modified, received, received});
        m_lastId = m_db.assignEntryId(IdKind::Message, m_store, row);
        return row;
    }

    void setField(qint64 message, const QString &tag, const QVariant &value)
    {
        m_db.run(
            QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?) ON CONFLICT(message, tag)"
                           " DO UPDATE SET value = excluded.value"),
            {message, tag, value});
    }

    void loadAgent(const QJsonObject &o, const QString &path, qint64 folder)
    {
        const Reader r(o, path,
                       {QStringLiteral("name"), QStringLiteral("handler"), QStringLiteral("mask"),
                        QStringLiteral("active"), QStringLiteral("script"), QStringLiteral("log"),
                        QStringLiteral("schedule"), QStringLiteral("createdBy"), QStringLiteral("created"),
                        QStringLiteral("modifiedBy"), QStringLiteral("modified"), QStringLiteral("binding"),
                        QStringLiteral("stateMessage"), QStringLiteral("map"), QStringLiteral("fields")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        const QString handler = r.text(QStringLiteral("handler"), events::kScriptHandler);
        const QString field = events::memoryOrderHex(handler);
        if (field.isEmpty())
            throw bad(
                r.member(QStringLiteral("handler")),
                QStringLiteral("expected a class identifier like {69E54151-B371-11D0-BCD9-00AA00C1AB1C}"));
        const int mask = r.number(QStringLiteral("mask"), 2, 0, 15);
        const bool active = r.flag(QStringLiteral("active"), true);
        const QString created = r.time(QStringLiteral("created"), m_now);
        const QString modified = r.time(QStringLiteral("modified"), created);
        const Reader s(r.object(QStringLiteral("schedule")), r.member(QStringLiteral("schedule")),
                       {QStringLiteral("type"), QStringLiteral("interval"), QStringLiteral("start"),
                        QStringLiteral("end"), QStringLiteral("days"), QStringLiteral("at")});
        const QVariantList schedule = {s.number(QStringLiteral("type"), 0, 0, 3),
                                       s.number(QStringLiteral("interval"), 0, -32768, 32767),
                                       s.clock(QStringLiteral("start"), 0),
                                       s.clock(QStringLiteral("end"), 0),
                                       s.number(QStringLiteral("days"), 0, -32768, 32767),
                                       s.clock(QStringLiteral("at"), 0)};

        const qint64 message =
            insertMessage(folder, true, mapi::kBindingClass, name, created, modified, QVariant());
        const QString messageId = m_lastId;
        setField(message, mapi::tagKey(mapi::PR_SCRIPT), r.bytes(QStringLiteral("script")));
        setField(message, mapi::tagKey(mapi::PR_HANDLER), field.toLatin1());
        const QString createdBy = r.text(QStringLiteral("createdBy"), m_user);
        setField(message, mapi::tagKey(mapi::PR_CREATOR_NAME),
                 latin1(createdBy, r.member(QStringLiteral("createdBy"))));
        setField(
            message, mapi::tagKey(mapi::PR_LAST_MODIFIER_NAME),
            latin1(r.text(QStringLiteral("modifiedBy"), createdBy), r.member(QStringLiteral("modifiedBy"))));
        loadFields(r, message);
        loadMap(r, message);
        QVariant stateId;
        if (r.flag(QStringLiteral("stateMessage"), true)) {
            const qint64 state =
                insertMessage(folder, true, mapi::kStateClass, name, created, modified, QVariant());
            stateId = m_lastId;
            setField(state, mapi::tagKey(mapi::PR_AGENT_LOG), r.bytes(QStringLiteral("log")));
        }
        if (r.flag(QStringLiteral("binding"), true)) {
            QVariantList values = {folder, name, active ? 1 : 0, mask, handler, messageId, stateId};
            values += schedule;
            m_db.run(QStringLiteral(
                         "INSERT INTO bindings(folder, name, active, event_mask, handler_class, message,"
                         " state_message, sched_type, sched_interval, sched_start, sched_end, sched_days,"
                         " sched_at) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                     values);
        }
    }

    /// A message's "fields": tags ("0x7102001E") or names ("RouteType").
    void loadFields(const Reader &r, qint64 message)
    {
        const QJsonObject fields = r.object(QStringLiteral("fields"));
        for (auto it = fields.begin(); it != fields.end(); ++it) {
            const QString fpath = r.member(QStringLiteral("fields")) + QLatin1Char('.') + it.key();
            QString tag = it.key();
            if (tag.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
                bool ok = false;
                const uint value = tag.mid(2).toUInt(&ok, 16);
                if (!ok || tag.size() != 10)
                    throw bad(fpath, QStringLiteral("expected a tag of eight hexadecimal digits"));
                tag = mapi::tagKey(value);
            }
            if (it.value().isDouble())
                setField(message, tag, it.value().toInt());
            else if (it.value().isString())
                setField(message, tag, latin1(it.value().toString(), fpath));
            else
                throw bad(fpath, QStringLiteral("expected a text or a number"));
        }
    }

    /// A message's "map": its rows in order.
    void loadMap(const Reader &r, qint64 message)
    {
        const QJsonArray map = r.array(QStringLiteral("map"));
        for (int i = 0; i < map.size(); ++i) {
            const QString mpath = QStringLiteral("%1[%2]").arg(r.member(QStringLiteral("map"))).arg(i);
            const Reader m(element(map, i, r.member(QStringLiteral("map"))), mpath,
                           {QStringLiteral("activity"), QStringLiteral("action"), QStringLiteral("flags"),
                            QStringLiteral("args")});
            const QJsonArray args = m.array(QStringLiteral("args"));
            for (int a = 0; a < args.size(); ++a)
                if (!args.at(a).isString())
                    throw bad(QStringLiteral("%1.args[%2]").arg(mpath).arg(a),
                              QStringLiteral("expected a text"));
            m_db.run(QStringLiteral("INSERT INTO map_rows(message, row, activity, action, flags, args)"
                                    " VALUES(?, ?, ?, ?, ?, ?)"),
                     {message, i, m.text(QStringLiteral("activity")), m.text(QStringLiteral("action")),
                      m.text(QStringLiteral("flags")),
                      QString::fromUtf8(QJsonDocument(args).toJson(QJsonDocument::Compact))});
        }
    }

    void loadMessage(const QJsonObject &o, const QString &path, qint64 folder, bool hidden)
    {
        const Reader r(o, path,
                       {QStringLiteral("subject"), QStringLiteral("class"), QStringLiteral("from"),
                        QStringLiteral("received"), QStringLiteral("created"), QStringLiteral("modified"),
                        QStringLiteral("fields"), QStringLiteral("map"), QStringLiteral("instance"),
                        QStringLiteral("votes")});
        // Hidden messages are never received; ordinary ones were, now if not told.
        const QVariant received = hidden && !r.has(QStringLiteral("received"))
                                      ? QVariant()
                                      : QVariant(r.time(QStringLiteral("received"), m_now));
        const QString created =
            r.time(QStringLiteral("created"), received.isNull() ? m_now : received.toString());
        const qint64 message =
            insertMessage(folder, hidden, r.text(QStringLiteral("class"), QStringLiteral("IPM.Note")),
                          r.text(QStringLiteral("subject"), QString(), true), created,
                          r.time(QStringLiteral("modified"), created), received);
        if (r.has(QStringLiteral("from")))
            setField(message, mapi::tagKey(mapi::PR_SENDER_NAME), r.bytes(QStringLiteral("from")));
        loadFields(r, message);
        loadMap(r, message);
        if (r.has(QStringLiteral("instance"))) {
            const Reader in(r.object(QStringLiteral("instance")), r.member(QStringLiteral("instance")),
                            {QStringLiteral("rui"), QStringLiteral("status"), QStringLiteral("row")});
            m_db.run(QStringLiteral("INSERT INTO instances(message, rui, status, row) VALUES(?, ?, ?, ?)"),
                     {message, in.number(QStringLiteral("rui"), 0, INT_MIN, INT_MAX),
                      in.text(QStringLiteral("status")),
                      in.number(QStringLiteral("row"), 0, INT_MIN, INT_MAX)});
        }
        const QJsonArray votes = r.array(QStringLiteral("votes"));
        for (int i = 0; i < votes.size(); ++i) {
            const Reader v(element(votes, i, r.member(QStringLiteral("votes"))),
                           QStringLiteral("%1[%2]").arg(r.member(QStringLiteral("votes"))).arg(i),
                           {QStringLiteral("name"), QStringLiteral("status"), QStringLiteral("at")});
            m_db.run(
                QStringLiteral("INSERT INTO votes(message, seq, name, status, at) VALUES(?, ?, ?, ?, ?)"),
                {message, i, v.text(QStringLiteral("name")), v.text(QStringLiteral("status")),
                 v.text(QStringLiteral("at"))});
        }
    }

    Database &m_db;
    QString m_now;
    QString m_user;
    qint64 m_store = 0;
    QString m_lastId;
};

} // namespace

void loadFixture(const QJsonObject &fixture, const QString &dbPath)
{
    buildStore(dbPath, [&](Database &db) { Loader(db).load(fixture); });
}

void loadFixture(const QString &jsonPath, const QString &dbPath)
{
    QFile file(jsonPath);
    if (!file.open(QIODevice::ReadOnly))
        throw com::ComError(com::err::FileNotFound, kSource,
                            QStringLiteral("%1 could not be read: %2").arg(jsonPath, file.errorString()));
    const QByteArray text = file.readAll();
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        const QByteArray before = text.left(error.offset);
        const int line = static_cast<int>(before.count('\n')) + 1;
        const int column =
            static_cast<int>(QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1)).size()) + 1;
        throw com::ComError(
            com::err::InvalidParameter, kSource,
            QStringLiteral("%1:%2:%3: %4%5")
                .arg(jsonPath)
                .arg(line)
                .arg(column)
                .arg(error.errorString(),
                     error.error == QJsonParseError::DeepNesting
                         ? QStringLiteral(" (folders nest at most %1 levels deep)").arg(kMaxFolderLevels)
                         : QString()));
    }
    if (!doc.isObject())
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("%1: expected one object at the top").arg(jsonPath));
    try {
        loadFixture(doc.object(), dbPath);
    } catch (const com::ComError &e) {
        throw com::ComError(e.number(), e.source(), jsonPath + QStringLiteral(": ") + e.description());
    }
}

} // namespace store
