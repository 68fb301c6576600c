// Messages and their collections: items, fields as bytes and numbers, the
// changes Update writes, and Update and Delete of a message another session
// has deleted or changed.
#include "platform/mapi/session.h"
#include "tests/support/storekit.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using testkit::errorOf;
using testkit::StoreKit;

namespace {

const QByteArray kFixture =
    R"({"user": "Tess Tester", "hosts": [{"name": "H1", "handlers": []}],
"stores": [{"name": "Mailbox - Tess Tester", "host": "H1", "folders": [{"name": "Inbox",
"agents": [{"name": "First", "created": "2020-01-01 00:00:00", "modified": "2020-01-02 00:00:00",
  "createdBy": "Old Admin", "modifiedBy": "Old Admin"}, {"name": "Second"}],
"hidden": [{"subject": "Routing Map Message", "class": "IPM.Note"},
  {"subject": "Views", "class": "IPC.Microsoft.Views"}],
"messages": [{"subject": "Middle", "from": "Bob", "received": "2026-06-01 12:00:00"},
  {"subject": "Newest", "from": "Carol", "received": "2027-01-01 08:30:00"},
  {"subject": "Oldest", "received": "2025-01-01 00:00:00",
   "fields": {"0x0E080003": 1234, "RouteType": "Serial", "0x7102001E": "caf\u00e9 \u0080\u00ff"}}]},
{"name": "Empty"}]}]})";

const QString kInbox = u"\\Mailbox - Tess Tester\\Inbox"_s;
constexpr int32_t kNotFound = static_cast<int32_t>(0x8004010F);

} // namespace

class TestMessages : public QObject {
    Q_OBJECT

    std::unique_ptr<StoreKit> m_kit;

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanup() { m_kit.reset(); }

    void itemOutsideTheCollection_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("0") << 0;
        QTest::newRow("one past the end") << 3;
    }

    void itemOutsideTheCollection()
    {
        QFETCH(int, index);
        mapi::MessageList bindings = m_kit->folder(kInbox).HiddenMessages();
        bindings.Filter().setType(mapi::kBindingClass);
        QCOMPARE(errorOf([&] { bindings.Item(index); }), kNotFound);
    }

    void fieldValues_data()
    {
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("field");    // a tag in hexadecimal, or a name
        QTest::addColumn<QVariant>("written"); // invalid: as the fixture left it
        QTest::addColumn<QVariant>("value");
        QByteArray everyByte;
        for (int i = 0; i < 256; ++i)
            everyByte.append(static_cast<char>(i));
        const QVariant none;
        QTest::newRow("8-bit text keeps its bytes")
            << u"Oldest"_s << u"0x7102001E"_s << none << QVariant(QByteArray("caf\xe9 \x80\xff"));
        QTest::newRow("named field") << u"Oldest"_s << u"RouteType"_s << none
                                     << QVariant(QByteArray("Serial"));
        QTest::newRow("missing field") << u"Newest"_s << u"0x7102001E"_s << none << none;
        QTest::newRow("every byte written, NUL included")
            << u"Middle"_s << u"0x7102001E"_s << QVariant(everyByte) << QVariant(everyByte);
        QTest::newRow("a text is written as Latin-1")
            << u"Middle"_s << u"0x7102001E"_s << QVariant(u"caf\u00e9"_s) << QVariant(QByteArray("caf\xe9"));
        QTest::newRow("a number tag written")
            << u"Middle"_s << u"0x0E080003"_s << QVariant(u"77"_s) << QVariant(77);
    }

    void fieldValues()
    {
        QFETCH(QString, subject);
        QFETCH(QString, field);
        QFETCH(QVariant, written);
        QFETCH(QVariant, value);
        const auto read = [&](const mapi::Message &m) {
            return field.startsWith("0x"_L1) ? m.Fields(field.mid(2).toUInt(nullptr, 16)).Value()
                                             : m.Fields(field).Value();
        };
        mapi::Message m = m_kit->message(kInbox, subject);
        if (written.isValid()) {
            m.Fields(field.mid(2).toUInt(nullptr, 16)).setValue(written);
            QCOMPARE(read(m), value); // the written value, as it will be stored
            m.Update();
            m = m_kit->session.GetMessage(m.ID(), m.StoreID());
        }
        QCOMPARE(read(m).isValid(), value.isValid());
        if (value.isValid()) {
            QCOMPARE(read(m).typeId(), value.typeId());
            QCOMPARE(read(m), value);
        }
    }

    void changesWaitForUpdate()
    {
        mapi::Message m = m_kit->hidden(kInbox, u"First"_s);
        m.setSubject(u"Renamed"_s);
        m.Fields(mapi::PR_SCRIPT).setValue(QByteArray("new script"));
        QCOMPARE(m.Subject(), u"Renamed"_s);
        const mapi::Message other = m_kit->session.GetMessage(m.ID(), m.StoreID());
        QCOMPARE(other.Subject(), u"First"_s);

        const QDateTime start = QDateTime::currentDateTime().addSecs(-1);
        m.Update();
        const mapi::Message after = m_kit->session.GetMessage(m.ID(), QString());
        QCOMPARE(after.Subject(), u"Renamed"_s);
        QCOMPARE(after.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray("new script"));
        QCOMPARE(after.Fields(mapi::PR_LAST_MODIFIER_NAME).Value().toByteArray(), QByteArray("Tess Tester"));
        QCOMPARE(after.Fields(mapi::PR_CREATOR_NAME).Value().toByteArray(), QByteArray("Old Admin"));
        QVERIFY(after.TimeLastModified() >= start);
        QCOMPARE(after.TimeCreated(), QDateTime(QDate(2020, 1, 1), QTime(0, 0))); // created stays
    }

    void goneMessageRaises_data()
    {
        QTest::addColumn<bool>("del");
        QTest::newRow("Delete") << true;
        QTest::newRow("Update") << false;
    }

    void goneMessageRaises()
    {
        QFETCH(bool, del);
        mapi::Message m = m_kit->message(kInbox, u"Middle"_s);
        m_kit->session.GetMessage(m.ID(), m.StoreID()).Delete();
        m.setSubject(u"Too late"_s);
        QCOMPARE(errorOf([&] { del ? m.Delete() : m.Update(); }), kNotFound);
        QCOMPARE(m_kit->folder(kInbox).Messages().Count(), 2); // nothing came back
    }

    void anotherSessionsWritesAreSeen()
    {
        // Two sessions on one store, as the program and the store tool are: each
        // read sees what the other has written, and a write after that works.
        const mapi::Message mine = m_kit->hidden(kInbox, u"First"_s);
        QCOMPARE(mine.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray());
        QCOMPARE(m_kit->folder(kInbox).HiddenMessages().Count(), 6);

        ui::ScriptedPrompter prompter;
        mapi::Session other(prompter);
        other.LogonStore(m_kit->storePath, u"Someone Else"_s);
        mapi::Message theirs = other.GetMessage(mine.ID(), mine.StoreID());
        theirs.Fields(mapi::PR_SCRIPT).setValue(QByteArray("written elsewhere"));
        theirs.Update();
        QCOMPARE(mine.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray("written elsewhere"));
        theirs.Delete();
        QCOMPARE(errorOf([&] { m_kit->session.GetMessage(mine.ID(), mine.StoreID()); }), kNotFound);
        QCOMPARE(m_kit->folder(kInbox).HiddenMessages().Count(), 5);
    }
};

QTEST_GUILESS_MAIN(TestMessages)
#include "test_messages.moc"
