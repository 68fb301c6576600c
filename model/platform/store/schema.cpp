#include "platform/store/schema.h"

#include <QRegularExpression>

namespace store {

namespace {

// One store file holds everything the mail server and its event service would
// keep for one profile. Entry identifiers are upper-case hexadecimal strings
// made once by the store and never reused. Text that the server treats as
// 8-bit (scripts, logs, string fields) is kept as BLOB so that no byte is
// re-encoded on the way in or out.
QStringList sqliteStatements()
{
    return {
        QStringLiteral("CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT NOT NULL)"),

        // Event service hosts, the handlers each knows, and the users allowed
        // to write bindings there (no row at all: everyone may).
        QStringLiteral("CREATE TABLE hosts(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE COLLATE NOCASE,"
                       " restricted INTEGER NOT NULL DEFAULT 0)"),
        QStringLiteral(
            "CREATE TABLE host_authors(host INTEGER NOT NULL REFERENCES hosts(id) ON DELETE CASCADE,"
            " \"user\" TEXT NOT NULL, PRIMARY KEY(host, \"user\")) WITHOUT ROWID"),
        QStringLiteral(
            "CREATE TABLE handlers(id INTEGER PRIMARY KEY, host INTEGER NOT NULL REFERENCES hosts(id)"
            " ON DELETE CASCADE, seq INTEGER NOT NULL, class_id TEXT NOT NULL, name TEXT NOT NULL)"),
        QStringLiteral("CREATE INDEX handlers_host ON handlers(host, seq)"),

        // Message stores of the profile, in the order the session lists them.
        QStringLiteral(
            "CREATE TABLE stores(id INTEGER PRIMARY KEY, store_id TEXT NOT NULL UNIQUE, seq INTEGER NOT NULL,"
            " name TEXT NOT NULL, provider TEXT NOT NULL, host TEXT NOT NULL DEFAULT '')"),

        // Folders; the root folder of a store has no parent. `access` is the
        // PR_ACCESS of every user; folder_access overrides it for one user.
        QStringLiteral("CREATE TABLE folders(id INTEGER PRIMARY KEY, entry_id TEXT UNIQUE,"
                       " store INTEGER NOT NULL REFERENCES stores(id) ON DELETE CASCADE,"
                       " parent INTEGER REFERENCES folders(id) ON DELETE CASCADE, seq INTEGER NOT NULL,"
                       " name TEXT NOT NULL, access INTEGER NOT NULL DEFAULT 63,"
                       " event_source INTEGER NOT NULL DEFAULT 1)"),
        QStringLiteral("CREATE INDEX folders_parent ON folders(parent, seq)"),
        QStringLiteral("CREATE INDEX folders_store ON folders(store, parent)"),
        QStringLiteral(
            "CREATE TABLE folder_access(folder INTEGER NOT NULL REFERENCES folders(id) ON DELETE CASCADE,"
            " \"user\" TEXT NOT NULL, access INTEGER NOT NULL, PRIMARY KEY(folder, \"user\")) WITHOUT ROWID"),

        // Ordinary and hidden (associated) messages of a folder.
        QStringLiteral("CREATE TABLE messages(id INTEGER PRIMARY KEY, entry_id TEXT UNIQUE,"
                       " folder INTEGER NOT NULL REFERENCES folders(id) ON DELETE CASCADE,"
                       " hidden INTEGER NOT NULL, class TEXT NOT NULL, subject TEXT NOT NULL DEFAULT '',"
                       " created TEXT NOT NULL, modified TEXT NOT NULL, received TEXT, delivered TEXT)"),
        QStringLiteral("CREATE INDEX messages_folder ON messages(folder, hidden, class, id)"),

        // Fields of a message by tag ("0x7102001E") or by name ("RouteType").
        QStringLiteral(
            "CREATE TABLE fields(message INTEGER NOT NULL REFERENCES messages(id) ON DELETE CASCADE,"
            " tag TEXT NOT NULL, value, PRIMARY KEY(message, tag)) WITHOUT ROWID"),

        // Event bindings of a folder's event source, in the source's order.
        // `message` is the binding message, `state_message` the state message.
        QStringLiteral("CREATE TABLE bindings(id INTEGER PRIMARY KEY,"
                       " folder INTEGER NOT NULL REFERENCES folders(id) ON DELETE CASCADE,"
                       " name TEXT NOT NULL DEFAULT '', active INTEGER NOT NULL DEFAULT 0,"
                       " event_mask INTEGER NOT NULL DEFAULT 0, handler_class TEXT NOT NULL DEFAULT '',"
                       " message TEXT, state_message TEXT,"
                       " sched_type INTEGER NOT NULL DEFAULT 0, sched_interval INTEGER NOT NULL DEFAULT 0,"
                       " sched_start INTEGER NOT NULL DEFAULT 0, sched_end INTEGER NOT NULL DEFAULT 0,"
                       " sched_days INTEGER NOT NULL DEFAULT 0, sched_at INTEGER NOT NULL DEFAULT 0)"),
        QStringLiteral("CREATE INDEX bindings_folder ON bindings(folder, id)"),

        // Routing: map rows on a message, process instance state, and votes.
        QStringLiteral(
            "CREATE TABLE map_rows(message INTEGER NOT NULL REFERENCES messages(id) ON DELETE CASCADE,"
            " row INTEGER NOT NULL, activity TEXT NOT NULL, action TEXT NOT NULL, flags TEXT NOT NULL,"
            " args TEXT NOT NULL DEFAULT '[]', PRIMARY KEY(message, row)) WITHOUT ROWID"),
        QStringLiteral(
            "CREATE TABLE instances(message INTEGER PRIMARY KEY REFERENCES messages(id) ON DELETE CASCADE,"
            " rui INTEGER NOT NULL, status TEXT NOT NULL, row INTEGER NOT NULL)"),
        QStringLiteral(
            "CREATE TABLE votes(message INTEGER NOT NULL REFERENCES messages(id) ON DELETE CASCADE,"
            " seq INTEGER NOT NULL, name TEXT NOT NULL, status TEXT NOT NULL, at TEXT NOT NULL,"
            " PRIMARY KEY(message, seq)) WITHOUT ROWID"),
    };
}

/// The same store in PostgreSQL's words: identity columns for SQLite's row
/// ids, 64-bit integers, BYTEA for the untyped field values, and every text
/// compared byte by byte ("C"), so that it sorts as SQLite sorts it. Host
/// names compare without regard to case on both.
QStringList postgresStatements()
{
    static const QList<std::pair<QRegularExpression, QString>> rewrites = {
        {QRegularExpression(QStringLiteral("\\bid INTEGER PRIMARY KEY\\b")),
         QStringLiteral("id BIGINT GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY")},
        {QRegularExpression(QStringLiteral("\\bINTEGER\\b")), QStringLiteral("BIGINT")},
        {QRegularExpression(QStringLiteral(" WITHOUT ROWID")), QString()},
        {QRegularExpression(QStringLiteral("\\bTEXT\\b(?!( NOT NULL UNIQUE)? COLLATE)")),
         QStringLiteral("TEXT COLLATE \"C\"")},
        {QRegularExpression(QStringLiteral("\\bvalue,")), QStringLiteral("value BYTEA,")},
    };
    QStringList statements{QStringLiteral(
        "CREATE COLLATION nocase (provider = icu, locale = 'und-u-ks-level2', deterministic = false)")};
    for (QString sql : sqliteStatements()) {
        for (const auto &[pattern, replacement] : rewrites)
            sql.replace(pattern, replacement);
        statements << sql;
    }
    return statements;
}

} // namespace

QStringList schemaStatements(Location::Engine engine)
{
    return engine == Location::Engine::PostgreSQL ? postgresStatements() : sqliteStatements();
}

} // namespace store
