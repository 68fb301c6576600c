// Opening a store: every kind of bad file is refused with a clear error and
// left as it was; writes are all or nothing.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/ids.h"
#include "tests/support/testenv.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

class TestDatabase : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }

    // The files the program and the store tool meet through the driver are
    // in the store safety tests; these are the ones only a store can be.
    void badStore_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("message");
        QTest::newRow("a folder") << "folder"
                                  << "is a folder, not a Sorrelin store.";
        QTest::newRow("no schema version") << ""
                                           << "no schema version";
        QTest::newRow("older version") << "0"
                                       << "is of version 0; this program reads version 1";
    }
    void badStore()
    {
        QFETCH(QString, kind);
        QFETCH(QString, message);
        const QString path = m_home->file(u"store.db"_s);
        if (kind == "folder"_L1)
            QVERIFY(QDir(m_home->path()).mkdir(u"store.db"_s));
        else if (kind.isEmpty())
            store::Database::create(path)->run(u"DELETE FROM meta"_s);
        else
            store::Database::create(path)->setMeta(u"schema"_s, kind);
        const QByteArray before = read(path);
        const QStringList filesBefore =
            QDir(m_home->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        try {
            store::Database::open(path);
            QFAIL("a bad store opened");
        } catch (const com::ComError &e) {
            QCOMPARE(e.number(), com::err::Corrupt);
            QVERIFY2(e.description().contains(path), qPrintable(e.description()));
            QVERIFY2(e.description().contains(message), qPrintable(e.description()));
        }
        // The file is left as it was, and nothing is made beside it.
        QCOMPARE(read(path), before);
        QCOMPARE(QDir(m_home->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), filesBefore);
    }

    void identifiersAreUpperCaseHexadecimalOfTheirWidth_data()
    {
        QTest::addColumn<QString>("made");
        QTest::addColumn<QString>("expected");
        QTest::newRow("store") << store::makeStoreId(0xAB) << u"5EA10000000000AB"_s;
        QTest::newRow("folder") << store::makeEntryId(0x1F, store::IdKind::Folder, 0xABC)
                                << u"000000000000001F0001A1B2C3D400000000000000000ABC"_s;
        QTest::newRow("message") << store::makeEntryId(2, store::IdKind::Message, 0xFFFFFFFFFFF)
                                 << u"00000000000000020002A1B2C3D4000000000FFFFFFFFFFF"_s;
    }
    void identifiersAreUpperCaseHexadecimalOfTheirWidth()
    {
        QFETCH(QString, made);
        QFETCH(QString, expected);
        QCOMPARE(made, expected);
    }

    void transactionsJoinAndRollBack()
    {
        const QString path = agentsStore();
        const auto first = store::Database::open(path);
        // A second open by another name of the same file joins the first, and
        // a transaction begun inside another joins it and goes with it.
        const auto second = store::Database::open(m_home->path() + u"/./store.db"_s);
        try {
            first->transaction([&] {
                first->setMeta(u"outer"_s, u"1"_s);
                second->transaction([&] { second->setMeta(u"inner"_s, u"1"_s); });
                QCOMPARE(first->meta(u"inner"_s), u"1"_s);
                throw com::ComError(1, u"test"_s, u"stop"_s);
            });
            QFAIL("the error did not come through");
        } catch (const com::ComError &e) {
            QCOMPARE(e.description(), u"stop"_s);
        }
        QCOMPARE(second->meta(u"outer"_s), QString());
        QCOMPARE(first->meta(u"inner"_s), QString());
    }

    void lockedStoreIsWaitedForThenRefusedInWords()
    {
        const QString path = agentsStore();
        const auto db = store::Database::open(path);
        QVector<bool> told;
        db->setBusyObserver([&](bool waiting) { told << waiting; });
        store::setBusyWait(std::chrono::milliseconds(200));
        {
            // Another program holds the write lock for longer than a write waits.
            const testsupport::StoreWriteLock lock(path);
            QVERIFY(lock.held());
            try {
                db->transaction([&] { db->setMeta(u"probe"_s, u"1"_s); });
                QFAIL("a write went through another program's lock");
            } catch (const com::ComError &e) {
                QCOMPARE(e.number(), com::err::Busy);
                QVERIFY2(e.description().contains(u"The store %1 is locked by another program."_s.arg(
                             QDir::toNativeSeparators(path))),
                         qPrintable(e.description()));
                QVERIFY2(e.description().contains("nothing was written"_L1), qPrintable(e.description()));
            }
            QCOMPARE(told, (QVector<bool>{true, false}));
        }
        // Once the lock is gone the same write goes through.
        db->transaction([&] { db->setMeta(u"probe"_s, u"2"_s); });
        QCOMPARE(db->meta(u"probe"_s), u"2"_s);
    }

private:
    QByteArray read(const QString &path) const
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QString agentsStore() const
    {
        const QString path = m_home->file(u"store.db"_s);
        store::loadFixture(testsupport::fixture(u"agents.json"_s), path);
        return path;
    }

    std::unique_ptr<testsupport::TestHome> m_home;
};

QTEST_GUILESS_MAIN(TestDatabase)
#include "test_database.moc"
