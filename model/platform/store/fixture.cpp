#include "platform/store/fixture.h"

#include "platform/events/guid.h"
#include "platform/mapi/tags.h"
#include "platform/store/buildstore.h"
#include "platform/store/database.h"
#include "platform/store/fixturestream.h"
#include "platform/store/ids.h"
#include "platform/store/rowbatches.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlQuery>
#include <QTemporaryFile>
#include <QTime>

#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace store {

namespace {

const QString kSource = QStringLiteral("sorrelin-store");
const QString kExchange = QStringLiteral("Microsoft Exchange Server");

com::ComError bad(const QString &path, const QString &what)
{
    return com::ComError(com::err::InvalidParameter, kSource, path + QStringLiteral(": ") + what);
}

/// The path of a member of a fixture, made only when an error names it.
using Path = std::function<QString()>;

/// 8-bit text: one character U+0000..U+00FF to one byte.
QByteArray latin1(const QString &text, const Path &path)
{
    for (const QChar c : text)
        if (c.unicode() > 0xFF)
            throw bad(path(), QStringLiteral("8-bit text may hold only characters U+0000 to U+00FF"));
    return text.toLatin1();
}

/// Reads the members of one fixture object, naming the member path in every
/// error.
class Reader {
public:
    Reader(const QJsonObject &object, const QString &path, const QStringList &known)
        : Reader(object, std::function<QString()>([path] { return path; }), known)
    {
    }
    /// The same with the path made only when an error names it.
    Reader(const QJsonObject &object, Path path, const QStringList &known)
        : m_object(object), m_path(std::move(path))
    {
        for (auto it = object.begin(); it != object.end(); ++it)
            if (!known.contains(it.key()))
                throw bad(member(it.key()), QStringLiteral("unknown member"));
    }

    QString member(const QString &name) const
    {
        const QString path = m_path();
        return path.isEmpty() ? name : path + QLatin1Char('.') + name;
    }
    /// The path of member `name`, and of its `index`th element, for a
    /// reader of it; they name this reader's path, which must outlive them.
    Path at(const QString &name) const
    {
        return [this, name] { return member(name); };
    }
    Path at(const QString &name, int index) const
    {
        return [this, name, index] { return QStringLiteral("%1[%2]").arg(member(name)).arg(index); };
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

    QByteArray bytes(const QString &name) const { return latin1(text(name), at(name)); }

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
        // Read digit by digit as a date and a time of day: Qt's parser of
        // formats costs more than the rest of a message.
        static const QString shape = QStringLiteral("0000-00-00 00:00:00");
        bool digits = t.size() == shape.size();
        for (qsizetype i = 0; digits && i < t.size(); ++i)
            digits = shape.at(i) == QLatin1Char('0') ? t.at(i).isDigit() && t.at(i).unicode() < 0x80
                                                     : t.at(i) == shape.at(i);
        const auto number = [&t](qsizetype from, qsizetype size) {
            return QStringView(t).mid(from, size).toInt();
        };
        if (!digits || !QDate::isValid(number(0, 4), number(5, 2), number(8, 2)) ||
            !QTime::isValid(number(11, 2), number(14, 2), number(17, 2)))
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

private:
    QJsonObject m_object;
    std::function<QString()> m_path;
};

QJsonObject element(const QJsonArray &array, int i, const Path &path)
{
    if (!array.at(i).isObject())
        throw bad(path(), QStringLiteral("expected an object"));
    return array.at(i).toObject();
}

QJsonObject element(const QJsonArray &array, int i, const QString &list)
{
    return element(array, i, [&] { return QStringLiteral("%1[%2]").arg(list).arg(i); });
}

const QStringList kDocumentMembers = {QStringLiteral("user"), QStringLiteral("profile"),
                                      QStringLiteral("hosts"), QStringLiteral("stores")};
const QStringList kStoreMembers = {QStringLiteral("name"), QStringLiteral("provider"), QStringLiteral("host"),
                                   QStringLiteral("folders")};
const QStringList kFolderMembers = {QStringLiteral("name"),        QStringLiteral("access"),
                                    QStringLiteral("eventSource"), QStringLiteral("folders"),
                                    QStringLiteral("agents"),      QStringLiteral("messages"),
                                    QStringLiteral("hidden")};
/// A folder's members that fill it, in the order they are filled in.
const QStringList kFolderContents = {QStringLiteral("agents"), QStringLiteral("messages"),
                                     QStringLiteral("hidden")};

/// What a first reading of a fixture finds: its user, and for each folder,
/// in the document's order, how many message rows its agents, messages and
/// hidden messages take. The load then gives each folder's messages the rows
/// they take when its members come in the order a dump writes them, in
/// whatever order they come, so that a store has the same identifiers
/// however its fixture is written.
class RowCounter : public FixtureEvents {
public:
    /// A document the load will refuse; it says why.
    struct Misshapen {};

    QString user;
    /// The first row of each folder's agents, messages and hidden messages.
    std::vector<std::array<qint64, 3>> firstRows;

    void begin(FixtureLevel level, int) override
    {
        m_open.push_back(level == FixtureLevel::Folder ? static_cast<qint64>(m_rows.size()) : -1);
        if (level == FixtureLevel::Folder)
            m_rows.push_back({0, 0, 0});
    }
    void member(const QString &key, const QJsonValue &value) override
    {
        if (m_open.size() == 1 && key == QLatin1String("user") && value.isString())
            user = value.toString();
        if (m_open.back() < 0)
            return;
        std::array<qint64, 3> &rows = m_rows[static_cast<size_t>(m_open.back())];
        if (key == QLatin1String("agents"))
            for (const QJsonValue &agent : value.toArray())
                rows[0] += agent[QLatin1String("stateMessage")] == QJsonValue(false) ? 1 : 2;
        else if (key == QLatin1String("messages"))
            rows[1] += value.toInteger();
        else if (key == QLatin1String("hidden"))
            rows[2] += value.toInteger();
    }
    /// Only the agents are read whole; of the messages, how many there are.
    Telling telling(FixtureLevel level, const QString &key) const override
    {
        if (level == FixtureLevel::Document)
            return key == QLatin1String("user") ? Telling::Whole : Telling::Nothing;
        if (level == FixtureLevel::Store)
            return Telling::Nothing;
        return key == QLatin1String("agents")                                       ? Telling::Whole
               : key == QLatin1String("messages") || key == QLatin1String("hidden") ? Telling::Count
                                                                                    : Telling::Nothing;
    }
    void beginList() override {}
    void endList() override {}
    void end() override
    {
        m_open.pop_back();
        if (!m_open.empty())
            return;
        qint64 next = 1;
        for (const std::array<qint64, 3> &rows : m_rows) {
            firstRows.push_back({next, next + rows[0], next + rows[0] + rows[1]});
            next += rows[0] + rows[1] + rows[2];
        }
    }
    [[noreturn]] void wrongShape(const QString &) override { throw Misshapen{}; }

private:
    std::vector<qint64> m_open; ///< the folder of each open object, -1 for none
    std::vector<std::array<qint64, 3>> m_rows;
};

/// The tables a load fills a batch at a time, in the order their rows are
/// written: each after those it refers to.
enum BatchedTable : size_t {
    kFolderRows,
    kMessageRows,
    kFieldRows,
    kBindingRows,
    kMapRows,
    kInstanceRows,
    kVoteRows
};

std::vector<RowBatches::Table> batchedTables()
{
    const auto columns = [](const char *list) {
        return QString::fromLatin1(list).split(QStringLiteral(", "));
    };
    return {
        {QStringLiteral("folders"), columns("id, entry_id, store, parent, seq, name, access, event_source")},
        {QStringLiteral("messages"),
         columns("id, entry_id, folder, hidden, class, subject, created, modified, received, delivered")},
        // A fixture may give a field twice, by tag and by name: the last wins.
        {QStringLiteral("fields"), columns("message, tag, value"),
         QStringLiteral("ON CONFLICT(message, tag) DO UPDATE SET value = excluded.value"), 2},
        {QStringLiteral("bindings"),
         columns("folder, name, active, event_mask, handler_class, message, state_message, sched_type,"
                 " sched_interval, sched_start, sched_end, sched_days, sched_at")},
        {QStringLiteral("map_rows"), columns("message, row, activity, action, flags, args")},
        {QStringLiteral("instances"), columns("message, rui, status, row")},
        {QStringLiteral("votes"), columns("message, seq, name, status, at")},
    };
}

/// Fills a store from a fixture as it is read: each store and folder is
/// made when its list of folders begins (or when it ends, without one),
/// its agents and messages go in as soon as it is made, and what it is told
/// after that is set when it ends. Only the objects on the way down to the
/// current folder are held.
class Loader : public FixtureEvents {
public:
    /// What a first reading found: the fixture's "user", the author of
    /// agents that name none, and the folders' message rows.
    Loader(Database &db, const RowCounter &counted)
        : m_db(db), m_now(Database::now()), m_user(counted.user), m_firstRows(counted.firstRows),
          m_rows(db, batchedTables()),
          m_lastFolder(db.scalar(QStringLiteral("SELECT COALESCE(max(id), 0) FROM folders")).toLongLong())
    {
    }

    void begin(FixtureLevel level, int index) override
    {
        const qint64 parent = m_frames.empty() ? 0 : m_frames.back().row;
        m_frames.push_back(Frame{level, index, parent});
        if (level == FixtureLevel::Folder && m_folders < m_firstRows.size())
            m_frames.back().nextRows = m_firstRows[m_folders];
        m_folders += level == FixtureLevel::Folder;
    }

    void member(const QString &key, const QJsonValue &value) override
    {
        Frame &f = m_frames.back();
        if (!known(f.level).contains(key))
            throw bad(memberPath(m_frames.size() - 1, key), QStringLiteral("unknown member"));
        f.members.insert(key, value);
        if (f.level == FixtureLevel::Document && key == QLatin1String("hosts"))
            loadHosts(reader(m_frames.size() - 1));
        else if (f.made && f.level == FixtureLevel::Folder && kFolderContents.contains(key))
            fill(m_frames.size() - 1, {key});
    }

    void beginList() override { make(m_frames.size() - 1); }
    void endList() override {}

    void end() override
    {
        make(m_frames.size() - 1);
        finish(m_frames.size() - 1);
        m_frames.pop_back();
        if (m_frames.empty())
            m_rows.flush();
    }

    [[noreturn]] void wrongShape(const QString &what) override
    {
        if (what.isEmpty())
            throw com::ComError(com::err::InvalidParameter, kSource,
                                QStringLiteral("expected one object at the top"));
        const size_t i = m_frames.size() - 1;
        throw bad(memberPath(i, m_frames[i].level == FixtureLevel::Document ? QStringLiteral("stores")
                                                                            : QStringLiteral("folders")) +
                      what,
                  QStringLiteral("expected an object"));
    }

private:
    struct Frame {
        FixtureLevel level;
        int index = 0;
        qint64 parent = 0; ///< the row of the folder above; for a store, none
        QJsonObject members = {};
        qint64 row = 0;     ///< a folder's row; a store's root folder
        qint64 batched = 0; ///< a folder's place among the folder rows given to the batches
        bool made = false;
        /// The next message row of its agents, messages and hidden messages.
        std::array<qint64, 3> nextRows = {0, 0, 0};
    };

    static const QStringList &known(FixtureLevel level)
    {
        return level == FixtureLevel::Document ? kDocumentMembers
               : level == FixtureLevel::Store  ? kStoreMembers
                                               : kFolderMembers;
    }

    /// The path of the object of frame `i`: "stores[0].folders[2]".
    QString path(size_t i) const
    {
        QString text;
        for (size_t k = 1; k <= i; ++k)
            text += (k == 1 ? QStringLiteral("stores[%1]") : QStringLiteral(".folders[%1]"))
                        .arg(m_frames[k].index);
        return text;
    }
    QString memberPath(size_t i, const QString &name) const
    {
        return i == 0 ? name : path(i) + QLatin1Char('.') + name;
    }
    Reader reader(size_t i) const
    {
        return Reader(m_frames[i].members, std::function<QString()>([this, i] { return path(i); }),
                      known(m_frames[i].level));
    }

    /// Makes the store or folder of frame `i` with what is known of it; what
    /// comes later is set when it ends.
    void make(size_t i)
    {
        Frame &f = m_frames[i];
        if (f.made || f.level == FixtureLevel::Document)
            return;
        f.made = true;
        if (f.level == FixtureLevel::Store) {
            m_store = insert(QStringLiteral("INSERT INTO stores(store_id, seq, name, provider, host)"
                                            " VALUES('', ?, '', '', '')"),
                             {f.index});
            exec(QStringLiteral("UPDATE stores SET store_id = ? WHERE id = ?"),
                 {makeStoreId(m_store), m_store});
            f.row = insertFolder(QVariant(), 0, QStringLiteral("Top of Information Store"), f.batched);
            return;
        }
        f.row = insertFolder(f.parent, f.index, QStringLiteral(""), f.batched);
        fill(i, kFolderContents);
    }

    /// The agents, messages and hidden messages of frame `i` among `kinds`.
    void fill(size_t i, const QStringList &kinds)
    {
        const Reader r = reader(i);
        const qint64 folder = m_frames[i].row;
        for (const QString &kind : kinds) {
            if (!m_frames[i].members.contains(kind))
                continue;
            m_nextRow = &m_frames[i].nextRows[static_cast<size_t>(kFolderContents.indexOf(kind))];
            const QJsonArray list = r.array(kind);
            for (int k = 0; k < list.size(); ++k) {
                const Path item = r.at(kind, k);
                if (kind == QLatin1String("agents"))
                    loadAgent(element(list, k, item), item, folder);
                else
                    loadMessage(element(list, k, item), item, folder, kind == QLatin1String("hidden"));
            }
        }
    }

    /// Checks and sets what frame `i` was told of itself.
    void finish(size_t i)
    {
        const Frame &f = m_frames[i];
        const Reader r = reader(i);
        if (f.members.contains(QStringLiteral("folders")) || f.members.contains(QStringLiteral("stores")))
            r.array(f.level == FixtureLevel::Document ? QStringLiteral("stores") : QStringLiteral("folders"));
        if (f.level == FixtureLevel::Document) {
            m_db.setMeta(QStringLiteral("user"), r.text(QStringLiteral("user"), QString(), true));
            m_db.setMeta(QStringLiteral("profile"),
                         r.text(QStringLiteral("profile"), QStringLiteral("Demo")));
        } else if (f.level == FixtureLevel::Store) {
            exec(QStringLiteral("UPDATE stores SET name = ?, provider = ?, host = ? WHERE id = ?"),
                 {r.text(QStringLiteral("name"), QString(), true),
                  r.text(QStringLiteral("provider"), kExchange), r.text(QStringLiteral("host"), QString()),
                  m_store});
        } else {
            const QString name = r.text(QStringLiteral("name"), QString(), true);
            if (name.isEmpty() || name.contains(QLatin1Char('\\')))
                throw bad(r.member(QStringLiteral("name")),
                          QStringLiteral("a folder's name is not empty and has no \\"));
            const int access = r.number(QStringLiteral("access"), 63, 0, 63);
            const int eventSource = r.flag(QStringLiteral("eventSource"), true) ? 1 : 0;
            if (QVariantList *row = m_rows.pending(kFolderRows, f.batched))
                *row = folderRow(f.row, f.parent, f.index, name, access, eventSource);
            else
                exec(QStringLiteral("UPDATE folders SET name = ?, access = ?, event_source = ? WHERE id = ?"),
                     {name, access, eventSource, f.row});
        }
    }

    void loadHosts(const Reader &r)
    {
        const QJsonArray hosts = r.array(QStringLiteral("hosts"));
        for (int i = 0; i < hosts.size(); ++i)
            loadHost(element(hosts, i, QStringLiteral("hosts")), QStringLiteral("hosts[%1]").arg(i));
    }

    void loadHost(const QJsonObject &o, const QString &path)
    {
        const Reader r(o, path,
                       {QStringLiteral("name"), QStringLiteral("authors"), QStringLiteral("handlers")});
        const QString name = r.text(QStringLiteral("name"), QString(), true);
        QSqlQuery &listed = exec(QStringLiteral("SELECT 1 FROM hosts WHERE name = ?"), {name});
        const bool taken = listed.next();
        listed.finish();
        if (taken)
            throw bad(r.member(QStringLiteral("name")),
                      QStringLiteral("a host of this name is already listed"));
        const bool restricted = r.has(QStringLiteral("authors"));
        const qint64 host = insert(QStringLiteral("INSERT INTO hosts(name, restricted) VALUES(?, ?)"),
                                   {name, restricted ? 1 : 0});
        const QJsonArray authors = r.array(QStringLiteral("authors"));
        for (int i = 0; i < authors.size(); ++i) {
            if (!authors.at(i).isString())
                throw bad(QStringLiteral("%1.authors[%2]").arg(path).arg(i),
                          QStringLiteral("expected a text"));
            exec(QStringLiteral(
                     "INSERT INTO host_authors(host, \"user\") VALUES(?, ?) ON CONFLICT DO NOTHING"),
                 {host, authors.at(i).toString()});
        }
        const QJsonArray handlers = r.array(QStringLiteral("handlers"));
        for (int i = 0; i < handlers.size(); ++i) {
            const QString hpath = QStringLiteral("%1.handlers[%2]").arg(path).arg(i);
            const Reader h(element(handlers, i, path + QStringLiteral(".handlers")), hpath,
                           {QStringLiteral("class"), QStringLiteral("name")});
            exec(QStringLiteral("INSERT INTO handlers(host, seq, class_id, name) VALUES(?, ?, ?, ?)"),
                 {host, i, h.text(QStringLiteral("class"), QString(), true),
                  h.text(QStringLiteral("name"), QString(), true)});
        }
    }

    /// Runs `sql` through a statement prepared once for the whole load.
    QSqlQuery &exec(const QString &sql, const QVariantList &values = {})
    {
        auto it = m_statements.find(sql);
        if (it == m_statements.end())
            it = m_statements.insert(sql, m_db.prepare(sql));
        for (int i = 0; i < values.size(); ++i)
            it->bindValue(i, values.at(i));
        m_db.exec(*it);
        return *it;
    }

    /// The same for an INSERT, giving the new row's id.
    qint64 insert(const QString &sql, const QVariantList &values)
    {
        QSqlQuery &q = exec(m_db.returningId(sql), values);
        return m_db.insertedId(q);
    }

    /// Sets the entry identifier of a message in a row the store chose.
    QString assignEntryId(qint64 row)
    {
        const QString id = makeEntryId(m_store, IdKind::Message, row);
        exec(QStringLiteral("UPDATE messages SET entry_id = ? WHERE id = ?"), {id, row});
        return id;
    }

    /// A folder's row for the batches, with all its columns.
    QVariantList folderRow(qint64 row, const QVariant &parent, int seq, const QString &name, int access,
                           int eventSource) const
    {
        return {row,        makeEntryId(m_store, IdKind::Folder, row), m_store, parent, seq, name, access,
                eventSource};
    }

    /// A new folder, with the access and events of a folder that says
    /// nothing of them until it ends; `batched` is set to its place in the
    /// batches.
    qint64 insertFolder(const QVariant &parent, int seq, const QString &name, qint64 &batched)
    {
        const qint64 row = ++m_lastFolder;
        batched = m_rows.add(kFolderRows, folderRow(row, parent, seq, name, 63, 1));
        return row;
    }

    qint64 insertMessage(qint64 folder, bool hidden, const QString &cls, const QString &subject,
                         const QString &created, const QString &modified, const QVariant &received)
    {
        const qint64 row = m_nextRow && *m_nextRow ? (*m_nextRow)++ : 0;
        const QVariantList values = {folder,  hidden ? 1 : 0, cls,      subject,
                                     created, modified,       received, received};
        if (!row)
            return insertMessageRow(values);
        m_lastId = makeEntryId(m_store, IdKind::Message, row);
        m_rows.add(kMessageRows, QVariantList{row, m_lastId} + values);
        return row;
    }

    /// A message in a row that the store chooses, for a folder the first
    /// reading didn't count.
    qint64 insertMessageRow(const QVariantList &values)
    {
        // The store chooses after the rows given to it so far.
        m_rows.flush();
        const qint64 row =
            insert(QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created,"
                                  " modified, received, delivered) VALUES(?, ?, ?, ?, ?, ?, ?, ?)"),
                   values);
        m_lastId = assignEntryId(row);
        return row;
    }

    void setField(qint64 message, const QString &tag, const QVariant &value)
    {
        m_rows.add(kFieldRows, {message, tag, value});
    }

    void loadAgent(const QJsonObject &o, const Path &path, qint64 folder)
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
        const Reader s(r.object(QStringLiteral("schedule")), r.at(QStringLiteral("schedule")),
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
                 latin1(createdBy, r.at(QStringLiteral("createdBy"))));
        setField(message, mapi::tagKey(mapi::PR_LAST_MODIFIER_NAME),
                 latin1(r.text(QStringLiteral("modifiedBy"), createdBy), r.at(QStringLiteral("modifiedBy"))));
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
            m_rows.add(kBindingRows, values);
        }
    }

    /// A message's "fields": tags ("0x7102001E") or names ("RouteType").
    void loadFields(const Reader &r, qint64 message)
    {
        const QJsonObject fields = r.object(QStringLiteral("fields"));
        for (auto it = fields.begin(); it != fields.end(); ++it) {
            const Path fpath = [&r, key = it.key()] {
                return r.member(QStringLiteral("fields")) + QLatin1Char('.') + key;
            };
            QString tag = it.key();
            if (tag.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
                bool ok = false;
                const uint value = tag.mid(2).toUInt(&ok, 16);
                if (!ok || tag.size() != 10)
                    throw bad(fpath(), QStringLiteral("expected a tag of eight hexadecimal digits"));
                tag = mapi::tagKey(value);
            }
            if (it.value().isDouble())
                setField(message, tag, it.value().toInt());
            else if (it.value().isString())
                setField(message, tag, latin1(it.value().toString(), fpath));
            else
                throw bad(fpath(), QStringLiteral("expected a text or a number"));
        }
    }

    /// A message's "map": its rows in order.
    void loadMap(const Reader &r, qint64 message)
    {
        const QJsonArray map = r.array(QStringLiteral("map"));
        for (int i = 0; i < map.size(); ++i) {
            const Path mpath = r.at(QStringLiteral("map"), i);
            const Reader m(element(map, i, mpath), mpath,
                           {QStringLiteral("activity"), QStringLiteral("action"), QStringLiteral("flags"),
                            QStringLiteral("args")});
            const QJsonArray args = m.array(QStringLiteral("args"));
            for (int a = 0; a < args.size(); ++a)
                if (!args.at(a).isString())
                    throw bad(QStringLiteral("%1.args[%2]").arg(mpath()).arg(a),
                              QStringLiteral("expected a text"));
            m_rows.add(kMapRows, {message, i, m.text(QStringLiteral("activity")),
                                  m.text(QStringLiteral("action")), m.text(QStringLiteral("flags")),
                                  QString::fromUtf8(QJsonDocument(args).toJson(QJsonDocument::Compact))});
        }
    }

    void loadMessage(const QJsonObject &o, const Path &path, qint64 folder, bool hidden)
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
            const Reader in(r.object(QStringLiteral("instance")), r.at(QStringLiteral("instance")),
                            {QStringLiteral("rui"), QStringLiteral("status"), QStringLiteral("row")});
            m_rows.add(kInstanceRows, {message, in.number(QStringLiteral("rui"), 0, INT_MIN, INT_MAX),
                                       in.text(QStringLiteral("status")),
                                       in.number(QStringLiteral("row"), 0, INT_MIN, INT_MAX)});
        }
        const QJsonArray votes = r.array(QStringLiteral("votes"));
        for (int i = 0; i < votes.size(); ++i) {
            const Path vpath = r.at(QStringLiteral("votes"), i);
            const Reader v(element(votes, i, vpath), vpath,
                           {QStringLiteral("name"), QStringLiteral("status"), QStringLiteral("at")});
            m_rows.add(kVoteRows, {message, i, v.text(QStringLiteral("name")),
                                   v.text(QStringLiteral("status")), v.text(QStringLiteral("at"))});
        }
    }

    Database &m_db;
    QString m_now;
    QString m_user;
    qint64 m_store = 0;
    QString m_lastId;
    std::vector<Frame> m_frames;
    QHash<QString, QSqlQuery> m_statements;
    std::vector<std::array<qint64, 3>> m_firstRows;
    RowBatches m_rows;
    qint64 m_lastFolder = 0;     ///< the row of the folder made last
    size_t m_folders = 0;        ///< how many folders have begun
    qint64 *m_nextRow = nullptr; ///< the next message row of the list being filled
};

/// Counts what a load needs to know ahead, by reading the document once.
template <class Read> RowCounter countRows(Read &&read)
{
    RowCounter counter;
    try {
        read(counter);
    } catch (const RowCounter::Misshapen &) {
        // The load itself says what is wrong, and where.
    }
    return counter;
}

} // namespace

void loadFixture(const QJsonObject &fixture, const QString &dbPath)
{
    const QByteArray text = QJsonDocument(fixture).toJson(QJsonDocument::Compact);
    const RowCounter counted = countRows([&](FixtureEvents &events) { readFixtureText(text, events); });
    buildStore(dbPath, [&](Database &db) {
        Loader loader(db, counted);
        try {
            readFixtureText(text, loader);
        } catch (const FixtureSyntaxError &e) {
            throw e.error;
        }
    });
}

void loadFixture(const QString &jsonPath, const QString &dbPath)
{
    try {
        const RowCounter counted =
            countRows([&](FixtureEvents &events) { readFixtureFile(jsonPath, events); });
        buildStore(dbPath, [&](Database &db) {
            Loader loader(db, counted);
            readFixtureFile(jsonPath, loader);
        });
    } catch (const FixtureSyntaxError &e) {
        throw e.error;
    } catch (const com::ComError &e) {
        throw com::ComError(e.number(), e.source(),
                            e.description().startsWith(jsonPath)
                                ? e.description()
                                : jsonPath + QStringLiteral(": ") + e.description());
    }
}

void copyStore(const Database &from, const QString &to)
{
    QTemporaryFile document;
    if (!document.open())
        throw com::ComError(
            com::err::FileAccess, kSource,
            QStringLiteral("A temporary file could not be made: %1").arg(document.errorString()));
    dumpStore(from, document);
    document.close();
    try {
        const RowCounter counted =
            countRows([&](FixtureEvents &events) { readFixtureFile(document.fileName(), events); });
        buildStore(to, [&](Database &db) {
            Loader loader(db, counted);
            readFixtureFile(document.fileName(), loader);
        });
    } catch (const FixtureSyntaxError &e) {
        throw e.error;
    }
}

} // namespace store
