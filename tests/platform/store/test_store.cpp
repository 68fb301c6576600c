#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/generate.h"
#include "platform/store/schema.h"
#include "tests/support/testenv.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

class TestStore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }
    void badStore_data();
    void badStore();
    void badFixture_data();
    void badFixture();
    void jsonSyntaxNamesTheLine();
    void dumpLoadDumpIsStable();
    void eightBitRoundTrip();
    void generateIsDeterministic();
    void transactionRollsBack();

private:
    QString write(const QString &name, const QByteArray &bytes)
    {
        QFile f(m_home->file(name));
        f.open(QIODevice::WriteOnly);
        f.write(bytes);
        return f.fileName();
    }
    std::unique_ptr<testsupport::TestHome> m_home;
};

void TestStore::badStore_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << "missing" << "does not exist";
    QTest::newRow("not a database") << "text" << "is not a Sorrelin store";
    QTest::newRow("another database") << "foreign" << "is not a Sorrelin store";
    QTest::newRow("other version") << "version" << "is of version 99";
    QTest::newRow("truncated") << "truncated" << "damaged";
}

void TestStore::badStore()
{
    QFETCH(QString, kind);
    QFETCH(QString, message);
    QString path = m_home->file(QStringLiteral("store.db"));
    if (kind == QLatin1String("text")) {
        write(QStringLiteral("store.db"), "just some text, no database at all");
    } else if (kind == QLatin1String("foreign")) {
        auto db = store::Database::create(path);
        db->run(QStringLiteral("DELETE FROM meta"));
    } else if (kind == QLatin1String("version")) {
        auto db = store::Database::create(path);
        db->setMeta(QStringLiteral("schema"), QStringLiteral("99"));
    } else if (kind == QLatin1String("truncated")) {
        store::loadFixture(testsupport::fixture(QStringLiteral("agents.json")), path);
        QFile f(path);
        QVERIFY(f.size() > 8192);
        QVERIFY(f.resize(f.size() / 2));
    }
    const QByteArray before = QFile::exists(path) ? [&] {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        return f.readAll();
    }() : QByteArray();
    try {
        store::Database::open(path);
        QFAIL("a bad store opened");
    } catch (const com::ComError &e) {
        QVERIFY2(e.description().contains(message), qPrintable(e.description()));
        QVERIFY(e.number() != 0);
    }
    // The file is left as it was.
    if (!before.isEmpty()) {
        QFile f(path);
        f.open(QIODevice::ReadOnly);
        QCOMPARE(f.readAll(), before);
    }
}

void TestStore::badFixture_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message");
    QTest::newRow("no user") << QByteArray(R"({"stores": []})") << "user: missing";
    QTest::newRow("unknown member")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "colour": 1}]})") << "stores[0].colour: unknown member";
    QTest::newRow("mask out of range")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "F", "agents": [{"name": "A", "mask": 16}]}]}]})")
        << "stores[0].folders[0].agents[0].mask: expected a whole number from 0 to 15";
    QTest::newRow("bad handler")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "F", "agents": [{"name": "A", "handler": "script"}]}]}]})")
        << "stores[0].folders[0].agents[0].handler: expected a class identifier";
    QTest::newRow("script beyond 8 bits")
        << QByteArray("{\"user\": \"U\", \"stores\": [{\"name\": \"S\", \"folders\": [{\"name\": \"F\", \"agents\": [{\"name\": \"A\", \"script\": \"\\u20ac\"}]}]}]}")
        << "agents[0].script: 8-bit text";
    QTest::newRow("bad time")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "F", "messages": [{"subject": "M", "received": "yesterday"}]}]}]})")
        << "stores[0].folders[0].messages[0].received: expected a time";
    QTest::newRow("nested folder access")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "F", "folders": [{"name": "G", "access": "all"}]}]}]})")
        << "stores[0].folders[0].folders[0].access: expected a whole number";
    QTest::newRow("backslash in a name")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "A\\B"}]}]})")
        << "stores[0].folders[0].name";
}

void TestStore::badFixture()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);
    const QString fixture = write(QStringLiteral("bad.json"), json);
    const QString target = m_home->file(QStringLiteral("bad.db"));
    try {
        store::loadFixture(fixture, target);
        QFAIL("a bad fixture loaded");
    } catch (const com::ComError &e) {
        QVERIFY2(e.description().contains(message), qPrintable(e.description()));
    }
    // Nothing half-written.
    QVERIFY(!QFile::exists(target));
    QVERIFY(!QFile::exists(target + QStringLiteral(".partial")));
}

void TestStore::jsonSyntaxNamesTheLine()
{
    const QString fixture = write(QStringLiteral("syntax.json"), "{\n  \"user\": \"U\",\n  \"stores\": [,]\n}\n");
    try {
        store::loadFixture(fixture, m_home->file(QStringLiteral("x.db")));
        QFAIL("bad JSON loaded");
    } catch (const com::ComError &e) {
        QVERIFY2(e.description().contains(QStringLiteral("syntax.json:3:")), qPrintable(e.description()));
    }
}

void TestStore::dumpLoadDumpIsStable()
{
    const QString first = m_home->file(QStringLiteral("first.db"));
    store::loadFixture(testsupport::sourceDir() + QStringLiteral("/share/demo.json"), first);
    const QJsonObject dump1 = store::dumpStore(*store::Database::open(first));
    const QString second = m_home->file(QStringLiteral("second.db"));
    store::loadFixture(dump1, second);
    const QJsonObject dump2 = store::dumpStore(*store::Database::open(second));
    QCOMPARE(QJsonDocument(dump2).toJson(), QJsonDocument(dump1).toJson());
}

void TestStore::eightBitRoundTrip()
{
    QString script;
    for (int b = 1; b < 256; ++b)
        script += QChar(b);
    QJsonObject agent{{QStringLiteral("name"), QStringLiteral("A")}, {QStringLiteral("script"), script}};
    QJsonObject folder{{QStringLiteral("name"), QStringLiteral("F")}, {QStringLiteral("agents"), QJsonArray{agent}}};
    QJsonObject root{{QStringLiteral("user"), QStringLiteral("U")},
                     {QStringLiteral("stores"), QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("S")},
                                                                       {QStringLiteral("folders"), QJsonArray{folder}}}}}};
    const QString path = m_home->file(QStringLiteral("bytes.db"));
    store::loadFixture(root, path);
    auto db = store::Database::open(path);
    const QByteArray stored =
        db->scalar(QStringLiteral("SELECT value FROM fields WHERE tag = '0x7102001E'")).toByteArray();
    QCOMPARE(stored.size(), 255);
    for (int b = 1; b < 256; ++b)
        QCOMPARE(static_cast<unsigned char>(stored.at(b - 1)), static_cast<unsigned char>(b));
    const QJsonObject dump = store::dumpStore(*db);
    QCOMPARE(dump[QStringLiteral("stores")][0][QStringLiteral("folders")][0][QStringLiteral("agents")][0]
                 [QStringLiteral("script")]
                     .toString(),
             script);
}

void TestStore::generateIsDeterministic()
{
    store::GenerateOptions o;
    o.stores = 2;
    o.folders = 300;
    o.agents = 80;
    o.hidden = 20;
    o.messages = 50;
    o.seed = 7;
    store::generateStore(o, m_home->file(QStringLiteral("a.db")));
    store::generateStore(o, m_home->file(QStringLiteral("b.db")));
    const QJsonObject a = store::dumpStore(*store::Database::open(m_home->file(QStringLiteral("a.db"))));
    const QJsonObject b = store::dumpStore(*store::Database::open(m_home->file(QStringLiteral("b.db"))));
    QCOMPARE(a, b);
    auto db = store::Database::open(m_home->file(QStringLiteral("a.db")));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM folders WHERE parent IS NOT NULL")).toInt(), 300);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM bindings")).toInt(), 80);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM messages WHERE hidden = 0")).toInt(), 50);
}

void TestStore::transactionRollsBack()
{
    auto db = store::Database::create(m_home->file(QStringLiteral("t.db")));
    try {
        db->transaction([&] {
            db->setMeta(QStringLiteral("probe"), QStringLiteral("1"));
            throw com::ComError(1, QStringLiteral("test"), QStringLiteral("stop"));
        });
    } catch (const com::ComError &) {
    }
    QCOMPARE(db->meta(QStringLiteral("probe")), QString());
}

QTEST_GUILESS_MAIN(TestStore)
#include "test_store.moc"
