#include "agents/agentmodel.h"
#include "platform/events/guid.h"
#include "tests/support/fixturestore.h"

#include <QtTest>

using testsupport::FixtureSession;

class TestEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_s = std::make_unique<FixtureSession>(QStringLiteral("agents.json")); }
    void cleanup() { m_s.reset(); }
    void memoryOrder_data();
    void memoryOrder();
    void eventSource();
    void bindingsInOrder();
    void newBindingMakesBothMessages();
    void nameReachesSubject();
    void removeTakesTheBindingAtOnce();
    void permission_data();
    void permission();
    void handlerName();

private:
    events::Bindings &inboxBindings()
    {
        m_source = std::make_unique<events::EventSource>(
            m_s->events.GetEventSource(m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox")), true));
        return m_source->Bindings();
    }
    std::unique_ptr<FixtureSession> m_s;
    std::unique_ptr<events::EventSource> m_source;
};

void TestEvents::memoryOrder_data()
{
    QTest::addColumn<QString>("classId");
    QTest::addColumn<QString>("field");
    QTest::newRow("script handler") << "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}"
                                    << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("routing handler") << "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}"
                                     << "5141E66971B3D011BCD900AA00C1AB1C";
    QTest::newRow("lower-case input") << "{69e54151-b371-11d0-bcd9-00aa00c1ab1c}"
                                      << "5141E56971B3D011BCD900AA00C1AB1C";
    QTest::newRow("no class identifier") << "script"
                                         << "";
}

void TestEvents::memoryOrder()
{
    QFETCH(QString, classId);
    QFETCH(QString, field);
    QCOMPARE(events::memoryOrderHex(classId), field);
    if (!field.isEmpty())
        QCOMPARE(events::registryForm(field), classId.toUpper());
}

void TestEvents::eventSource()
{
    const events::EventSource source =
        m_s->events.GetEventSource(m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox")), true);
    QCOMPARE(source.HostName(), QStringLiteral("H1"));
    try {
        m_s->events.GetEventSource(m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\NoSource")), true);
        QFAIL("a folder without an event source gave one");
    } catch (const com::ComError &e) {
        QVERIFY(e.number() != 0);
    }
}

void TestEvents::bindingsInOrder()
{
    events::Bindings &bindings = inboxBindings();
    QCOMPARE(bindings.Count(), 4);
    const events::Binding router = bindings.Item(2);
    QCOMPARE(router.Name(), QStringLiteral("Router"));
    QCOMPARE(router.HandlerClassID(), events::kRoutingHandler);
    QCOMPARE(int(router.EventMask()), 15);
    QVERIFY(router.Active());
    const mapi::Message message = m_s->session.GetMessage(router.EntryID(), QString());
    QCOMPARE(message.Subject(), QStringLiteral("Router"));
    QVERIFY_THROWS_EXCEPTION(com::ComError, bindings.Item(0));
    QVERIFY_THROWS_EXCEPTION(com::ComError, bindings.Item(5));
}

void TestEvents::newBindingMakesBothMessages()
{
    events::Bindings &bindings = inboxBindings();
    events::Binding b = bindings.Add();
    QCOMPARE(b.EntryID(), QString());
    b.setName(QStringLiteral("Fresh"));
    b.setEventMask(9);
    b.setActive(true);
    b.setHandlerClassID(events::kScriptHandler);
    events::Schedule s = b.Schedule();
    s.Clear();
    s.setAt(QTime(7, 30));
    s.setDays(31);
    s.setEndTime(QTime(18, 0));
    s.setStartTime(QTime(6, 0));
    s.setInterval(90);
    s.setType(3);
    b.SaveChanges();

    QVERIFY(!b.EntryID().isEmpty());
    QVERIFY(!b.StateMessageID().isEmpty());
    const mapi::Message message = m_s->session.GetMessage(b.EntryID(), QString());
    QCOMPARE(message.Class(), mapi::kBindingClass);
    QCOMPARE(message.Subject(), QStringLiteral("Fresh"));
    QCOMPARE(message.Fields(mapi::PR_HANDLER).Value().toByteArray(),
             QByteArray("5141E56971B3D011BCD900AA00C1AB1C"));
    QCOMPARE(message.Fields(mapi::PR_CREATOR_NAME).Value().toByteArray(), QByteArray("Tess Tester"));
    const mapi::Message state = m_s->session.GetMessage(b.StateMessageID(), QString());
    QCOMPARE(state.Class(), mapi::kStateClass);
    QCOMPARE(state.FolderID(), message.FolderID());

    // Read back through a fresh collection: every member kept.
    events::Bindings &again = inboxBindings();
    QCOMPARE(again.Count(), 5);
    const events::Binding stored = again.Item(5);
    QCOMPARE(stored.EntryID(), b.EntryID());
    QCOMPARE(int(stored.EventMask()), 9);
    const events::Schedule ss = stored.Schedule();
    QCOMPARE(ss.At(), QTime(7, 30));
    QCOMPARE(int(ss.Days()), 31);
    QCOMPARE(ss.StartTime(), QTime(6, 0));
    QCOMPARE(ss.EndTime(), QTime(18, 0));
    QCOMPARE(int(ss.interval()), 90);
    QCOMPARE(int(ss.Type()), 3);

    // The script goes to the message, and the binding takes it.
    mapi::Message editable = m_s->session.GetMessage(b.EntryID(), QString());
    editable.Fields(mapi::PR_SCRIPT).setValue(QByteArray("<SCRIPT RunAt=Server Language=VBScript></SCRIPT>"));
    editable.Update();
    b.SaveCustomChanges(editable);
    m_source->SaveChanges();
}

void TestEvents::nameReachesSubject()
{
    events::Bindings &bindings = inboxBindings();
    events::Binding b = bindings.Item(1);
    b.setName(QStringLiteral("Auto Reply 2"));
    b.SaveChanges();
    QCOMPARE(m_s->session.GetMessage(b.EntryID(), QString()).Subject(), QStringLiteral("Auto Reply 2"));
}

void TestEvents::removeTakesTheBindingAtOnce()
{
    events::Bindings &bindings = inboxBindings();
    const events::Binding clipper = bindings.Item(3);
    bindings.Remove(clipper);
    QCOMPARE(bindings.Count(), 3);
    QCOMPARE(inboxBindings().Count(), 3);
    QVERIFY(!agents::findBinding(inboxBindings(), clipper.EntryID()));
    // The messages stay: the caller deletes them.
    QCOMPARE(m_s->session.GetMessage(clipper.EntryID(), QString()).Subject(), QStringLiteral("Clipper"));
}

void TestEvents::permission_data()
{
    QTest::addColumn<QString>("write");
    QTest::newRow("save") << "save";
    QTest::newRow("prepare") << "prepare";
    QTest::newRow("remove") << "remove";
    QTest::newRow("new binding") << "add";
    QTest::newRow("source save") << "source";
}

void TestEvents::permission()
{
    QFETCH(QString, write);
    events::EventSource source =
        m_s->events.GetEventSource(m_s->folder(QStringLiteral("\\Mailbox - Other\\Inbox")), true);
    events::Bindings &bindings = source.Bindings();
    events::Binding theirs = bindings.Item(1);
    try {
        if (write == QLatin1String("save")) {
            theirs.setName(QStringLiteral("Mine now"));
            theirs.SaveChanges();
        } else if (write == QLatin1String("prepare")) {
            theirs.PrepareCustomChanges();
        } else if (write == QLatin1String("remove")) {
            bindings.Remove(theirs);
        } else if (write == QLatin1String("add")) {
            events::Binding b = bindings.Add();
            b.setName(QStringLiteral("Intruder"));
            b.SaveChanges();
        } else {
            source.SaveChanges();
        }
        QFAIL("a write by a user who is no author went through");
    } catch (const com::ComError &e) {
        QCOMPARE(e.number(), 70);
    }
    // Nothing was written.
    events::EventSource fresh =
        m_s->events.GetEventSource(m_s->folder(QStringLiteral("\\Mailbox - Other\\Inbox")), true);
    QCOMPARE(fresh.Bindings().Count(), 1);
    QCOMPARE(fresh.Bindings().Item(1).Name(), QStringLiteral("Theirs"));
    // An author may.
    FixtureSession author(QStringLiteral("agents.json"), QStringLiteral("Someone Else"));
    events::EventSource theirsSource =
        author.events.GetEventSource(author.folder(QStringLiteral("\\Mailbox - Other\\Inbox")), true);
    events::Binding b = theirsSource.Bindings().Item(1);
    b.setName(QStringLiteral("Renamed by an author"));
    b.SaveChanges();
}

void TestEvents::handlerName()
{
    events::EventSource source =
        m_s->events.GetEventSource(m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox")), true);
    QCOMPARE(agents::handlerName(m_s->events, source, source.Bindings().Item(1)),
             QStringLiteral("Script Handler"));
    QCOMPARE(agents::handlerName(m_s->events, source, source.Bindings().Item(2)),
             QStringLiteral("Routing Handler"));
    // A class no host knows: no name.
    QCOMPARE(agents::handlerName(m_s->events, source, source.Bindings().Item(3)), QString());
}

QTEST_GUILESS_MAIN(TestEvents)
#include "test_events.moc"
