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
    void badFileNamesFileAndMember();
    void jsonSyntaxNamesLineAndColumn_data();
    void jsonSyntaxNamesLineAndColumn();
    void existingTargetIsRefused();
    void defaults();
    void agentPieces_data();
    void agentPieces();
    void eightBitRoundTrip_data();
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
    QTest::newRow("user not a text") << QByteArray(R"({"user": 7})") << "user: expected a text";
    QTest::newRow("unknown top member")
        << QByteArray(R"({"user": "U", "store": []})") << "store: unknown member";
    QTest::newRow("stores not a list")
        << QByteArray(R"({"user": "U", "stores": {}})") << "stores: expected a list";
    QTest::newRow("store not an object")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S"}, "T"]})") << "stores[1]: expected an object";
    QTest::newRow("store without a name")
        << QByteArray(R"({"user": "U", "stores": [{"folders": []}]})") << "stores[0].name: missing";
    QTest::newRow("unknown store member")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "colour": 1}]})")
        << "stores[0].colour: unknown member";

    QTest::newRow("host twice") << QByteArray(R"({"user": "U", "hosts": [{"name": "H"}, {"name": "h"}]})")
                                << "hosts[1].name: a host of this name is already listed";
    QTest::newRow("author not a text")
        << QByteArray(R"({"user": "U", "hosts": [{"name": "H", "authors": [1]}]})")
        << "hosts[0].authors[0]: expected a text";
    QTest::newRow("handler without a name")
        << QByteArray(
               R"({"user": "U", "hosts": [{"name": "H", "handlers": [{"class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}"}]}]})")
        << "hosts[0].handlers[0].name: missing";

    QTest::newRow("folder not an object")
        << withFolder(R"("folders": [3])") << "stores[0].folders[1].folders[0]: expected an object";
    QTest::newRow("backslash in a folder name")
        << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "A\\B"}]}]})")
        << "stores[0].folders[0].name: a folder's name is not empty and has no \\";
    QTest::newRow("empty folder name")
        << withFolder(R"("folders": [{"name": ""}])")
        << "stores[0].folders[1].folders[0].name: a folder's name is not empty and has no \\";
    QTest::newRow("access a text")
        << withFolder(R"("folders": [{"name": "G", "access": "all"}])")
        << "stores[0].folders[1].folders[0].access: expected a whole number from 0 to 63";
    QTest::newRow("access too large") << withFolder(R"("access": 64)")
                                      << "stores[0].folders[1].access: expected a whole number from 0 to 63";
    QTest::newRow("access a fraction") << withFolder(R"("access": 62.5)")
                                       << "stores[0].folders[1].access: expected a whole number from 0 to 63";
    QTest::newRow("event source a number")
        << withFolder(R"("eventSource": 1)") << "stores[0].folders[1].eventSource: expected true or false";

    QTest::newRow("agent without a name")
        << withFolder(R"("agents": [{"mask": 2}])") << "stores[0].folders[1].agents[0].name: missing";
    QTest::newRow("mask too large") << withAgent(R"("mask": 16)")
                                    << agent + "mask: expected a whole number from 0 to 15";
    QTest::newRow("mask negative") << withAgent(R"("mask": -1)")
                                   << agent + "mask: expected a whole number from 0 to 15";
    QTest::newRow("active a text") << withAgent(R"("active": "yes")")
                                   << agent + "active: expected true or false";
    QTest::newRow("handler without braces")
        << withAgent(R"("handler": "script")")
        << agent + "handler: expected a class identifier like {69E54151-B371-11D0-BCD9-00AA00C1AB1C}";
    QTest::newRow("script beyond 8 bits")
        << withAgent("\"script\": \"caf\\u00e9 \\u20ac\"")
        << agent + "script: 8-bit text may hold only characters U+0000 to U+00FF";
    QTest::newRow("log beyond 8 bits") << withAgent("\"log\": \"\\u0100\"")
                                       << agent + "log: 8-bit text may hold only characters U+0000 to U+00FF";
    QTest::newRow("created by beyond 8 bits")
        << withAgent("\"createdBy\": \"\\u0141ukasz\"")
        << agent + "createdBy: 8-bit text may hold only characters U+0000 to U+00FF";
    QTest::newRow("modified by beyond 8 bits")
        << withAgent("\"modifiedBy\": \"\\u0141ukasz\"")
        << agent + "modifiedBy: 8-bit text may hold only characters U+0000 to U+00FF";
    QTest::newRow("created not a time") << withAgent(R"("created": "yesterday")")
                                        << agent + "created: expected a time \"YYYY-MM-DD HH:MM:SS\"";
    QTest::newRow("modified without seconds") << withAgent(R"("modified": "2026-01-02 03:04")")
                                              << agent + "modified: expected a time \"YYYY-MM-DD HH:MM:SS\"";
    QTest::newRow("schedule type too large") << withAgent(R"("schedule": {"type": 4})")
                                             << agent + "schedule.type: expected a whole number from 0 to 3";
    QTest::newRow("schedule start not a time") << withAgent(R"("schedule": {"type": 1, "start": "25:00"})")
                                               << agent + "schedule.start: expected a time of day \"HH:MM\"";
    QTest::newRow("unknown schedule member")
        << withAgent(R"("schedule": {"every": 5})") << agent + "schedule.every: unknown member";
    QTest::newRow("binding a number")
        << withAgent(R"("binding": 0)") << agent + "binding: expected true or false";

    QTest::newRow("message without a subject") << withFolder(R"("messages": [{"class": "IPM.Note"}])")
                                               << "stores[0].folders[1].messages[0].subject: missing";
    QTest::newRow("hidden message received badly")
        << withFolder(R"("hidden": [{"subject": "H", "received": "soon"}])")
        << "stores[0].folders[1].hidden[0].received: expected a time \"YYYY-MM-DD HH:MM:SS\"";
    QTest::newRow("sender beyond 8 bits")
        << withMessage("\"from\": \"\\u0141ukasz\"")
        << message + "from: 8-bit text may hold only characters U+0000 to U+00FF";
    QTest::newRow("short tag") << withMessage(R"("fields": {"0x7102": "x"})")
                               << message + "fields.0x7102: expected a tag of eight hexadecimal digits";
    QTest::newRow("tag not hexadecimal")
        << withMessage(R"("fields": {"0x7102001G": "x"})")
        << message + "fields.0x7102001G: expected a tag of eight hexadecimal digits";
    QTest::newRow("field a list") << withMessage(R"("fields": {"RouteType": ["x"]})")
                                  << message + "fields.RouteType: expected a text or a number";
    QTest::newRow("field beyond 8 bits")
        << withMessage("\"fields\": {\"RouteType\": \"\\u2192\"}")
        << message + "fields.RouteType: 8-bit text may hold only characters U+0000 to U+00FF";
    QTest::newRow("map row not an object")
        << withMessage(R"("map": [{"activity": "10"}, "20"])") << message + "map[1]: expected an object";
    QTest::newRow("map argument a number") << withMessage(R"("map": [{"activity": "10", "args": ["a", 2]}])")
                                           << message + "map[0].args[1]: expected a text";
    QTest::newRow("instance row a text")
        << withMessage(R"("instance": {"rui": 7, "row": "2"})")
        << message + "instance.row: expected a whole number from -2147483648 to 2147483647";
    QTest::newRow("unknown vote member") << withMessage(R"("votes": [{"name": "B", "vote": "Approve"}])")
                                         << message + "votes[0].vote: unknown member";

    // One folder level more than a store may hold.
    const int levels = store::kMaxFolderLevels + 1;
    QTest::newRow("folders nested too deep")
        << R"({"user": "U", "stores": [{"name": "S", "folders": [)" +
               QByteArray(R"({"name": "F", "folders": [)").repeated(levels) + QByteArray("]}").repeated(levels) +
               "]}]}"
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

void TestFixture::badFileNamesFileAndMember()
{
    const QString fixture = write(QStringLiteral("bad.json"), withAgent(R"("mask": 99)"));
    try {
        store::loadFixture(fixture, m_home->file(QStringLiteral("bad.db")));
        QFAIL("a bad fixture loaded");
    } catch (const com::ComError &e) {
        QCOMPARE(e.description(),
                 fixture +
                     QStringLiteral(
                         ": stores[0].folders[1].agents[1].mask: expected a whole number from 0 to 15"));
    }
    QCOMPARE(files(), QStringList{QStringLiteral("bad.json")});
}

void TestFixture::jsonSyntaxNamesLineAndColumn_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("where");
    QTest::newRow("third line") << QByteArray("{\n  \"user\": \"U\",\n  \"stores\": [,]\n}\n") << ":3:";
    QTest::newRow("first line") << QByteArray("{\"user\": \"U\", \"stores\": tru}") << ":1:";
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
    QCOMPARE(db->meta(QStringLiteral("user")), QStringLiteral("U"));
    QCOMPARE(db->scalar(QStringLiteral("SELECT provider FROM stores")).toString(),
             QStringLiteral("Microsoft Exchange Server"));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM folders WHERE access = 63 AND event_source = 1"))
                 .toInt(),
             3);
    // The store's root folder holds the fixture's top-level folders.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM folders WHERE parent IS NULL")).toInt(), 1);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM folders f JOIN folders r ON r.id = f.parent"
                                       " WHERE r.parent IS NULL"))
                 .toInt(),
             2);
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
    QTest::newRow("other handler") << QByteArray(R"("handler": "{00112233-4455-6677-8899-AABBCCDDEEFF}")")
                                   << "33221100554477668899AABBCCDDEEFF" << 1 << 1;
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
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM messages WHERE hidden = 1 AND subject = 'Only'"
                                       " AND class = 'IPC.Microsoft.EventBinding'"))
                 .toInt(),
             1);
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

void TestFixture::eightBitRoundTrip_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("tag");
    QTest::newRow("script") << "script"
                            << "0x7102001E";
    QTest::newRow("log") << "log"
                         << "0x780C001E";
    QTest::newRow("created by") << "createdBy"
                                << "0x3FF8001E";
    QTest::newRow("field") << "field"
                           << "RouteType";
    QTest::newRow("sender") << "from"
                            << "0x0C1A001E";
}

void TestFixture::eightBitRoundTrip()
{
    QFETCH(QString, where);
    QFETCH(QString, tag);
    const QString text = highHalf();
    QJsonObject folder{{QStringLiteral("name"), QStringLiteral("F")}};
    if (where == QLatin1String("field") || where == QLatin1String("from")) {
        QJsonObject message{{QStringLiteral("subject"), QStringLiteral("M")}};
        if (where == QLatin1String("from"))
            message.insert(QStringLiteral("from"), text);
        else
            message.insert(QStringLiteral("fields"), QJsonObject{{tag, text}});
        folder.insert(QStringLiteral("messages"), QJsonArray{message});
    } else {
        folder.insert(QStringLiteral("agents"),
                      QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("A")}, {where, text}}});
    }
    const QJsonObject fixture{
        {QStringLiteral("user"), QStringLiteral("U")},
        {QStringLiteral("stores"), QJsonArray{QJsonObject{{QStringLiteral("name"), QStringLiteral("S")},
                                                          {QStringLiteral("folders"), QJsonArray{folder}}}}}};
    const QString path = m_home->file(QStringLiteral("bytes.db"));
    store::loadFixture(fixture, path);
    const auto db = store::Database::open(path);
    // One character to one byte, never re-encoded.
    const QByteArray stored =
        db->scalar(QStringLiteral("SELECT value FROM fields WHERE tag = ?"), {tag}).toByteArray();
    QCOMPARE(stored.size(), 128);
    for (int i = 0; i < 128; ++i)
        QCOMPARE(static_cast<unsigned char>(stored.at(i)), static_cast<unsigned char>(0x80 + i));
    // And back to the same characters in a dump.
    const QJsonObject dumped =
        store::dumpStore(*db)[QStringLiteral("stores")][0][QStringLiteral("folders")][0].toObject();
    const QJsonValue back =
        where == QLatin1String("field") ? dumped[QStringLiteral("messages")][0][QStringLiteral("fields")][tag]
        : where == QLatin1String("from") ? dumped[QStringLiteral("messages")][0][QStringLiteral("from")]
                                         : dumped[QStringLiteral("agents")][0][where];
    QCOMPARE(back.toString(), text);
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

    // The dump keeps what the fixture said, member by member where it said it.
    QFile file(fixture);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject original = parse(file.readAll());
    QCOMPARE(dump1[QStringLiteral("user")], original[QStringLiteral("user")]);
    QCOMPARE(dump1[QStringLiteral("stores")].toArray().size(),
             original[QStringLiteral("stores")].toArray().size());
    QCOMPARE(dump1[QStringLiteral("hosts")].toArray().size(),
             original[QStringLiteral("hosts")].toArray().size());
}

QTEST_GUILESS_MAIN(TestFixture)
#include "test_fixture.moc"
