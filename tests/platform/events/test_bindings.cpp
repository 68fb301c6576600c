// Bindings of an event source: their order and members, the store sequence
// of a new binding, changes of an existing one, Remove, their schedules, and
// the writes refused to a user who is no author on the folder's host.
#include "platform/events/authors.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "tests/support/storekit.h"

#include <QSqlRecord>
#include <QtTest>

using testkit::errorOf;
using testkit::StoreKit;

namespace {

/// Two hosts, one open to every user and one with a list of authors; a
/// mailbox with three agents of three handlers, a folder without an event
/// source and an empty one; a mailbox on the restricted host; and a store
/// whose host the configuration doesn't know.
const QByteArray kFixture = R"({
  "user": "Tess Tester",
  "hosts": [
    { "name": "H1", "handlers": [
        { "class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Script Handler" },
        { "class": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Routing Handler" } ] },
    { "name": "H2", "authors": [ "Someone Else" ], "handlers": [
        { "class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Script Handler" } ] } ],
  "stores": [
    { "name": "Mailbox - Tess Tester", "host": "H1", "folders": [
      { "name": "Inbox", "agents": [
        { "name": "Auto Reply", "mask": 3, "script": "old script",
          "schedule": { "type": 1, "interval": 60, "start": "06:00", "end": "18:00", "days": 127, "at": "00:00" } },
        { "name": "Router", "handler": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}", "mask": 15 },
        { "name": "Clipper", "handler": "{11111111-2222-3333-4444-555555555555}", "mask": 4, "active": false } ] },
      { "name": "NoSource", "eventSource": false },
      { "name": "Empty" } ] },
    { "name": "Mailbox - Other", "host": "H2", "folders": [
      { "name": "Inbox", "agents": [ { "name": "Theirs", "script": "their script" } ] } ] },
    { "name": "Lost Host", "host": "H9", "folders": [ { "name": "Inbox" } ] } ] })";

const QString kInbox = QStringLiteral("\\Mailbox - Tess Tester\\Inbox");
const QString kEmpty = QStringLiteral("\\Mailbox - Tess Tester\\Empty");
constexpr int32_t kNotFound = static_cast<int32_t>(0x8004010F);
constexpr int32_t kNoEventSource = static_cast<int32_t>(0x80041001);
const QString kTheirInbox = QStringLiteral("\\Mailbox - Other\\Inbox");

/// Every row of the tables a binding write could touch.
QStringList storeRows(StoreKit &kit)
{
    QStringList rows;
    for (const char *sql :
         {"SELECT id, folder, name, active, event_mask, handler_class, message, state_message, sched_type,"
          " sched_interval, sched_start, sched_end, sched_days, sched_at FROM bindings ORDER BY id",
          "SELECT id, entry_id, folder, hidden, class, subject, created, modified FROM messages ORDER BY id",
          "SELECT message, tag, hex(value) FROM fields ORDER BY message, tag"}) {
        QSqlQuery q = kit.db().run(QString::fromLatin1(sql));
        while (q.next()) {
            QStringList cells;
            for (int i = 0; i < q.record().count(); ++i)
                cells << q.value(i).toString();
            rows << cells.join(QLatin1Char('|'));
        }
    }
    return rows;
}

/// One write of a binding in the other mailbox's inbox.
void write(StoreKit &kit, const QString &what)
{
    events::EventSource source = kit.events.GetEventSource(kit.folder(kTheirInbox), true);
    events::Bindings &bindings = source.Bindings();
    events::Binding theirs = bindings.Item(1);
    if (what == QLatin1String("save existing")) {
        theirs.setName(QStringLiteral("Mine now"));
        theirs.SaveChanges();
    } else if (what == QLatin1String("save new")) {
        events::Binding b = bindings.Add();
        b.setName(QStringLiteral("Intruder"));
        b.setHandlerClassID(events::kScriptHandler);
        b.SaveChanges();
    } else if (what == QLatin1String("prepare custom changes")) {
        theirs.PrepareCustomChanges();
    } else if (what == QLatin1String("save custom changes")) {
        theirs.SaveCustomChanges(kit.session.GetMessage(theirs.EntryID(), QString()));
    } else if (what == QLatin1String("remove")) {
        bindings.Remove(theirs);
    } else if (what == QLatin1String("source save")) {
        source.SaveChanges();
    }
}

} // namespace

class TestBindings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanup() { m_kit.reset(); }
    void eventSourceOfAFolder_data();
    void eventSourceOfAFolder();
    void bindingsInTheSourceOrder();
    void itemOutsideTheCollection_data();
    void itemOutsideTheCollection();
    void newBindingIsPendingUntilSaved();
    void saveMakesBothMessages();
    void failedSaveLeavesNothing();
    void changesOfAStoredBinding();
    void saveOfARemovedBindingRaises();
    void removeTakesTheBindingAtOnce();
    void hostsAndHandlers();
    void scheduleStoredAndReadBack_data();
    void scheduleStoredAndReadBack();
    void scheduleIsTheBindings();
    void refusedWrite_data();
    void refusedWrite();
    void authorWrites_data() { refusedWrite_data(); }
    void authorWrites();
    void unknownHostTakesEveryone();

private:
    events::EventSource source(const QString &path)
    {
        return m_kit->events.GetEventSource(m_kit->folder(path), true);
    }
    qint64 hiddenCount(const QString &path) { return m_kit->folder(path).HiddenMessages().Count(); }
    std::unique_ptr<StoreKit> m_kit;
};

void TestBindings::eventSourceOfAFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("host");
    QTest::newRow("mailbox folder") << kInbox << 0 << "H1";
    QTest::newRow("no event source") << "\\Mailbox - Tess Tester\\NoSource" << kNoEventSource << "";
    QTest::newRow("another host") << "\\Mailbox - Other\\Inbox" << 0 << "H2";
    QTest::newRow("a host nobody knows") << "\\Lost Host\\Inbox" << 0 << "H9";
}

void TestBindings::eventSourceOfAFolder()
{
    QFETCH(QString, folder);
    QFETCH(int, error);
    QFETCH(QString, host);
    QString hostName;
    QCOMPARE(errorOf([&] { hostName = source(folder).HostName(); }), error);
    QCOMPARE(hostName, host);
}

void TestBindings::bindingsInTheSourceOrder()
{
    events::EventSource inbox = source(kInbox);
    events::Bindings &bindings = inbox.Bindings();
    QCOMPARE(bindings.Count(), 3);
    mapi::MessageList messages = m_kit->folder(kInbox).HiddenMessages();
    messages.Filter().setType(mapi::kBindingClass);
    const QStringList names{"Auto Reply", "Router", "Clipper"};
    const QStringList handlers{events::kScriptHandler, events::kRoutingHandler,
                               "{11111111-2222-3333-4444-555555555555}"};
    const QList<int> masks{3, 15, 4};
    for (int i = 1; i <= 3; ++i) {
        const events::Binding b = bindings.Item(i);
        QCOMPARE(b.Name(), names.at(i - 1));
        QCOMPARE(b.HandlerClassID(), handlers.at(i - 1));
        QCOMPARE(int(b.EventMask()), masks.at(i - 1));
        QCOMPARE(b.Active(), i != 3);
        QCOMPARE(b.EntryID(), messages.Item(i).ID());
        const mapi::Message state = m_kit->session.GetMessage(b.StateMessageID(), QString());
        QCOMPARE(state.Class(), mapi::kStateClass);
        QCOMPARE(state.FolderID(), messages.Item(i).FolderID());
    }
    QCOMPARE(int(bindings.Item(1).Schedule().interval()), 60);
    QCOMPARE(source(kEmpty).Bindings().Count(), 0);
}

void TestBindings::itemOutsideTheCollection_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("0") << 0;
    QTest::newRow("one past the end") << 4;
}

void TestBindings::itemOutsideTheCollection()
{
    QFETCH(int, index);
    events::EventSource inbox = source(kInbox);
    QCOMPARE(errorOf([&] { inbox.Bindings().Item(index); }), com::err::SubscriptOutOfRange);
}

void TestBindings::newBindingIsPendingUntilSaved()
{
    events::EventSource inbox = source(kInbox);
    events::Binding b = inbox.Bindings().Add();
    b.setName(QStringLiteral("Pending"));
    QCOMPARE(inbox.Bindings().Count(), 4);
    QCOMPARE(inbox.Bindings().Item(4).Name(), QStringLiteral("Pending"));
    QCOMPARE(b.EntryID(), QString());
    QCOMPARE(b.StateMessageID(), QString());
    // Nothing reached the store.
    QCOMPARE(source(kInbox).Bindings().Count(), 3);
    QCOMPARE(hiddenCount(kInbox), 6);
    QCOMPARE(m_kit->number(QStringLiteral("SELECT COUNT(*) FROM bindings")), 4);
}

void TestBindings::saveMakesBothMessages()
{
    events::EventSource empty = source(kEmpty);
    events::Binding b = empty.Bindings().Add();
    b.setName(QStringLiteral("Fresh"));
    b.setActive(true);
    b.setEventMask(9);
    b.setHandlerClassID(events::kScriptHandler);
    b.Schedule().setInterval(90);
    b.SaveChanges();

    QVERIFY(!b.EntryID().isEmpty());
    QVERIFY(b.EntryID() != b.StateMessageID());
    const mapi::Folder folder = m_kit->folder(kEmpty);
    const mapi::Message message = m_kit->session.GetMessage(b.EntryID(), QString());
    QCOMPARE(message.Class(), mapi::kBindingClass);
    QCOMPARE(message.Subject(), QStringLiteral("Fresh"));
    QCOMPARE(message.FolderID(), folder.ID());
    QCOMPARE(message.Fields(mapi::PR_HANDLER).Value().toByteArray(),
             QByteArray("5141E56971B3D011BCD900AA00C1AB1C"));
    QCOMPARE(message.Fields(mapi::PR_CREATOR_NAME).Value().toByteArray(), QByteArray("Tess Tester"));
    const mapi::Message state = m_kit->session.GetMessage(b.StateMessageID(), QString());
    QCOMPARE(state.Class(), mapi::kStateClass);
    QCOMPARE(state.FolderID(), folder.ID());
    const QVariant log = state.Fields(mapi::PR_AGENT_LOG).Value();
    QVERIFY(log.isValid());
    QCOMPARE(log.toByteArray(), QByteArray());
    // Both are hidden messages of the folder, and only they.
    QCOMPARE(folder.HiddenMessages().Count(), 2);
    QCOMPARE(folder.Messages().Count(), 0);

    // Read back through a new source: every member kept.
    const events::Binding stored = source(kEmpty).Bindings().Item(1);
    QCOMPARE(stored.StateMessageID(), b.StateMessageID());
    QCOMPARE(stored.Name(), QStringLiteral("Fresh"));
    QCOMPARE(stored.Active(), true);
    QCOMPARE(int(stored.EventMask()), 9);
    QCOMPARE(stored.HandlerClassID(), events::kScriptHandler);
    QCOMPARE(int(stored.Schedule().interval()), 90);
}

void TestBindings::failedSaveLeavesNothing()
{
    // A store that refuses the binding row: the two messages made before it
    // in the same transaction go too.
    m_kit->db().run(QStringLiteral("CREATE TRIGGER refuse BEFORE INSERT ON bindings"
                                   " BEGIN SELECT RAISE(ABORT, 'refused'); END"));
    events::EventSource empty = source(kEmpty);
    events::Binding b = empty.Bindings().Add();
    b.setName(QStringLiteral("Doomed"));
    b.setHandlerClassID(events::kScriptHandler);
    QVERIFY(errorOf([&] { b.SaveChanges(); }) != 0);
    QCOMPARE(b.EntryID(), QString());
    QCOMPARE(b.StateMessageID(), QString());
    QCOMPARE(hiddenCount(kEmpty), 0);
    QCOMPARE(m_kit->number(QStringLiteral("SELECT COUNT(*) FROM messages WHERE subject = 'Doomed'")), 0);
    // Once the store takes it again, the same binding saves as new.
    m_kit->db().run(QStringLiteral("DROP TRIGGER refuse"));
    b.SaveChanges();
    QCOMPARE(hiddenCount(kEmpty), 2);
}

void TestBindings::changesOfAStoredBinding()
{
    events::EventSource inbox = source(kInbox);
    events::Binding b = inbox.Bindings().Item(1);
    const QString entryId = b.EntryID();
    const QString stateId = b.StateMessageID();
    b.setName(QStringLiteral("Auto Reply 2"));
    b.setHandlerClassID(events::kRoutingHandler);
    b.setEventMask(8);
    b.setActive(false);
    b.Schedule().setInterval(15);
    // Pending until saved.
    QCOMPARE(source(kInbox).Bindings().Item(1).Name(), QStringLiteral("Auto Reply"));
    b.SaveChanges();

    QCOMPARE(b.StateMessageID(), stateId);
    const mapi::Message message = m_kit->session.GetMessage(entryId, QString());
    QCOMPARE(message.Subject(), QStringLiteral("Auto Reply 2"));
    QCOMPARE(message.Fields(mapi::PR_HANDLER).Value().toByteArray(),
             QByteArray("5141E66971B3D011BCD900AA00C1AB1C"));
    QCOMPARE(message.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray("old script"));
    const events::Binding stored = source(kInbox).Bindings().Item(1);
    QCOMPARE(stored.Name(), QStringLiteral("Auto Reply 2"));
    QCOMPARE(int(stored.EventMask()), 8);
    QCOMPARE(stored.Active(), false);
    QCOMPARE(int(stored.Schedule().interval()), 15);
    QCOMPARE(int(stored.Schedule().Type()), 1);
    QCOMPARE(hiddenCount(kInbox), 6); // no message was made
}

void TestBindings::saveOfARemovedBindingRaises()
{
    events::EventSource first = source(kInbox);
    events::Binding b = first.Bindings().Item(2);
    events::EventSource second = source(kInbox);
    second.Bindings().Remove(second.Bindings().Item(2));
    b.setName(QStringLiteral("Ghost"));
    QCOMPARE(errorOf([&] { b.SaveChanges(); }), kNotFound);
    QCOMPARE(m_kit->session.GetMessage(b.EntryID(), QString()).Subject(), QStringLiteral("Router"));
}

void TestBindings::removeTakesTheBindingAtOnce()
{
    events::EventSource inbox = source(kInbox);
    events::Bindings &bindings = inbox.Bindings();
    const events::Binding router = bindings.Item(2);
    bindings.Remove(router);
    QCOMPARE(bindings.Count(), 2);
    QCOMPARE(bindings.Item(1).Name(), QStringLiteral("Auto Reply"));
    QCOMPARE(bindings.Item(2).Name(), QStringLiteral("Clipper"));
    // At once, with no save: a new source sees it gone.
    const events::EventSource fresh = source(kInbox);
    QCOMPARE(fresh.Bindings().Count(), 2);
    for (int i = 1; i <= fresh.Bindings().Count(); ++i)
        QVERIFY(fresh.Bindings().Item(i).EntryID() != router.EntryID());
    // The messages stay for the caller to delete.
    QCOMPARE(m_kit->session.GetMessage(router.EntryID(), QString()).Subject(), QStringLiteral("Router"));
    QCOMPARE(m_kit->session.GetMessage(router.StateMessageID(), QString()).Class(), mapi::kStateClass);
    QCOMPARE(hiddenCount(kInbox), 6);
    // Gone is gone.
    QCOMPARE(errorOf([&] { bindings.Remove(router); }), kNotFound);
}

void TestBindings::hostsAndHandlers()
{
    const events::Host h1 = m_kit->events.Hosts().Item(QStringLiteral("H1"));
    QCOMPARE(h1.Handlers().Count(), 2);
    QCOMPARE(h1.Handlers().Item(1).Name, QStringLiteral("Script Handler"));
    QCOMPARE(h1.Handlers().Item(2).Name, QStringLiteral("Routing Handler"));
    QCOMPARE(errorOf([&] { h1.Handlers().Item(3); }), com::err::SubscriptOutOfRange);
    // Host names ignore case, as server names do.
    QCOMPARE(m_kit->events.Hosts().Item(QStringLiteral("h2")).Handlers().Count(), 1);
    QCOMPARE(errorOf([&] { m_kit->events.Hosts().Item(QStringLiteral("H9")); }), kNotFound);
}

void TestBindings::scheduleStoredAndReadBack_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("days");
    QTest::addColumn<QTime>("start");
    QTest::addColumn<QTime>("end");
    QTest::addColumn<QTime>("at");
    QTest::addColumn<QTime>("startRead");
    QTest::addColumn<QTime>("atRead");
    QTest::newRow("hourly, all day") << 1 << 60 << 127 << QTime(0, 0) << QTime(23, 59) << QTime(0, 0)
                                     << QTime(0, 0) << QTime(0, 0);
    QTest::newRow("weekly with no day")
        << 3 << 1 << 0 << QTime(6, 0) << QTime(18, 0) << QTime(9, 45) << QTime(6, 0) << QTime(9, 45);
    QTest::newRow("seconds are dropped")
        << 1 << 45 << 127 << QTime(6, 0, 59) << QTime(18, 0) << QTime(1, 2, 3) << QTime(6, 0) << QTime(1, 2);
    QTest::newRow("an invalid time is midnight")
        << 2 << 1 << 1 << QTime() << QTime(18, 0) << QTime(12, 0) << QTime(0, 0) << QTime(12, 0);
}

void TestBindings::scheduleStoredAndReadBack()
{
    QFETCH(int, type);
    QFETCH(int, interval);
    QFETCH(int, days);
    QFETCH(QTime, start);
    QFETCH(QTime, end);
    QFETCH(QTime, at);
    QFETCH(QTime, startRead);
    QFETCH(QTime, atRead);
    events::Binding b = source(kInbox).Bindings().Item(1);
    events::Schedule s = b.Schedule();
    s.Clear();
    s.setAt(at);
    s.setDays(static_cast<int16_t>(days));
    s.setEndTime(end);
    s.setStartTime(start);
    s.setInterval(static_cast<int16_t>(interval));
    s.setType(static_cast<int16_t>(type));
    QCOMPARE(s.StartTime(), startRead);
    QCOMPARE(s.At(), atRead);
    b.SaveChanges();

    const events::Schedule read = source(kInbox).Bindings().Item(1).Schedule();
    QCOMPARE(int(read.Type()), type);
    QCOMPARE(int(read.interval()), interval);
    QCOMPARE(int(read.Days()), days);
    QCOMPARE(read.StartTime(), startRead);
    QCOMPARE(read.EndTime(), end);
    QCOMPARE(read.At(), atRead);
}

void TestBindings::scheduleIsTheBindings()
{
    // Two schedule objects of one binding are the same settings, and the
    // binding's copies share them.
    events::Binding b = source(kInbox).Bindings().Item(1);
    events::Binding copy = b;
    b.Schedule().setInterval(30);
    QCOMPARE(int(copy.Schedule().interval()), 30);
    // Another binding's are apart.
    QCOMPARE(int(source(kInbox).Bindings().Item(2).Schedule().interval()), 0);
}

void TestBindings::refusedWrite_data()
{
    QTest::addColumn<QString>("what");
    for (const char *w : {"save existing", "save new", "prepare custom changes", "save custom changes",
                          "remove", "source save"})
        QTest::newRow(w) << QString::fromLatin1(w);
}

void TestBindings::refusedWrite()
{
    QFETCH(QString, what);
    StoreKit &kit = *m_kit; // Tess Tester, no author on H2
    const QStringList before = storeRows(kit);
    QCOMPARE(errorOf([&] { write(kit, what); }), com::err::PermissionDenied);
    QCOMPARE(storeRows(kit), before);
}

void TestBindings::authorWrites()
{
    QFETCH(QString, what);
    StoreKit kit(kFixture, QStringLiteral("Someone Else"));
    QCOMPARE(errorOf([&] { write(kit, what); }), 0);
}

void TestBindings::unknownHostTakesEveryone()
{
    QVERIFY(events::isAuthor(m_kit->session.MAPIOBJECT(), QStringLiteral("H9")));
    QVERIFY(!events::isAuthor(m_kit->session.MAPIOBJECT(), QStringLiteral("H2")));
}

QTEST_GUILESS_MAIN(TestBindings)
#include "test_bindings.moc"
