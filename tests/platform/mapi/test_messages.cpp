// Messages and their collections: filter, items, fields as bytes and
// numbers, Update and Delete.
#include "platform/mapi/session.h"
#include "tests/support/storekit.h"

#include <QtTest>

using testkit::errorOf;
using testkit::StoreKit;

namespace {

const QByteArray kFixture = R"({
  "user": "Tess Tester",
  "hosts": [ { "name": "H1", "handlers": [] } ],
  "stores": [ { "name": "Mailbox - Tess Tester", "host": "H1", "folders": [
    { "name": "Inbox",
      "agents": [ { "name": "First", "created": "2020-01-01 00:00:00", "modified": "2020-01-02 00:00:00",
                    "createdBy": "Old Admin", "modifiedBy": "Old Admin" },
                  { "name": "Second" } ],
      "hidden": [ { "subject": "Routing Map Message", "class": "IPM.Note" },
                  { "subject": "Views", "class": "IPC.Microsoft.Views" } ],
      "messages": [
        { "subject": "Middle", "from": "Bob", "received": "2026-06-01 12:00:00" },
        { "subject": "Newest", "from": "Carol", "received": "2027-01-01 08:30:00" },
        { "subject": "Oldest", "received": "2025-01-01 00:00:00",
          "fields": { "0x0E080003": 1234, "RouteType": "Serial", "0x7102001E": "caf\u00e9 \u0080\u00ff" } } ] },
    { "name": "Empty" } ] } ] })";

const QString kInbox = QStringLiteral("\\Mailbox - Tess Tester\\Inbox");
constexpr int32_t kNotFound = static_cast<int32_t>(0x8004010F);

} // namespace

class TestMessages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanup() { m_kit.reset(); }
    void filterLimitsTheCollection_data();
    void filterLimitsTheCollection();
    void filterAppliesToAListAlreadyRead();
    void itemOutsideTheCollection_data();
    void itemOutsideTheCollection();
    void fieldValues_data();
    void fieldValues();
    void changesWaitForUpdate();
    void goneMessageRaises_data();
    void goneMessageRaises();
    void anotherSessionsWritesAreSeen();

private:
    std::unique_ptr<StoreKit> m_kit;
};

void TestMessages::filterLimitsTheCollection_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("subjects");
    QTest::newRow("no filter: every hidden message")
        << QString() << QStringList{"First", "First", "Second", "Second", "Routing Map Message", "Views"};
    QTest::newRow("binding messages") << "IPC.Microsoft.EventBinding" << QStringList{"First", "Second"};
    QTest::newRow("notes") << "IPM.Note" << QStringList{"Routing Map Message"};
    QTest::newRow("class names are exact") << "ipc.microsoft.eventbinding" << QStringList{};
}

void TestMessages::filterLimitsTheCollection()
{
    QFETCH(QString, type);
    QFETCH(QStringList, subjects);
    mapi::MessageList hidden = m_kit->folder(kInbox).HiddenMessages();
    hidden.Filter().setType(type);
    QCOMPARE(hidden.Count(), subjects.size());
    QStringList seen;
    for (const mapi::Message &m : hidden) {
        seen << m.Subject();
        if (!type.isEmpty())
            QCOMPARE(m.Class(), type);
    }
    QCOMPARE(seen, subjects);
}

void TestMessages::filterAppliesToAListAlreadyRead()
{
    mapi::MessageList hidden = m_kit->folder(kInbox).HiddenMessages();
    QCOMPARE(hidden.Count(), 6);
    QCOMPARE(hidden.Item(6).Subject(), QStringLiteral("Views"));
    hidden.Filter().setType(mapi::kBindingClass);
    QCOMPARE(hidden.Count(), 2);
    QCOMPARE(hidden.Item(2).Subject(), QStringLiteral("Second"));
    hidden.Filter().setType(QString());
    QCOMPARE(hidden.Count(), 6);
    // Copies share the collection, filter included.
    mapi::MessageList copy = hidden;
    copy.Filter().setType(QStringLiteral("IPM.Note"));
    QCOMPARE(hidden.Count(), 1);
}

void TestMessages::itemOutsideTheCollection_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("0") << 0;
    QTest::newRow("one past the end") << 3;
}

void TestMessages::itemOutsideTheCollection()
{
    QFETCH(int, index);
    mapi::MessageList bindings = m_kit->folder(kInbox).HiddenMessages();
    bindings.Filter().setType(mapi::kBindingClass);
    QCOMPARE(errorOf([&] { bindings.Item(index); }), kNotFound);
}

void TestMessages::fieldValues_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("field");    // a tag in hexadecimal, or a name
    QTest::addColumn<QVariant>("written"); // invalid: as the fixture left it
    QTest::addColumn<QVariant>("value");
    const QByteArray everyByte = [] {
        QByteArray b;
        for (int i = 0; i < 256; ++i)
            b.append(static_cast<char>(i));
        return b;
    }();
    QTest::newRow("8-bit text keeps its bytes")
        << "Oldest"
        << "0x7102001E" << QVariant() << QVariant(QByteArray("caf\xe9 \x80\xff"));
    QTest::newRow("number tag") << "Oldest"
                                << "0x0E080003" << QVariant() << QVariant(1234);
    QTest::newRow("named field") << "Oldest"
                                 << "RouteType" << QVariant() << QVariant(QByteArray("Serial"));
    QTest::newRow("missing field") << "Newest"
                                   << "0x7102001E" << QVariant() << QVariant();
    QTest::newRow("every byte written, NUL included")
        << "Middle"
        << "0x7102001E" << QVariant(everyByte) << QVariant(everyByte);
    QTest::newRow("a text is written as Latin-1")
        << "Middle"
        << "0x7102001E" << QVariant(QStringLiteral("caf\u00e9")) << QVariant(QByteArray("caf\xe9"));
    QTest::newRow("a number tag written") << "Middle"
                                          << "0x0E080003" << QVariant(QStringLiteral("77")) << QVariant(77);
}

void TestMessages::fieldValues()
{
    QFETCH(QString, subject);
    QFETCH(QString, field);
    QFETCH(QVariant, written);
    QFETCH(QVariant, value);
    const auto read = [&](const mapi::Message &m) {
        return field.startsWith(QLatin1String("0x")) ? m.Fields(field.mid(2).toUInt(nullptr, 16)).Value()
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

void TestMessages::changesWaitForUpdate()
{
    mapi::Message m = m_kit->hidden(kInbox, QStringLiteral("First"));
    m.setSubject(QStringLiteral("Renamed"));
    m.Fields(mapi::PR_SCRIPT).setValue(QByteArray("new script"));
    QCOMPARE(m.Subject(), QStringLiteral("Renamed"));
    const mapi::Message other = m_kit->session.GetMessage(m.ID(), m.StoreID());
    QCOMPARE(other.Subject(), QStringLiteral("First"));

    const QDateTime start = QDateTime::currentDateTime().addSecs(-1);
    m.Update();
    const mapi::Message after = m_kit->session.GetMessage(m.ID(), QString());
    QCOMPARE(after.Subject(), QStringLiteral("Renamed"));
    QCOMPARE(after.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray("new script"));
    QCOMPARE(after.Fields(mapi::PR_LAST_MODIFIER_NAME).Value().toByteArray(), QByteArray("Tess Tester"));
    QCOMPARE(after.Fields(mapi::PR_CREATOR_NAME).Value().toByteArray(), QByteArray("Old Admin"));
    QVERIFY(after.TimeLastModified() >= start);
    QCOMPARE(after.TimeCreated(), QDateTime(QDate(2020, 1, 1), QTime(0, 0))); // created stays
}

void TestMessages::goneMessageRaises_data()
{
    QTest::addColumn<QString>("member");
    QTest::newRow("Delete") << "Delete";
    QTest::newRow("Update") << "Update";
}

void TestMessages::goneMessageRaises()
{
    QFETCH(QString, member);
    mapi::Message m = m_kit->message(kInbox, QStringLiteral("Middle"));
    mapi::Message same = m_kit->session.GetMessage(m.ID(), m.StoreID());
    same.Delete();
    m.setSubject(QStringLiteral("Too late"));
    QCOMPARE(errorOf([&] {
                 if (member == QLatin1String("Delete"))
                     m.Delete();
                 else
                     m.Update();
             }),
             kNotFound);
    QCOMPARE(m_kit->folder(kInbox).Messages().Count(), 2); // nothing came back
}

void TestMessages::anotherSessionsWritesAreSeen()
{
    // Two sessions on one store, as the program and the store tool are: each
    // read sees what the other has written, and a write after that works.
    const mapi::Message mine = m_kit->hidden(kInbox, QStringLiteral("First"));
    QCOMPARE(mine.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray());
    QCOMPARE(m_kit->folder(kInbox).HiddenMessages().Count(), 6);

    ui::ScriptedPrompter prompter;
    mapi::Session other(prompter);
    other.LogonStore(m_kit->storePath, QStringLiteral("Someone Else"));
    mapi::Message theirs = other.GetMessage(mine.ID(), mine.StoreID());
    theirs.Fields(mapi::PR_SCRIPT).setValue(QByteArray("written elsewhere"));
    theirs.Update();
    QCOMPARE(mine.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray("written elsewhere"));
    theirs.Delete();
    QCOMPARE(errorOf([&] { m_kit->session.GetMessage(mine.ID(), mine.StoreID()); }), kNotFound);
    QCOMPARE(m_kit->folder(kInbox).HiddenMessages().Count(), 5);
}

QTEST_GUILESS_MAIN(TestMessages)
#include "test_messages.moc"
