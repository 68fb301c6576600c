#include "platform/store/fixture.h"

#include "platform/events/guid.h"
#include "platform/mapi/tags.h"
#include "platform/store/database.h"
#include "platform/store/fixturefile.h"
#include "platform/store/fixtureread.h"
#include "platform/store/ids.h"

#include <QFile>
#include <QJsonDocument>
#include <QSqlQuery>

#include <climits>
#include <cmath>

namespace store {

using fixture::badMember;
using fixture::elementPath;
using fixture::Reader;

namespace {

const QString kSource = QStringLiteral("Sorrelin.Store");
const QString kExchange = QStringLiteral("Microsoft Exchange Server");
const QString kRootFolder = QStringLiteral("Top of Information Store");

/// Binds `values` in order and runs a statement prepared once.
void exec(const Database &db, QSqlQuery &q, const QVariantList &values)
{
    for (const QVariant &v : values)
        q.addBindValue(v);
    db.exec(q);
}

/// A field's tag as the store keeps it: "0x%08X" for a property tag, the
/// name itself for a named property.
QString fieldTag(const QString &key, const QString &path)
{
    if (key.isEmpty())
        throw badMember(path, QStringLiteral("a field needs a tag or a name"));
    if (!key.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return key;
    bool ok = false;
    const uint tag = key.mid(2).toUInt(&ok, 16);
    if (!ok || key.size() != 10)
        throw badMember(path, QStringLiteral("expected a tag of eight hexadecimal digits, like 0x7102001E"));
    return mapi::tagKey(tag);
}

class Loader {
public:
    explicit Loader(Database &db) : m_db(db), m_now(Database::now())
    {
        m_insertFolder = db.prepare(QStringLiteral(
            "INSERT INTO folders(store, parent, seq, name, access, event_source) VALUES(?, ?, ?, ?, ?, ?)"));
        m_insertMessage = db.prepare(
            QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created, modified, received,"
                           " delivered) VALUES(?, ?, ?, ?, ?, ?, ?, ?)"));
        m_insertField = db.prepare(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"
                                                  " ON CONFLICT(message, tag) DO UPDATE SET value = excluded.value"));
    }

    void load(const QJsonObject &root)
    {
        const Reader r(root, QString(), {QStringLiteral("user"), QStringLiteral("profile"), QStringLiteral("hosts"),
                                          QStringLiteral("stores")});
        m_user = r.text(QStringLiteral("user"), QString(), true);
        fixture::latin1(m_user, r.member(QStringLiteral("user"))); // it becomes 8-bit "created by" text
        m_db.setMeta(QStringLiteral("user"), m_user);
        m_db.setMeta(QStringLiteral("profile"), r.text(QStringLiteral("profile"), QStringLiteral("Demo")));
        const QJsonArray hosts = r.list(QStringLiteral("hosts"));
        for (int i = 0; i < hosts.size(); ++i)
            loadHost(Reader::element(hosts, i, r.member(QStringLiteral("hosts"))),
                     elementPath(r.member(QStringLiteral("hosts")), i));
        const QJsonArray stores = r.list(QStringLiteral("stores"));
        for (int i = 0; i < stores.size(); ++i)
            loadStore(Reader::element(stores, i, r.member(QStringLiteral("stores"))),
                      elementPath(r.member(QStringLiteral("stores")), i), i);
    }

private:
    void loadHost(const QJsonObject &o, const QString &path)
    {
        const Reader r(o, path, {QStringLiteral("name"), QStringLiteral("authors"), QStringLiteral("handlers")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        if (name.isEmpty())
            throw badMember(r.member(QStringLiteral("name")), QStringLiteral("a host needs a name"));
        if (m_db.scalar(QStringLiteral("SELECT 1 FROM hosts WHERE name = ?"), {name}).isValid())
            throw badMember(r.member(QStringLiteral("name")), QStringLiteral("a host of this name is already listed"));
        // A host that lists its authors lets no one else write bindings.
        const bool restricted = r.has(QStringLiteral("authors"));
        const qint64 host = m_db.run(QStringLiteral("INSERT INTO hosts(name, restricted) VALUES(?, ?)"),
                                     {name, restricted ? 1 : 0})
                                .lastInsertId()
                                .toLongLong();
        const QJsonArray authors = r.list(QStringLiteral("authors"));
        for (int i = 0; i < authors.size(); ++i) {
            if (!authors.at(i).isString())
                throw badMember(elementPath(r.member(QStringLiteral("authors")), i), QStringLiteral("expected a text"));
            m_db.run(QStringLiteral("INSERT OR IGNORE INTO host_authors(host, user) VALUES(?, ?)"),
                     {host, authors.at(i).toString()});
        }
        const QJsonArray handlers = r.list(QStringLiteral("handlers"));
        for (int i = 0; i < handlers.size(); ++i) {
            const QString hpath = elementPath(r.member(QStringLiteral("handlers")), i);
            const Reader h(Reader::element(handlers, i, r.member(QStringLiteral("handlers"))), hpath,
                           {QStringLiteral("class"), QStringLiteral("name")});
            const QString cls = h.text(QStringLiteral("class"), QString(), true);
            if (events::memoryOrderHex(cls).isEmpty() || !cls.startsWith(QLatin1Char('{')))
                throw badMember(h.member(QStringLiteral("class")),
                                QStringLiteral("expected a class identifier like {69E54151-B371-11D0-BCD9-00AA00C1AB1C}"));
            m_db.run(QStringLiteral("INSERT INTO handlers(host, seq, class_id, name) VALUES(?, ?, ?, ?)"),
                     {host, i, cls, h.text(QStringLiteral("name"), QString(), true)});
        }
    }

    void loadStore(const QJsonObject &o, const QString &path, int seq)
    {
        const Reader r(o, path, {QStringLiteral("name"), QStringLiteral("provider"), QStringLiteral("host"),
                                 QStringLiteral("folders")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        if (name.isEmpty() || name.contains(QLatin1Char('\\')))
            throw badMember(r.member(QStringLiteral("name")), QStringLiteral("a store's name is not empty and has no \\"));
        m_store = m_db.run(QStringLiteral("INSERT INTO stores(store_id, seq, name, provider, host) VALUES('', ?, ?, ?, ?)"),
                           {seq, name, r.text(QStringLiteral("provider"), kExchange), r.text(QStringLiteral("host"))})
                      .lastInsertId()
                      .toLongLong();
        m_db.run(QStringLiteral("UPDATE stores SET store_id = ? WHERE id = ?"), {makeStoreId(m_store), m_store});
        // The store's root folder holds the fixture's top-level folders.
        const qint64 root = insertFolder(QVariant(), 0, kRootFolder, mapi::kFullAccess, true);
        loadFolders(r, root);
    }

    qint64 insertFolder(const QVariant &parent, int seq, const QString &name, int access, bool eventSource)
    {
        exec(m_db, m_insertFolder, {m_store, parent, seq, name, access, eventSource ? 1 : 0});
        const qint64 row = m_insertFolder.lastInsertId().toLongLong();
        m_db.assignEntryId(IdKind::Folder, m_store, row);
        return row;
    }

    void loadFolders(const Reader &r, qint64 parent)
    {
        const QString list = r.member(QStringLiteral("folders"));
        const QJsonArray folders = r.list(QStringLiteral("folders"));
        for (int i = 0; i < folders.size(); ++i)
            loadFolder(Reader::element(folders, i, list), elementPath(list, i), parent, i);
    }

    void loadFolder(const QJsonObject &o, const QString &path, qint64 parent, int seq)
    {
        const Reader r(o, path, {QStringLiteral("name"), QStringLiteral("access"), QStringLiteral("eventSource"),
                                 QStringLiteral("folders"), QStringLiteral("agents"), QStringLiteral("messages"),
                                 QStringLiteral("hidden")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        if (name.isEmpty() || name.contains(QLatin1Char('\\')))
            throw badMember(r.member(QStringLiteral("name")), QStringLiteral("a folder's name is not empty and has no \\"));
        const qint64 folder =
            insertFolder(parent, seq, name, static_cast<int>(r.number(QStringLiteral("access"), mapi::kFullAccess, 0, 63)),
                         r.flag(QStringLiteral("eventSource"), true));
        const QString agentList = r.member(QStringLiteral("agents"));
        const QJsonArray agents = r.list(QStringLiteral("agents"));
        for (int i = 0; i < agents.size(); ++i)
            loadAgent(Reader::element(agents, i, agentList), elementPath(agentList, i), folder);
        for (const QString &kind : {QStringLiteral("messages"), QStringLiteral("hidden")}) {
            const QString list = r.member(kind);
            const QJsonArray messages = r.list(kind);
            for (int i = 0; i < messages.size(); ++i)
                loadMessage(Reader::element(messages, i, list), elementPath(list, i), folder,
                            kind == QLatin1String("hidden"));
        }
        loadFolders(r, folder);
    }

    std::pair<qint64, QString> insertMessage(qint64 folder, bool hidden, const QString &cls, const QString &subject,
                                             const QString &created, const QString &modified, const QVariant &received)
    {
        exec(m_db, m_insertMessage, {folder, hidden ? 1 : 0, cls, subject, created, modified, received, received});
        const qint64 row = m_insertMessage.lastInsertId().toLongLong();
        return {row, m_db.assignEntryId(IdKind::Message, m_store, row)};
    }

    void setField(qint64 message, const QString &tag, const QVariant &value)
    {
        exec(m_db, m_insertField, {message, tag, value});
    }

    void loadAgent(const QJsonObject &o, const QString &path, qint64 folder)
    {
        const Reader r(o, path,
                       {QStringLiteral("name"), QStringLiteral("handler"), QStringLiteral("mask"),
                        QStringLiteral("active"), QStringLiteral("script"), QStringLiteral("log"),
                        QStringLiteral("schedule"), QStringLiteral("createdBy"), QStringLiteral("created"),
                        QStringLiteral("modifiedBy"), QStringLiteral("modified"), QStringLiteral("binding"),
                        QStringLiteral("stateMessage")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        const QString handler = r.text(QStringLiteral("handler"), events::kScriptHandler);
        const QString handlerField = events::memoryOrderHex(handler);
        if (handlerField.isEmpty() || !handler.startsWith(QLatin1Char('{')))
            throw badMember(r.member(QStringLiteral("handler")),
                            QStringLiteral("expected a class identifier like {69E54151-B371-11D0-BCD9-00AA00C1AB1C}"));
        const int mask = static_cast<int>(r.number(QStringLiteral("mask"), 2, 0, 15));
        const bool active = r.flag(QStringLiteral("active"), true);
        const QString created = r.time(QStringLiteral("created"), m_now);
        const QString modified = r.time(QStringLiteral("modified"), created);
        const QByteArray createdBy = r.bytes(QStringLiteral("createdBy"), m_user);
        const QByteArray modifiedBy = r.bytes(QStringLiteral("modifiedBy"), QString::fromLatin1(createdBy));
        const QByteArray script = r.bytes(QStringLiteral("script"));
        const QByteArray log = r.bytes(QStringLiteral("log"));
        const bool withBinding = r.flag(QStringLiteral("binding"), true);
        const bool withState = r.flag(QStringLiteral("stateMessage"), true);
        if (!withState && !log.isEmpty())
            throw badMember(r.member(QStringLiteral("log")),
                            QStringLiteral("an agent without a state message has nowhere to keep a log"));
        const Reader s(r.object(QStringLiteral("schedule")), r.member(QStringLiteral("schedule")),
                       {QStringLiteral("type"), QStringLiteral("interval"), QStringLiteral("start"),
                        QStringLiteral("end"), QStringLiteral("days"), QStringLiteral("at")});
        const QVariantList schedule = {s.number(QStringLiteral("type"), 0, 0, 3),
                                       s.number(QStringLiteral("interval"), 0, -32768, 32767),
                                       s.clock(QStringLiteral("start"), 0),
                                       s.clock(QStringLiteral("end"), 0),
                                       s.number(QStringLiteral("days"), 0, 0, 127),
                                       s.clock(QStringLiteral("at"), 0)};

        // The binding message, then the state message, as the service makes them.
        const auto [message, messageId] =
            insertMessage(folder, true, mapi::kBindingClass, name, created, modified, QVariant());
        setField(message, mapi::tagKey(mapi::PR_SCRIPT), script);
        setField(message, mapi::tagKey(mapi::PR_HANDLER), handlerField.toLatin1());
        setField(message, mapi::tagKey(mapi::PR_CREATOR_NAME), createdBy);
        setField(message, mapi::tagKey(mapi::PR_LAST_MODIFIER_NAME), modifiedBy);
        QVariant stateId;
        if (withState) {
            const auto [state, id] = insertMessage(folder, true, mapi::kStateClass, name, created, modified, QVariant());
            setField(state, mapi::tagKey(mapi::PR_AGENT_LOG), log);
            stateId = id;
        }
        if (withBinding) {
            QVariantList values = {folder, name, active ? 1 : 0, mask, handler, messageId, stateId};
            values += schedule;
            m_db.run(QStringLiteral("INSERT INTO bindings(folder, name, active, event_mask, handler_class, message,"
                                    " state_message, sched_type, sched_interval, sched_start, sched_end, sched_days,"
                                    " sched_at) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                     values);
        }
    }

    void loadMessage(const QJsonObject &o, const QString &path, qint64 folder, bool hidden)
    {
        const Reader r(o, path,
                       {QStringLiteral("subject"), QStringLiteral("class"), QStringLiteral("from"),
                        QStringLiteral("received"), QStringLiteral("created"), QStringLiteral("modified"),
                        QStringLiteral("fields"), QStringLiteral("map"), QStringLiteral("instance"),
                        QStringLiteral("votes")});
        // Ordinary messages were received (now, unless told); hidden ones
        // never were. An empty time says "not received".
        QVariant received;
        if (r.has(QStringLiteral("received")) ? !r.text(QStringLiteral("received")).isEmpty() : !hidden)
            received = r.time(QStringLiteral("received"), m_now);
        const QString created = r.time(QStringLiteral("created"), received.isNull() ? m_now : received.toString());
        const QString cls = r.text(QStringLiteral("class"), QStringLiteral("IPM.Note"));
        if (cls.isEmpty())
            throw badMember(r.member(QStringLiteral("class")), QStringLiteral("a message needs a class"));
        const qint64 message = insertMessage(folder, hidden, cls, r.text(QStringLiteral("subject"), QString(), true),
                                             created, r.time(QStringLiteral("modified"), created), received)
                                   .first;
        if (r.has(QStringLiteral("from")))
            setField(message, mapi::tagKey(mapi::PR_SENDER_NAME), r.bytes(QStringLiteral("from")));
        loadFields(r, message);
        loadMap(r, message);
        if (r.has(QStringLiteral("instance"))) {
            const Reader in(r.object(QStringLiteral("instance")), r.member(QStringLiteral("instance")),
                            {QStringLiteral("rui"), QStringLiteral("status"), QStringLiteral("row")});
            m_db.run(QStringLiteral("INSERT INTO instances(message, rui, status, row) VALUES(?, ?, ?, ?)"),
                     {message, in.number(QStringLiteral("rui"), 0, INT_MIN, INT_MAX), in.text(QStringLiteral("status")),
                      in.number(QStringLiteral("row"), 0, INT_MIN, INT_MAX)});
        }
        const QString voteList = r.member(QStringLiteral("votes"));
        const QJsonArray votes = r.list(QStringLiteral("votes"));
        for (int i = 0; i < votes.size(); ++i) {
            const Reader v(Reader::element(votes, i, voteList), elementPath(voteList, i),
                           {QStringLiteral("name"), QStringLiteral("status"), QStringLiteral("at")});
            m_db.run(QStringLiteral("INSERT INTO votes(message, seq, name, status, at) VALUES(?, ?, ?, ?, ?)"),
                     {message, i, v.text(QStringLiteral("name")), v.text(QStringLiteral("status")),
                      v.text(QStringLiteral("at"))});
        }
    }

    void loadFields(const Reader &r, qint64 message)
    {
        const QJsonObject fields = r.object(QStringLiteral("fields"));
        for (auto it = fields.begin(); it != fields.end(); ++it) {
            const QString fpath = r.member(QStringLiteral("fields")) + QLatin1Char('.') + it.key();
            const QString tag = fieldTag(it.key(), fpath);
            const double number = it.value().toDouble();
            if (it.value().isDouble() && std::abs(number) < 9.0e15 && number == std::trunc(number))
                setField(message, tag, static_cast<qint64>(number));
            else if (it.value().isDouble())
                setField(message, tag, number);
            else if (it.value().isString())
                setField(message, tag, fixture::latin1(it.value().toString(), fpath));
            else
                throw badMember(fpath, QStringLiteral("expected a text or a number"));
        }
    }

    void loadMap(const Reader &r, qint64 message)
    {
        const QString list = r.member(QStringLiteral("map"));
        const QJsonArray map = r.list(QStringLiteral("map"));
        for (int i = 0; i < map.size(); ++i) {
            const Reader m(Reader::element(map, i, list), elementPath(list, i),
                           {QStringLiteral("activity"), QStringLiteral("action"), QStringLiteral("flags"),
                            QStringLiteral("args")});
            const QJsonArray args = m.list(QStringLiteral("args"));
            for (int a = 0; a < args.size(); ++a)
                if (!args.at(a).isString())
                    throw badMember(elementPath(m.member(QStringLiteral("args")), a), QStringLiteral("expected a text"));
            m_db.run(QStringLiteral("INSERT INTO map_rows(message, row, activity, action, flags, args)"
                                    " VALUES(?, ?, ?, ?, ?, ?)"),
                     {message, i, m.text(QStringLiteral("activity")), m.text(QStringLiteral("action")),
                      m.text(QStringLiteral("flags")), QString::fromUtf8(QJsonDocument(args).toJson(QJsonDocument::Compact))});
        }
    }

    Database &m_db;
    const QString m_now;
    QString m_user;
    qint64 m_store = 0;
    QSqlQuery m_insertFolder;
    QSqlQuery m_insertMessage;
    QSqlQuery m_insertField;
};

} // namespace

void fillFromFixture(Database &db, const QJsonObject &fixture)
{
    db.transaction([&] { Loader(db).load(fixture); });
}

void loadFixture(const QJsonObject &fixture, const QString &dbPath)
{
    buildStoreFile(dbPath, [&](Database &db) { fillFromFixture(db, fixture); });
}

QJsonObject readFixtureFile(const QString &jsonPath)
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
        const qsizetype lineStart = before.lastIndexOf('\n') + 1;
        const qsizetype line = before.count('\n') + 1;
        const qsizetype column = QString::fromUtf8(before.mid(lineStart)).size() + 1;
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("%1:%2:%3: %4").arg(jsonPath).arg(line).arg(column).arg(error.errorString()));
    }
    if (!doc.isObject())
        throw com::ComError(com::err::InvalidParameter, kSource,
                            QStringLiteral("%1: expected one object at the top").arg(jsonPath));
    return doc.object();
}

void loadFixture(const QString &jsonPath, const QString &dbPath)
{
    const QJsonObject fixture = readFixtureFile(jsonPath);
    try {
        loadFixture(fixture, dbPath);
    } catch (const com::ComError &e) {
        throw com::ComError(e.number(), e.source(), jsonPath + QStringLiteral(": ") + e.description());
    }
}

} // namespace store
