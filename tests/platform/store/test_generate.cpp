// Generated stores: the sizes asked for, and agents that are whole, as the
// program expects to find them.
#include "platform/store/database.h"
#include "platform/store/generate.h"
#include "tests/support/testenv.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestGenerate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sizesAndWholeAgents()
    {
        testsupport::TestHome home;
        // Folders that don't divide among the stores, and more agents than folders.
        store::generateStore({.stores = 4, .folders = 101, .agents = 150, .hidden = 15, .messages = 25},
                             home.file(u"s.db"_s));
        const auto db = store::Database::open(home.file(u"s.db"_s));
        const auto count = [&](const QString &sql) {
            return db->scalar(u"SELECT COUNT(*) FROM "_s + sql).toInt();
        };
        QCOMPARE(count(u"stores"_s), 4);
        QCOMPARE(count(u"folders WHERE parent IS NULL"_s), 4);
        QCOMPARE(count(u"folders WHERE parent IS NOT NULL"_s), 101);
        QCOMPARE(count(u"bindings"_s), 150);
        QCOMPARE(count(u"messages WHERE hidden = 0"_s), 25);
        // Every agent has two hidden messages; the rest are the other hidden ones.
        QCOMPARE(count(u"messages WHERE hidden = 1"_s), 2 * 150 + 15);
        // Each binding names its binding message and its state message, in the
        // binding's own folder.
        QCOMPARE(count(u"bindings b JOIN messages m ON m.entry_id = b.message AND "
                       u"m.folder = b.folder"
                       " AND m.class = 'IPC.Microsoft.EventBinding' AND m.subject = b.name"
                       " JOIN messages s ON s.entry_id = b.state_message AND s.folder = "
                       "b.folder"
                       " AND s.class = 'IPC.Microsoft.ICS.EventBinding'"_s),
                 150);
        // All three kinds of agent occur, each with a script the program knows.
        QCOMPARE(db->scalar(u"SELECT COUNT(DISTINCT handler_class) FROM bindings"_s).toInt(), 3);
        QCOMPARE(count(u"fields WHERE tag = '0x7102001E'"
                       " AND instr(value, CAST('<SCRIPT RunAt=Server Language=' AS BLOB)) = 1"_s),
                 150);
    }
};

QTEST_GUILESS_MAIN(TestGenerate)
#include "test_generate.moc"
