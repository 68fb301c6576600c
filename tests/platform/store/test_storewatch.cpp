// The watch on a store file: another connection's commit is news until the
// next reset; the program's own writes never are.
#include "platform/store/database.h"
#include "platform/store/storewatch.h"
#include "tests/support/testenv.h"

#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include <sqlite3.h>

#include <memory>

using namespace Qt::StringLiterals;

class TestStoreWatch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anotherConnectionsCommitIsNews()
    {
        testsupport::TestHome home;
        const QString path = home.file(u"store.db"_s);
        std::unique_ptr<store::Database> db = store::Database::create(path);
        store::StoreWatch watch(*db);
        QSignalSpy changed(&watch, &store::StoreWatch::changed);
        // Another program: a connection of its own to the file.
        sqlite3 *other = nullptr;
        QCOMPARE(sqlite3_open(QFile::encodeName(path).constData(), &other), SQLITE_OK);
        const auto otherWrites = [other](const QByteArray &value) {
            const QByteArray sql = "INSERT INTO meta(key, value) VALUES('other', '" + value +
                                   "') ON CONFLICT(key) DO UPDATE SET value = excluded.value";
            return sqlite3_exec(other, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
        };

        db->transaction([&] { db->setMeta(u"own"_s, u"1"_s); });
        watch.check();
        QCOMPARE(changed.count(), 0);

        QVERIFY(otherWrites("1"));
        watch.check();
        QCOMPARE(changed.count(), 1);
        watch.check();
        QCOMPARE(changed.count(), 1);

        // A change that the refresh after it has read is no news.
        QVERIFY(otherWrites("2"));
        watch.reset();
        watch.check();
        QCOMPARE(changed.count(), 1);

        // The watch looks by itself, every second or so.
        QVERIFY(otherWrites("3"));
        QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 2, 2000);

        // With the store closed the watch has nothing to look at.
        db.reset();
        QVERIFY(otherWrites("4"));
        watch.check();
        QCOMPARE(changed.count(), 2);
        sqlite3_close(other);
    }
};

QTEST_GUILESS_MAIN(TestStoreWatch)
#include "test_storewatch.moc"
