// Fixtures: what a bad one is told, that it leaves nothing behind, and that a
// dump loads back into the same store.
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "tests/support/testenv.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

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

} // namespace

class TestFixture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home = std::make_unique<testsupport::TestHome>(); }
    void cleanup() { m_home.reset(); }

    void badMember_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("message");
        const QString agent = u"stores[0].folders[1].agents[1]."_s;
        QTest::newRow("no user") << QByteArray(R"({"stores": []})") << "user: missing";
        QTest::newRow("backslash in a folder name")
            << QByteArray(R"({"user": "U", "stores": [{"name": "S", "folders": [{"name": "A\\B"}]}]})")
            << "stores[0].folders[0].name: a folder's name is not empty and has no \\";
        QTest::newRow("mask too large")
            << withAgent(R"("mask": 16)") << agent + "mask: expected a whole number from 0 to 15";
        QTest::newRow("active a text")
            << withAgent(R"("active": "yes")") << agent + "active: expected true or false";
        QTest::newRow("script beyond 8 bits")
            << withAgent("\"script\": \"caf\\u00e9 \\u20ac\"")
            << agent + "script: 8-bit text may hold only characters U+0000 to U+00FF";
        QTest::newRow("modified without seconds")
            << withAgent(R"("modified": "2026-01-02 03:04")")
            << agent + "modified: expected a time \"YYYY-MM-DD HH:MM:SS\"";
        QTest::newRow("modified on no day") << withAgent(R"("modified": "2026-02-30 03:04:05")")
                                            << agent + "modified: expected a time \"YYYY-MM-DD HH:MM:SS\"";
        QTest::newRow("received at no hour")
            << withFolder(R"("messages": [{"subject": "M", "received": "2026-01-02 24:00:00"}])")
            << "stores[0].folders[1].messages[0].received: expected a time \"YYYY-MM-DD HH:MM:SS\"";
        QTest::newRow("tag not hexadecimal")
            << withFolder(R"("messages": [{"subject": "M", "fields": {"0x7102001G": "x"}}])")
            << "stores[0].folders[1].messages[0].fields.0x7102001G: expected a tag of eight hexadecimal "
               "digits";
    }
    void badMember()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, message);
        try {
            store::loadFixture(QJsonDocument::fromJson(json).object(), m_home->file(u"bad.db"_s));
            QFAIL("a bad fixture loaded");
        } catch (const com::ComError &e) {
            QCOMPARE(e.description(), message);
            QCOMPARE(e.number(), com::err::InvalidParameter);
        }
        // Nothing half-written: no store, no partial file, no log beside them.
        QCOMPARE(files(), QStringList());
    }

    void jsonSyntaxNamesLineAndColumn_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("where");
        QTest::newRow("third line") << QByteArray("{\n  \"user\": \"U\",\n  \"stores\": [,]\n}\n") << ":3:";
    }
    void jsonSyntaxNamesLineAndColumn()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, where);
        const QString fixture = write(u"syntax.json"_s, json);
        try {
            store::loadFixture(fixture, m_home->file(u"x.db"_s));
            QFAIL("bad JSON loaded");
        } catch (const com::ComError &e) {
            // FILE:LINE:COLUMN: what Qt says; the column is a number from 1.
            QVERIFY2(e.description().startsWith(fixture + where), qPrintable(e.description()));
            const QString rest = e.description().mid(fixture.size() + where.size());
            bool ok = false;
            QVERIFY2(rest.section(u':', 0, 0).toInt(&ok) >= 1 && ok, qPrintable(e.description()));
        }
        QCOMPARE(files(), QStringList{u"syntax.json"_s});
    }

    void existingTargetIsRefused()
    {
        const QString target = write(u"taken.db"_s, "not mine to replace");
        QVERIFY_THROWS_EXCEPTION(
            com::ComError,
            store::loadFixture(QJsonDocument::fromJson(withFolder("\"access\": 7")).object(), target));
        QFile f(target);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("not mine to replace"));
        QCOMPARE(files(), QStringList{u"taken.db"_s});
    }

    void dumpLoadDump_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::newRow("demo profile") << testsupport::sourceDir() + u"/share/demo.json"_s;
        QTest::newRow("test agents") << testsupport::fixture(u"agents.json"_s);
    }
    void dumpLoadDump()
    {
        QFETCH(QString, fixture);
        const QString first = m_home->file(u"first.db"_s);
        store::loadFixture(fixture, first);
        const QJsonObject dump1 = store::dumpStore(*store::Database::open(first));
        const QString second = m_home->file(u"second.db"_s);
        store::loadFixture(dump1, second);
        const QJsonObject dump2 = store::dumpStore(*store::Database::open(second));
        QCOMPARE(QJsonDocument(dump2).toJson(), QJsonDocument(dump1).toJson());
        QCOMPARE(dump1[u"stores"_s].toArray().size(), 4);
    }

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

QTEST_GUILESS_MAIN(TestFixture)
#include "test_fixture.moc"
