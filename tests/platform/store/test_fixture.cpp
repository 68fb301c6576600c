// Fixtures: what a bad one is told, that it leaves nothing behind, and that a
// dump loads back into the same store.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "platform/store/folderlevels.h"
#include "tests/support/testenv.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>

namespace {

/// A fixture with one store whose folder "F" holds `folder`'s members.
QByteArray withFolder(const QByteArray &members)
{
    return R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "E"}, {"name": "F", )" + members +
           "}]}]}";
}

/// A fixture whose folder "F" holds a second agent with `members`.
QByteArray withAgent(const QByteArray &members)
{
    return withFolder(R"("agents": [{"name": "A"}, {"name": "B", )" + members + "}]");
}

/// A fixture whose folder "F" holds an ordinary message with `members`.
QByteArray withMessage(const QByteArray &members)
{
    return withFolder(R"("messages": [{"subject": "M", )" + members + "}]");
}

QJsonObject parse(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("bad test JSON: %s", qPrintable(error.errorString()));
    return doc.object();
}

/// Every character U+0080..U+00FF, the bytes that a re-encoding would change.
QString highHalf()
{
    QString text;
    for (int c = 0x80; c <= 0xFF; ++c)
        text += QChar(c);
    return text;
}

} // namespace

class TestFixture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }

    void badMember_data();
    void badMember();
    void jsonSyntaxNamesLineAndColumn_data();
    void jsonSyntaxNamesLineAndColumn();
    void existingTargetIsRefused();
    void defaults();
    void agentPieces_data();
    void agentPieces();
    void eightBitRoundTrip();
    void dumpLoadDump_data();
    void dumpLoadDump();

private:
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile f(m_home->file(name));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("could not write a test file");
        return f.fileName();
    }
    QStringList files() const { return QDir(m_home->path()).entryList(QDir::Files | QDir::Hidden); }

    std::unique_ptr<testsupport::TestHome> m_home;
};

void TestFixture::badMember_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message");
    const QString agent = QStringLiteral("stores[0].folders[1].agents[1].");
    const QString message = QStringLiteral("stores[0].folders[1].messages[0].");

    QTest::newRow("no user") << QByteArray(R"({"stores": []})") << "user: missing";
    QTest::newRow("unknown top member")
        << QByteArray(R"({"user": "U", "store": []})") << "store: unknown member";

    QTest::newRow("backslash in a folder name")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "A\\B"}]}]})")
        << "stores[0].folders[0].name: a folder's name is not empty and has no \\";
    QTest::newRow("access too large") << withFolder(R"("access": 64)")
                                      << "stores[0].folders[1].access: expected a whole number from 0 to 63";

    QTest::newRow("mask too large") << withAgent(R"("mask": 16)")
                                    << agent + "mask: expected a whole number from 0 to 15";
    QTest::newRow("active a text") << withAgent(R"("active": "yes")")
                                   << agent + "active: expected true or false";
    QTest::newRow("script beyond 8 bits")
        << withAgent("\"script\": \"caf\\u00e9 \\u20ac\"")
        << agent + "script: 8-bit text may hold only characters U+0000 to U+00FF";
    QTest::newRow("modified without seconds") << withAgent(R"("modified": "2026-01-02 03:04")")
                                              << agent + "modified: expected a time \"YYYY-MM-DD HH:MM:SS\"";
    QTest::newRow("unknown schedule member")
        << withAgent(R"("schedule": {"every": 5})") << agent + "schedule.every: unknown member";

    QTest::newRow("message without a subject") << withFolder(R"("messages": [{"class": "IPM.Note"}])")
                                               << "stores[0].folders[1].messages[0].subject: missing";
    QTest::newRow("tag not hexadecimal")
        << withMessage(R"("fields": {"0x7102001G": "x"})")
        << message + "fields.0x7102001G: expected a tag of eight hexadecimal digits";
    QTest::newRow("field beyond 8 bits")
        << withMessage("\"fields\": {\"RouteType\": \"\\u2192\"}")
        << message + "fields.RouteType: 8-bit text may hold only characters U+0000 to U+00FF";

    // One folder level more than a store may hold.
    const int levels = store::kMaxFolderLevels + 1;
    QTest::newRow("folders nested too deep")
        << R"({"user": "U", "stores": [{"name": "S", "folders": [)" +
               QByteArray(R"({"name": "F", "folders": [)").repeated(levels) +
               QByteArray("]}").repeated(levels) + "]}]}"
        << QStringLiteral("stores[0].folders[0]") + QStringLiteral(".folders[0]").repeated(levels - 2) +
               QStringLiteral(".folders: folders nest at most %1 levels deep").arg(store::kMaxFolderLevels);
}

void TestFixture::badMember()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);
    const QString target = m_home->file(QStringLiteral("bad.db"));
    try {
        store::loadFixture(parse(json), target);
        QFAIL("a bad fixture loaded");
    } catch (const com::ComError &e) {
        QCOMPARE(e.description(), message);
        QCOMPARE(e.number(), com::err::InvalidParameter);
    }
    // Nothing half-written: no store, no partial file, no log beside them.
    QCOMPARE(files(), QStringList());
}

void TestFixture::jsonSyntaxNamesLineAndColumn_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("where");
    QTest::newRow("third line") << QByteArray("{\n  \"user\": \"U\",\n  \"stores\": [,]\n}\n") << ":3:";
    QTest::newRow("cut short") << QByteArray("{\n\"user\": \"U\",\n\"stores\": [\n") << ":4:";
}

void TestFixture::jsonSyntaxNamesLineAndColumn()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, where);
    const QString fixture = write(QStringLiteral("syntax.json"), json);
    try {
        store::loadFixture(fixture, m_home->file(QStringLiteral("x.db")));
        QFAIL("bad JSON loaded");
    } catch (const com::ComError &e) {
        // FILE:LINE:COLUMN: what Qt says; the column is a number from 1.
        QVERIFY2(e.description().startsWith(fixture + where), qPrintable(e.description()));
        const QString rest = e.description().mid(fixture.size() + where.size());
        bool ok = false;
        QVERIFY2(rest.section(QLatin1Char(':'), 0, 0).toInt(&ok) >= 1 && ok, qPrintable(e.description()));
    }
    QCOMPARE(files(), QStringList{QStringLiteral("syntax.json")});
}

void TestFixture::existingTargetIsRefused()
{
    const QString target = write(QStringLiteral("taken.db"), "not mine to replace");
    QVERIFY_THROWS_EXCEPTION(com::ComError, store::loadFixture(parse(withFolder("\"access\": 7")), target));
    QFile f(target);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(), QByteArray("not mine to replace"));
    QCOMPARE(files(), QStringList{QStringLiteral("taken.db")});
}

void TestFixture::defaults()
{
    const QString path = m_home->file(QStringLiteral("d.db"));
    store::loadFixture(parse(withAgent(R"("script": "x")")), path);
    const auto db = store::Database::open(path);
    QCOMPARE(db->scalar(QStringLiteral("SELECT provider FROM stores")).toString(),
             QStringLiteral("Microsoft Exchange Server"));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM folders WHERE access = 63 AND event_source = 1"))
                 .toInt(),
             3);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM bindings WHERE event_mask = 2 AND active = 1"
                                       " AND handler_class = '{69E54151-B371-11D0-BCD9-00AA00C1AB1C}'"))
                 .toInt(),
             2);
    // Created by the fixture's user unless told.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM fields WHERE tag IN ('0x3FF8001E', '0x3FFA001E')"
                                       " AND value = CAST('U' AS BLOB)"))
                 .toInt(),
             4);
}

void TestFixture::agentPieces_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QString>("handlerField");
    QTest::addColumn<int>("bindings");
    QTest::addColumn<int>("stateMessages");
    QTest::newRow("script agent") << QByteArray(R"("mask": 3)") << "5141E56971B3D011BCD900AA00C1AB1C" << 1
                                  << 1;
    QTest::newRow("routing agent") << QByteArray(R"("handler": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}")")
                                   << "5141E66971B3D011BCD900AA00C1AB1C" << 1 << 1;
    QTest::newRow("binding lost") << QByteArray(R"("binding": false)") << "5141E56971B3D011BCD900AA00C1AB1C"
                                  << 0 << 1;
    QTest::newRow("no state message")
        << QByteArray(R"("stateMessage": false)") << "5141E56971B3D011BCD900AA00C1AB1C" << 1 << 0;
}

void TestFixture::agentPieces()
{
    QFETCH(QByteArray, members);
    QFETCH(QString, handlerField);
    QFETCH(int, bindings);
    QFETCH(int, stateMessages);
    const QString path = m_home->file(QStringLiteral("a.db"));
    store::loadFixture(parse(withFolder(R"("agents": [{"name": "Only", "log": "", )" + members + "}]")),
                       path);
    const auto db = store::Database::open(path);
    QCOMPARE(
        db->scalar(QStringLiteral("SELECT f.value FROM fields f JOIN messages m ON m.id = f.message"
                                  " WHERE m.class = 'IPC.Microsoft.EventBinding' AND f.tag = '0x7804001E'"))
            .toByteArray(),
        handlerField.toLatin1());
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM messages WHERE hidden = 1"
                                       " AND class = 'IPC.Microsoft.ICS.EventBinding'"))
                 .toInt(),
             stateMessages);
    // The binding names both messages by their entry identifiers.
    QCOMPARE(
        db->scalar(QStringLiteral("SELECT COUNT(*) FROM bindings b JOIN messages m ON m.entry_id = b.message"
                                  " WHERE m.class = 'IPC.Microsoft.EventBinding'"))
            .toInt(),
        bindings);
    if (bindings && stateMessages)
        QCOMPARE(
            db->scalar(QStringLiteral("SELECT COUNT(*) FROM bindings b JOIN messages m ON m.entry_id ="
                                      " b.state_message WHERE m.class = 'IPC.Microsoft.ICS.EventBinding'"))
                .toInt(),
            1);
}

void TestFixture::eightBitRoundTrip()
{
    // A script and a named field of every character U+0080..U+00FF.
    const QString text = highHalf();
    const QJsonObject folder{
        {QStringLiteral("name"), QStringLiteral("F")},
        {QStringLiteral("agents"), QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("A")},
                                                          {QStringLiteral("script"), text}}}},
        {QStringLiteral("messages"),
         QJsonArray{
             QJsonObject{{QStringLiteral("subject"), QStringLiteral("M")},
                         {QStringLiteral("fields"), QJsonObject{{QStringLiteral("RouteType"), text}}}}}}};
    const QString path = m_home->file(QStringLiteral("bytes.db"));
    store::loadFixture(
        QJsonObject{{QStringLiteral("user"), QStringLiteral("U")},
                    {QStringLiteral("stores"),
                     QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("S")},
                                            {QStringLiteral("folders"), QJsonArray{folder}}}}}},
        path);
    const auto db = store::Database::open(path);
    // One character to one byte, never re-encoded.
    QByteArray bytes;
    for (int c = 0x80; c <= 0xFF; ++c)
        bytes += static_cast<char>(c);
    for (const char *tag : {"0x7102001E", "RouteType"})
        QCOMPARE(
            db->scalar(QStringLiteral("SELECT value FROM fields WHERE tag = ?"), {QString::fromLatin1(tag)})
                .toByteArray(),
            bytes);
    // And back to the same characters in a dump.
    const QJsonObject dumped =
        store::dumpStore(*db)[QStringLiteral("stores")][0][QStringLiteral("folders")][0].toObject();
    QCOMPARE(dumped[QStringLiteral("agents")][0][QStringLiteral("script")].toString(), text);
    QCOMPARE(dumped[QStringLiteral("messages")][0][QStringLiteral("fields")][QStringLiteral("RouteType")]
                 .toString(),
             text);
}

void TestFixture::dumpLoadDump_data()
{
    QTest::addColumn<QString>("fixture");
    QTest::newRow("demo profile") << testsupport::sourceDir() + QStringLiteral("/share/demo.json");
    QTest::newRow("test agents") << testsupport::fixture(QStringLiteral("agents.json"));
}

void TestFixture::dumpLoadDump()
{
    QFETCH(QString, fixture);
    const QString first = m_home->file(QStringLiteral("first.db"));
    store::loadFixture(fixture, first);
    const QJsonObject dump1 = store::dumpStore(*store::Database::open(first));
    const QString second = m_home->file(QStringLiteral("second.db"));
    store::loadFixture(dump1, second);
    const QJsonObject dump2 = store::dumpStore(*store::Database::open(second));
    QCOMPARE(QJsonDocument(dump2).toJson(), QJsonDocument(dump1).toJson());
    QCOMPARE(dump1[QStringLiteral("stores")].toArray().size(), 4);
}

QTEST_GUILESS_MAIN(TestFixture)
#include "test_fixture.moc"
