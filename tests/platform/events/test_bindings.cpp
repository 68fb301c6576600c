// Bindings of an event source: the handler field, the store sequence of a new
// binding, changes of an existing one, their schedules, and the writes
// refused to a user who is no author on the folder's host.
#include "platform/events/authors.h"
#include "platform/events/events.h"
#include "platform/events/guid.h"
#include "platform/mapi/session.h"
#include "platform/store/fixture.h"
#include "tests/support/storekit.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using testkit::errorOf;
using testkit::StoreKit;

namespace {

/// Two hosts, one open to every user and one with a list of authors; a
/// mailbox with three agents of three handlers and an empty folder; and a
/// mailbox on the restricted host.
const QByteArray kFixture = R"({"user": "Tess Tester", "hosts": [
{"name": "H1", "handlers": [{"class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Script Handler"},
  {"class": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Routing Handler"}]},
{"name": "H2", "authors": ["Someone Else"],
  "handlers": [{"class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Script Handler"}]}],
"stores": [{"name": "Mailbox - Tess Tester", "host": "H1", "folders": [{"name": "Inbox", "agents": [
{"name": "Auto Reply", "mask": 3, "script": "old script",
  "schedule": {"type": 1, "interval": 60, "start": "06:00", "end": "18:00", "days": 127, "at": "00:00"}},
{"name": "Router", "handler": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}", "mask": 15},
{"name": "Clipper", "handler": "{11111111-2222-3333-4444-555555555555}", "mask": 4, "active": false}]},
{"name": "Empty"}]},
{"name": "Mailbox - Other", "host": "H2",
  "folders": [{"name": "Inbox", "agents": [{"name": "Theirs", "script": "their script"}]}]}]})";

const QString kInbox = u"\\Mailbox - Tess Tester\\Inbox"_s;
const QString kEmpty = u"\\Mailbox - Tess Tester\\Empty"_s;
constexpr int32_t kNotFound = static_cast<int32_t>(0x8004010F);

/// One write of a binding in the other mailbox's inbox.
void write(StoreKit &kit, const QString &what)
{
    events::EventSource source = kit.events.GetEventSource(kit.folder(u"\\Mailbox - Other\\Inbox"_s), true);
    events::Bindings &bindings = source.Bindings();
    events::Binding theirs = bindings.Item(1);
    if (what == "save existing"_L1) {
        theirs.setName(u"Mine now"_s);
        theirs.SaveChanges();
    } else if (what == "save new"_L1) {
        events::Binding b = bindings.Add();
        b.setName(u"Intruder"_s);
        b.setHandlerClassID(events::kScriptHandler);
        b.SaveChanges();
    } else if (what == "prepare custom changes"_L1) {
        theirs.PrepareCustomChanges();
    } else if (what == "save custom changes"_L1) {
        theirs.SaveCustomChanges(kit.session.GetMessage(theirs.EntryID(), QString()));
    } else if (what == "remove"_L1) {
        bindings.Remove(theirs);
    } else if (what == "source save"_L1) {
        source.SaveChanges();
    }
}

} // namespace

class TestBindings : public QObject {
    Q_OBJECT

    events::EventSource source(const QString &path)
    {
        return m_kit->events.GetEventSource(m_kit->folder(path), true);
    }
    qint64 hiddenCount(const QString &path) { return m_kit->folder(path).HiddenMessages().Count(); }
    std::unique_ptr<StoreKit> m_kit;

private Q_SLOTS:
    void init() { m_kit = std::make_unique<StoreKit>(kFixture); }
    void cleanup() { m_kit.reset(); }

    // The handler field of a binding message: a class identifier's memory-order hexadecimal.
    void toMemoryOrder_data()
    {
        QTest::addColumn<QString>("classId");
        QTest::addColumn<QString>("field");
        QTest::newRow("script handler")
            << u"{69E54151-B371-11D0-BCD9-00AA00C1AB1C}"_s << u"5141E56971B3D011BCD900AA00C1AB1C"_s;
        QTest::newRow("lower-case digits")
            << u"{69e54151-b371-11d0-bcd9-00aa00c1ab1c}"_s << u"5141E56971B3D011BCD900AA00C1AB1C"_s;
        QTest::newRow("no braces") << u"69E54151-B371-11D0-BCD9-00AA00C1AB1C"_s
                                   << u"5141E56971B3D011BCD900AA00C1AB1C"_s;
        QTest::newRow("one brace only") << u"{69E54151-B371-11D0-BCD9-00AA00C1AB1C"_s << u""_s;
        QTest::newRow("not hexadecimal") << u"{69E5415G-B371-11D0-BCD9-00AA00C1AB1C}"_s << u""_s;
    }

    void toMemoryOrder()
    {
        QFETCH(QString, classId);
        QFETCH(QString, field);
        QCOMPARE(events::memoryOrderHex(classId), field);
    }

    void saveMakesBothMessages()
    {
        events::EventSource empty = source(kEmpty);
        events::Binding b = empty.Bindings().Add();
        b.setName(u"Fresh"_s);
        b.setHandlerClassID(events::kScriptHandler);
        b.SaveChanges();

        QVERIFY(!b.EntryID().isEmpty());
        QVERIFY(b.EntryID() != b.StateMessageID());
        const mapi::Folder folder = m_kit->folder(kEmpty);
        const mapi::Message message = m_kit->session.GetMessage(b.EntryID(), QString());
        QCOMPARE(message.Class(), mapi::kBindingClass);
        QCOMPARE(message.Subject(), u"Fresh"_s);
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
    }

    void failedSaveLeavesNothing()
    {
        // A store that refuses the binding row: the two messages made before it
        // in the same transaction go too.
        m_kit->db().run(
            u"CREATE TRIGGER refuse BEFORE INSERT ON bindings BEGIN SELECT RAISE(ABORT, 'no'); END"_s);
        events::EventSource empty = source(kEmpty);
        events::Binding b = empty.Bindings().Add();
        b.setName(u"Doomed"_s);
        b.setHandlerClassID(events::kScriptHandler);
        QVERIFY(errorOf([&] { b.SaveChanges(); }) != 0);
        QCOMPARE(b.EntryID(), QString());
        QCOMPARE(b.StateMessageID(), QString());
        QCOMPARE(hiddenCount(kEmpty), 0);
        QCOMPARE(m_kit->number(u"SELECT COUNT(*) FROM messages WHERE subject = 'Doomed'"_s), 0);
        // Once the store takes it again, the same binding saves as new.
        m_kit->db().run(u"DROP TRIGGER refuse"_s);
        b.SaveChanges();
        QCOMPARE(hiddenCount(kEmpty), 2);
    }

    void changesOfAStoredBinding()
    {
        events::EventSource inbox = source(kInbox);
        events::Binding b = inbox.Bindings().Item(1);
        const QString entryId = b.EntryID();
        const QString stateId = b.StateMessageID();
        b.setName(u"Auto Reply 2"_s);
        b.setHandlerClassID(events::kRoutingHandler);
        b.setEventMask(8);
        b.setActive(false);
        b.Schedule().setInterval(15);
        // Pending until saved.
        QCOMPARE(source(kInbox).Bindings().Item(1).Name(), u"Auto Reply"_s);
        b.SaveChanges();

        QCOMPARE(b.StateMessageID(), stateId);
        const mapi::Message message = m_kit->session.GetMessage(entryId, QString());
        QCOMPARE(message.Subject(), u"Auto Reply 2"_s);
        QCOMPARE(message.Fields(mapi::PR_HANDLER).Value().toByteArray(),
                 QByteArray("5141E66971B3D011BCD900AA00C1AB1C"));
        QCOMPARE(message.Fields(mapi::PR_SCRIPT).Value().toByteArray(), QByteArray("old script"));
        const events::Binding stored = source(kInbox).Bindings().Item(1);
        QCOMPARE(stored.Name(), u"Auto Reply 2"_s);
        QCOMPARE(int(stored.EventMask()), 8);
        QCOMPARE(stored.Active(), false);
        QCOMPARE(int(stored.Schedule().interval()), 15);
        QCOMPARE(int(stored.Schedule().Type()), 1);
        QCOMPARE(hiddenCount(kInbox), 6); // no message was made
    }

    void saveOfARemovedBindingRaises()
    {
        events::EventSource first = source(kInbox);
        events::Binding b = first.Bindings().Item(2);
        events::EventSource second = source(kInbox);
        second.Bindings().Remove(second.Bindings().Item(2));
        b.setName(u"Ghost"_s);
        QCOMPARE(errorOf([&] { b.SaveChanges(); }), kNotFound);
        QCOMPARE(m_kit->session.GetMessage(b.EntryID(), QString()).Subject(), u"Router"_s);
    }

    void scheduleStoredAndReadBack_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("interval");
        QTest::addColumn<int>("days");
        QTest::addColumn<QTime>("start");
        QTest::addColumn<QTime>("end");
        QTest::addColumn<QTime>("at");
        QTest::addColumn<QTime>("startRead");
        QTest::addColumn<QTime>("atRead");
        QTest::newRow("weekly with no day")
            << 3 << 1 << 0 << QTime(6, 0) << QTime(18, 0) << QTime(9, 45) << QTime(6, 0) << QTime(9, 45);
        QTest::newRow("seconds are dropped") << 1 << 45 << 127 << QTime(6, 0, 59) << QTime(18, 0)
                                             << QTime(1, 2, 3) << QTime(6, 0) << QTime(1, 2);
        QTest::newRow("an invalid time is midnight")
            << 2 << 1 << 1 << QTime() << QTime(18, 0) << QTime(12, 0) << QTime(0, 0) << QTime(12, 0);
    }

    void scheduleStoredAndReadBack()
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

    void writeOfAnotherHost_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("user");
        QTest::addColumn<int>("error");
        for (const char *w : {"save existing", "save new", "prepare custom changes", "save custom changes",
                              "remove", "source save"}) {
            QTest::addRow("%s, no author", w)
                << QString::fromLatin1(w) << QString() << com::err::PermissionDenied;
            QTest::addRow("%s, author", w) << QString::fromLatin1(w) << u"Someone Else"_s << 0;
        }
    }

    void writeOfAnotherHost()
    {
        QFETCH(QString, what);
        QFETCH(QString, user);
        QFETCH(int, error);
        StoreKit kit(kFixture, user); // Tess Tester when no user: no author on H2
        const QJsonObject before = store::dumpStore(kit.db());
        QCOMPARE(errorOf([&] { write(kit, what); }), error);
        if (error != 0)
            QCOMPARE(store::dumpStore(kit.db()), before);
    }

    void unknownHostTakesEveryone()
    {
        QVERIFY(events::isAuthor(m_kit->session.MAPIOBJECT(), u"H9"_s));
        QVERIFY(!events::isAuthor(m_kit->session.MAPIOBJECT(), u"H2"_s));
    }
};

QTEST_GUILESS_MAIN(TestBindings)
#include "test_bindings.moc"
