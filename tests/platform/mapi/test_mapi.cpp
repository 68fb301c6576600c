#include "tests/support/fixturestore.h"

#include <QtTest>

using testsupport::FixtureSession;

class TestMapi : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_s = std::make_unique<FixtureSession>(QStringLiteral("agents.json")); }
    void cleanup() { m_s.reset(); }
    void sessionMembers();
    void notFound_data();
    void notFound();
    void access_data();
    void access();
    void accessPerUser();
    void infoStoresInOrder();
    void filterLimitsCountAndItems();
    void sortByDeliveryNewestFirst();
    void updateWritesFieldsAndSubject();
    void deleteRemovesTheMessage();
    void logoffEndsTheSession();
    void logonThroughTheProfileDialog();

private:
    std::unique_ptr<FixtureSession> m_s;
};

void TestMapi::sessionMembers()
{
    QCOMPARE(m_s->session.CurrentUser(), QStringLiteral("Tess Tester"));
    QCOMPARE(m_s->session.Name(), QStringLiteral("Test"));
    QVERIFY(!m_s->session.Version().isEmpty());
    QVERIFY(m_s->session.MAPIOBJECT());
}

void TestMapi::notFound_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("message that names nothing") << "message";
    QTest::newRow("folder that names nothing") << "folder";
    QTest::newRow("folder identifier as a message") << "folder-as-message";
    QTest::newRow("message in another store") << "wrong-store";
}

void TestMapi::notFound()
{
    QFETCH(QString, kind);
    const mapi::Folder inbox = m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox"));
    const mapi::Message agent =
        m_s->agentMessage(QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Auto Reply"));
    const mapi::Folder other = m_s->folder(QStringLiteral("\\Mailbox - Other\\Inbox"));
    try {
        if (kind == QLatin1String("message"))
            m_s->session.GetMessage(QStringLiteral("00FF"), inbox.StoreID());
        else if (kind == QLatin1String("folder"))
            m_s->session.GetFolder(QStringLiteral("00FF"), inbox.StoreID());
        else if (kind == QLatin1String("folder-as-message"))
            m_s->session.GetMessage(inbox.ID(), inbox.StoreID());
        else
            m_s->session.GetMessage(agent.ID(), other.StoreID());
        QFAIL("no error was raised");
    } catch (const com::ComError &e) {
        QCOMPARE(e.number(), static_cast<int32_t>(0x8004010F));
    }
    // With no store identifier the message is found in any store.
    QCOMPARE(m_s->session.GetMessage(agent.ID(), QString()).Subject(), QStringLiteral("Auto Reply"));
}

void TestMapi::access_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("access");
    QTest::newRow("full rights") << "\\Mailbox - Tess Tester\\Inbox" << 63;
    QTest::newRow("one bit short") << "\\Mailbox - Tess Tester\\Locked" << 62;
    QTest::newRow("no event source, full rights") << "\\Mailbox - Tess Tester\\NoSource" << 63;
}

void TestMapi::access()
{
    QFETCH(QString, path);
    QFETCH(int, access);
    QCOMPARE(m_s->folder(path).Fields(mapi::PR_ACCESS).toInt(), access);
    // The same through GetFolder.
    const mapi::Folder f = m_s->folder(path);
    QCOMPARE(m_s->session.GetFolder(f.ID(), f.StoreID()).Fields(mapi::PR_ACCESS).toInt(), access);
}

void TestMapi::accessPerUser()
{
    const mapi::Folder inbox = m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox"));
    m_s->session.MAPIOBJECT()->db->run(
        QStringLiteral("INSERT INTO folder_access(folder, user, access) VALUES(?, 'Tess Tester', 3)"),
        {inbox.row().row});
    QCOMPARE(m_s->session.GetFolder(inbox.ID(), inbox.StoreID()).Fields(mapi::PR_ACCESS).toInt(), 3);
    mapi::Session other(m_s->prompter);
    other.LogonStore(m_s->storePath, QStringLiteral("Someone Else"));
    QCOMPARE(other.GetFolder(inbox.ID(), inbox.StoreID()).Fields(mapi::PR_ACCESS).toInt(), 63);
}

void TestMapi::infoStoresInOrder()
{
    QStringList names, providers;
    for (const mapi::InfoStore &s : m_s->session.InfoStores()) {
        names << s.Name();
        providers << s.ProviderName();
    }
    QCOMPARE(names, (QStringList{QStringLiteral("Mailbox - Tess Tester"), QStringLiteral("Public Folders"),
                                 QStringLiteral("Mailbox - Other"), QStringLiteral("Personal")}));
    QCOMPARE(providers.last(), QStringLiteral("Personal Folders"));
}

void TestMapi::filterLimitsCountAndItems()
{
    mapi::MessageList hidden = m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox")).HiddenMessages();
    QCOMPARE(hidden.Count(), 8); // four binding messages and four state messages
    hidden.Filter().setType(mapi::kBindingClass);
    QCOMPARE(hidden.Count(), 4);
    QStringList subjects;
    for (const mapi::Message &m : hidden)
        subjects << m.Subject();
    QCOMPARE(subjects, (QStringList{QStringLiteral("Auto Reply"), QStringLiteral("Router"),
                                    QStringLiteral("Clipper"), QStringLiteral("No Marker")}));
    QCOMPARE(hidden.Item(2).Subject(), QStringLiteral("Router"));
    hidden.Filter().setType(mapi::kStateClass);
    QCOMPARE(hidden.Count(), 4);
    QVERIFY_THROWS_EXCEPTION(com::ComError, hidden.Item(5));
    // Ordinary messages are apart.
    QCOMPARE(m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox")).Messages().Count(), 1);
}

void TestMapi::sortByDeliveryNewestFirst()
{
    const mapi::Folder inbox = m_s->folder(QStringLiteral("\\Mailbox - Tess Tester\\Inbox"));
    store::Database &db = *m_s->session.MAPIOBJECT()->db;
    for (const auto &[subject, time] :
         {std::pair{"Old", "2025-01-01 00:00:00"}, {"Newest", "2027-01-01 00:00:00"}}) {
        db.run(
            QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created, modified, received,"
                           " delivered) VALUES(?, 0, 'IPM.Note', ?, ?, ?, ?, ?)"),
            {inbox.row().row, QString::fromLatin1(subject), QString::fromLatin1(time),
             QString::fromLatin1(time), QString::fromLatin1(time), QString::fromLatin1(time)});
    }
    mapi::MessageList messages = inbox.Messages();
    messages.Sort(2, mapi::PR_MESSAGE_DELIVERY_TIME);
    QStringList order;
    for (const mapi::Message &m : messages)
        order << m.Subject();
    QCOMPARE(order, (QStringList{QStringLiteral("Newest"), QStringLiteral("Hello"), QStringLiteral("Old")}));
    messages.Sort(1, mapi::PR_MESSAGE_DELIVERY_TIME);
    QCOMPARE(messages.Item(1).Subject(), QStringLiteral("Old"));
}

void TestMapi::updateWritesFieldsAndSubject()
{
    mapi::Message m = m_s->agentMessage(QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Auto Reply"));
    const QByteArray script("caf\xe9 \x80\xff", 7);
    m.Fields(mapi::PR_SCRIPT).setValue(script);
    m.setSubject(QStringLiteral("Renamed"));
    // Nothing reaches the store before Update.
    QCOMPARE(m_s->session.GetMessage(m.ID(), m.StoreID()).Subject(), QStringLiteral("Auto Reply"));
    m.Update();
    const mapi::Message again = m_s->session.GetMessage(m.ID(), m.StoreID());
    QCOMPARE(again.Subject(), QStringLiteral("Renamed"));
    QCOMPARE(again.Fields(mapi::PR_SCRIPT).Value().toByteArray(), script);
    QCOMPARE(again.Fields(mapi::PR_LAST_MODIFIER_NAME).Value().toByteArray(), QByteArray("Tess Tester"));
    QVERIFY(again.TimeLastModified() > QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    QVERIFY(!again.Fields(QStringLiteral("RouteType")).Value().isValid());
}

void TestMapi::deleteRemovesTheMessage()
{
    mapi::Message m = m_s->agentMessage(QStringLiteral("\\Mailbox - Tess Tester\\Inbox\\Clipper"));
    m.Delete();
    QVERIFY_THROWS_EXCEPTION(com::ComError, m_s->session.GetMessage(m.ID(), m.StoreID()));
    QVERIFY_THROWS_EXCEPTION(com::ComError, m.Delete());
}

void TestMapi::logoffEndsTheSession()
{
    m_s->session.Logoff();
    QVERIFY_THROWS_EXCEPTION(com::ComError, m_s->session.InfoStores());
}

void TestMapi::logonThroughTheProfileDialog()
{
    ui::ScriptedPrompter prompter;
    mapi::Session session(prompter);
    prompter.enqueue(QStringLiteral("Cancel"));
    try {
        session.Logon();
        QFAIL("a cancelled logon went on");
    } catch (const com::ComError &e) {
        QCOMPARE(e.number(), static_cast<int32_t>(0x80040113));
    }
    // With no profile yet the dialog offers the demo profile, which is then made.
    const QList<ui::PromptRecord> prompts = prompter.takePrompts();
    QCOMPARE(prompts.size(), 1);
    QCOMPARE(prompts.first().extra.value(QStringLiteral("offerDemo")).toBool(), true);
    session.Logon();
    QCOMPARE(session.Name(), QStringLiteral("Demo"));
    QCOMPARE(session.CurrentUser(), QStringLiteral("Alice Admin"));
    QVERIFY(session.InfoStores().size() >= 3);
}

QTEST_GUILESS_MAIN(TestMapi)
#include "test_mapi.moc"
