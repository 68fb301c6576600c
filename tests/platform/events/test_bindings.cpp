// Bindings of an event source: their order and members, the store sequence
// of a new binding, changes of an existing one, and Remove.
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "tests/platform/events/eventsfixture.h"
#include "tests/support/storekit.h"

#include <QtTest>

using testkit::errorOf;
using testkit::StoreKit;

namespace {

const QString kInbox = QStringLiteral("\\Mailbox - Tess Tester\\Inbox");
const QString kEmpty = QStringLiteral("\\Mailbox - Tess Tester\\Empty");
constexpr int32_t kNotFound = static_cast<int32_t>(0x8004010F);
constexpr int32_t kNoEventSource = static_cast<int32_t>(0x80041001);
constexpr int32_t kNotLoggedOn = static_cast<int32_t>(0x80040111);

} // namespace

class TestBindings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(testkit::kEventsFixture); }
    void cleanup() { m_kit.reset(); }
    void eventSourceOfAFolder_data();
    void eventSourceOfAFolder();
    void bindingsInTheSourceOrder();
    void itemOutsideTheCollection_data();
    void itemOutsideTheCollection();
    void newBindingIsPendingUntilSaved();
    void saveMakesBothMessages_data();
    void saveMakesBothMessages();
    void failedSaveLeavesNothing();
    void changesOfAStoredBinding();
    void saveOfARemovedBindingRaises();
    void removeTakesTheBindingAtOnce();
    void hostsAndHandlers();

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

void TestBindings::saveMakesBothMessages_data()
{
    QTest::addColumn<QString>("handler");
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("script agent") << events::kScriptHandler << QByteArray("5141E56971B3D011BCD900AA00C1AB1C");
    QTest::newRow("routing agent") << events::kRoutingHandler
                                   << QByteArray("5141E66971B3D011BCD900AA00C1AB1C");
}

void TestBindings::saveMakesBothMessages()
{
    QFETCH(QString, handler);
    QFETCH(QByteArray, field);
    events::EventSource empty = source(kEmpty);
    events::Binding b = empty.Bindings().Add();
    b.setName(QStringLiteral("Fresh"));
    b.setActive(true);
    b.setEventMask(9);
    b.setHandlerClassID(handler);
    events::Schedule s = b.Schedule();
    s.Clear();
    s.setAt(QTime(7, 30));
    s.setDays(31);
    s.setEndTime(QTime(23, 59));
    s.setStartTime(QTime(0, 0));
    s.setInterval(90);
    s.setType(3);
    b.SaveChanges();

    QVERIFY(!b.EntryID().isEmpty());
    QVERIFY(!b.StateMessageID().isEmpty());
    QVERIFY(b.EntryID() != b.StateMessageID());
    const mapi::Folder folder = m_kit->folder(kEmpty);
    const mapi::Message message = m_kit->session.GetMessage(b.EntryID(), QString());
    QCOMPARE(message.Class(), mapi::kBindingClass);
    QCOMPARE(message.Subject(), QStringLiteral("Fresh"));
    QCOMPARE(message.FolderID(), folder.ID());
    QCOMPARE(message.Fields(mapi::PR_HANDLER).Value().toByteArray(), field);
    QCOMPARE(message.Fields(mapi::PR_CREATOR_NAME).Value().toByteArray(), QByteArray("Tess Tester"));
    const mapi::Message state = m_kit->session.GetMessage(b.StateMessageID(), QString());
    QCOMPARE(state.Class(), mapi::kStateClass);
    QCOMPARE(state.FolderID(), folder.ID());
    const QVariant log = state.Fields(mapi::PR_AGENT_LOG).Value();
    QVERIFY(log.isValid());
    QCOMPARE(log.toByteArray(), QByteArray());
    // Both are hidden messages of the folder, and only they.
    mapi::MessageList hidden = folder.HiddenMessages();
    QCOMPARE(hidden.Count(), 2);
    hidden.Filter().setType(mapi::kBindingClass);
    QCOMPARE(hidden.Count(), 1);
    QCOMPARE(folder.Messages().Count(), 0);

    // Read back through a new source: every member kept.
    const events::Binding stored = source(kEmpty).Bindings().Item(1);
    QCOMPARE(stored.StateMessageID(), b.StateMessageID());
    QCOMPARE(stored.Name(), QStringLiteral("Fresh"));
    QCOMPARE(stored.Active(), true);
    QCOMPARE(int(stored.EventMask()), 9);
    QCOMPARE(stored.HandlerClassID(), handler);
    QCOMPARE(stored.Schedule().At(), QTime(7, 30));
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

QTEST_GUILESS_MAIN(TestBindings)
#include "test_bindings.moc"
