#include "platform/store/generate.h"

#include "platform/events/guid.h"
#include "platform/mapi/tags.h"
#include "platform/store/buildstore.h"
#include "platform/store/database.h"
#include "platform/store/ids.h"

#include <QSqlQuery>

#include <random>

namespace store {

namespace {

const QString kOtherHandler = QStringLiteral("{3A7E5C10-8F21-4B6D-9C44-0D1E2F3A4B5C}");

class Generator {
public:
    Generator(Database &db, const GenerateOptions &o) : m_db(db), m_options(o), m_random(o.seed) {}

    void run()
    {
        m_db.setMeta(QStringLiteral("user"), QStringLiteral("Alice Admin"));
        m_db.setMeta(QStringLiteral("profile"), QStringLiteral("Generated"));
        const qint64 host =
            m_db.insert(QStringLiteral("INSERT INTO hosts(name, restricted) VALUES('EXCH01', 0)"));
        m_db.run(QStringLiteral(
                     "INSERT INTO handlers(host, seq, class_id, name) VALUES(?, 0, ?, 'Script Handler'),"
                     " (?, 1, ?, 'Routing Handler'), (?, 2, ?, 'Archive Handler')"),
                 {host, events::kScriptHandler, host, events::kRoutingHandler, host, kOtherHandler});
        prepare();
        const int stores = qMax(1, m_options.stores);
        for (int s = 0; s < stores; ++s) {
            const int folders = m_options.folders / stores + (s < m_options.folders % stores ? 1 : 0);
            makeStore(s, folders);
        }
        spread();
    }

private:
    void prepare()
    {
        m_folder =
            m_db.prepare(QStringLiteral("INSERT INTO folders(store, parent, seq, name, access, event_source,"
                                        " entry_id) VALUES(?, ?, ?, ?, ?, ?, ?)"));
        m_message =
            m_db.prepare(QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created,"
                                        " modified, received, delivered, entry_id)"
                                        " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)"));
        m_field = m_db.prepare(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"));
        m_binding = m_db.prepare(QStringLiteral(
            "INSERT INTO bindings(folder, name, active, event_mask, handler_class, message, state_message,"
            " sched_type, sched_interval, sched_start, sched_end, sched_days, sched_at)"
            " VALUES(?, ?, 1, ?, ?, ?, ?, ?, 60, 360, 1080, 127, 0)"));
    }

    int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }

    qint64 addFolder(qint64 store, const QVariant &parent, int seq, const QString &name, int access,
                     bool source)
    {
        const qint64 row = ++m_folderRow;
        for (const QVariant &v :
             {QVariant(store), parent, QVariant(seq), QVariant(name), QVariant(access),
              QVariant(source ? 1 : 0), QVariant(makeEntryId(store, IdKind::Folder, row))})
            m_folder.addBindValue(v);
        m_db.exec(m_folder);
        return row;
    }

    void makeStore(int index, int folders)
    {
        const QString name = index == 0
                                 ? QStringLiteral("Public Folders")
                                 : QStringLiteral("Mailbox - User %1").arg(index, 3, 10, QLatin1Char('0'));
        m_db.run(QStringLiteral(
                     "INSERT INTO stores(store_id, seq, name, provider, host) VALUES('', ?, ?, ?, 'EXCH01')"),
                 {index, name, QStringLiteral("Microsoft Exchange Server")});
        const qint64 store = m_db.scalar(QStringLiteral("SELECT max(id) FROM stores")).toLongLong();
        m_db.run(QStringLiteral("UPDATE stores SET store_id = ? WHERE id = ?"), {makeStoreId(store), store});
        m_folderRow = m_db.scalar(QStringLiteral("SELECT COALESCE(max(id), 0) FROM folders")).toLongLong();
        const qint64 root =
            addFolder(store, QVariant(), 0, QStringLiteral("Top of Information Store"), 63, true);
        // In a tree of up to five levels each new folder goes below a folder
        // made before it whose depth allows one more level.
        QVector<std::pair<qint64, int>> parents{{root, 0}};
        QHash<qint64, int> childCount;
        for (int i = 0; i < folders; ++i) {
            const auto [parent, depth] = m_options.shape == FolderShape::Tree
                                             ? parents.at(pick(static_cast<int>(parents.size())))
                                             : parents.constLast();
            const int roll = pick(100);
            const int access = roll < 3 ? 7 : 63;
            const bool source = !(roll >= 3 && roll < 6);
            const qint64 row = addFolder(
                store, parent, childCount[parent]++,
                QStringLiteral("Folder %1").arg(m_folders.size(), 5, 10, QLatin1Char('0')), access, source);
            m_folders.append({row, store});
            if (m_options.shape == FolderShape::Deep ||
                (m_options.shape == FolderShape::Tree && depth + 1 < 5))
                parents.append({row, depth + 1});
        }
    }

    qint64 addMessage(qint64 folder, qint64 store, bool hidden, const QString &cls, const QString &subject)
    {
        const qint64 row = ++m_messageRow;
        const QString time = QStringLiteral("2026-%1-%2 %3:00:00")
                                 .arg(1 + pick(11), 2, 10, QLatin1Char('0'))
                                 .arg(1 + pick(28), 2, 10, QLatin1Char('0'))
                                 .arg(pick(24), 2, 10, QLatin1Char('0'));
        for (const QVariant &v :
             {QVariant(folder), QVariant(hidden ? 1 : 0), QVariant(cls), QVariant(subject), QVariant(time),
              QVariant(time), hidden ? QVariant() : QVariant(time), hidden ? QVariant() : QVariant(time),
              QVariant(makeEntryId(store, IdKind::Message, row))})
            m_message.addBindValue(v);
        m_db.exec(m_message);
        return row;
    }

    void addField(qint64 message, uint32_t tag, const QByteArray &value)
    {
        m_field.addBindValue(message);
        m_field.addBindValue(mapi::tagKey(tag));
        m_field.addBindValue(value);
        m_db.exec(m_field);
    }

    void spread()
    {
        if (m_folders.isEmpty())
            return;
        m_messageRow = m_db.scalar(QStringLiteral("SELECT COALESCE(max(id), 0) FROM messages")).toLongLong();
        const QStringList handlers = {events::kScriptHandler, events::kScriptHandler, events::kScriptHandler,
                                      events::kRoutingHandler, kOtherHandler};
        for (int i = 0; i < m_options.agents; ++i) {
            const auto [folder, store] = m_folders.at(pick(static_cast<int>(m_folders.size())));
            const QString handler = handlers.at(pick(static_cast<int>(handlers.size())));
            const QString name = QStringLiteral("Agent %1").arg(i, 5, 10, QLatin1Char('0'));
            const qint64 message = addMessage(folder, store, true, mapi::kBindingClass, name);
            addField(message, mapi::PR_SCRIPT,
                     QByteArray("<SCRIPT RunAt=Server Language=VBScript>\r\nSub Folder_OnMessageCreated\r\n"
                                "End Sub\r\n</SCRIPT>\r\n"));
            addField(message, mapi::PR_HANDLER, events::memoryOrderHex(handler).toLatin1());
            addField(message, mapi::PR_CREATOR_NAME, "Alice Admin");
            addField(message, mapi::PR_LAST_MODIFIER_NAME, "Alice Admin");
            const qint64 state = addMessage(folder, store, true, mapi::kStateClass, name);
            addField(state, mapi::PR_AGENT_LOG, QByteArray("Agent started\r\n"));
            for (const QVariant &v :
                 {QVariant(folder), QVariant(name), QVariant(handler == events::kRoutingHandler ? 15 : 2),
                  QVariant(handler), QVariant(makeEntryId(store, IdKind::Message, message)),
                  QVariant(makeEntryId(store, IdKind::Message, state)), QVariant(pick(4))})
                m_binding.addBindValue(v);
            m_db.exec(m_binding);
        }
        for (int i = 0; i < m_options.hidden; ++i) {
            const auto [folder, store] = m_folders.at(pick(static_cast<int>(m_folders.size())));
            addMessage(folder, store, true, QStringLiteral("IPM.Microsoft.FolderDesign.NamedView"),
                       QStringLiteral("View %1").arg(i));
        }
        for (int i = 0; i < m_options.messages; ++i) {
            const auto [folder, store] = m_folders.at(pick(static_cast<int>(m_folders.size())));
            const qint64 message = addMessage(folder, store, false, QStringLiteral("IPM.Note"),
                                              QStringLiteral("Message %1").arg(i, 6, 10, QLatin1Char('0')));
            addField(message, mapi::PR_SENDER_NAME, QByteArray("Bob Builder"));
        }
    }

    Database &m_db;
    GenerateOptions m_options;
    std::mt19937 m_random;
    QSqlQuery m_folder, m_message, m_field, m_binding;
    qint64 m_folderRow = 0;
    qint64 m_messageRow = 0;
    QVector<std::pair<qint64, qint64>> m_folders; // folder row, store row
};

} // namespace

void generateStore(const GenerateOptions &options, const QString &dbPath)
{
    buildStore(dbPath, [&](Database &db) { Generator(db, options).run(); });
}

} // namespace store
