// Writes of bindings by a user who is no author on the folder's host raise
// 70 and write nothing; an author's go through.
#include "platform/events/authors.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "tests/platform/events/eventsfixture.h"
#include "tests/support/storekit.h"

#include <QSqlRecord>
#include <QtTest>

using testkit::errorOf;
using testkit::StoreKit;

namespace {

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

class TestBindingPermission : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refusedWrite_data();
    void refusedWrite();
    void authorWrites_data() { refusedWrite_data(); }
    void authorWrites();
    void whoIsAnAuthor_data();
    void whoIsAnAuthor();
};

void TestBindingPermission::refusedWrite_data()
{
    QTest::addColumn<QString>("what");
    for (const char *w : {"save existing", "save new", "prepare custom changes", "save custom changes",
                          "remove", "source save"})
        QTest::newRow(w) << QString::fromLatin1(w);
}

void TestBindingPermission::refusedWrite()
{
    QFETCH(QString, what);
    StoreKit kit(testkit::kEventsFixture); // Tess Tester, no author on H2
    const QStringList before = storeRows(kit);
    QCOMPARE(errorOf([&] { write(kit, what); }), com::err::PermissionDenied);
    QCOMPARE(storeRows(kit), before);
}

void TestBindingPermission::authorWrites()
{
    QFETCH(QString, what);
    StoreKit kit(testkit::kEventsFixture, QStringLiteral("Someone Else"));
    QCOMPARE(errorOf([&] { write(kit, what); }), 0);
}

void TestBindingPermission::whoIsAnAuthor_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("author");
    QTest::newRow("listed author") << "Someone Else"
                                   << "H2" << true;
    QTest::newRow("not listed") << "Tess Tester"
                                << "H2" << false;
    QTest::newRow("host nobody knows") << "Tess Tester"
                                       << "H9" << true;
}

void TestBindingPermission::whoIsAnAuthor()
{
    QFETCH(QString, user);
    QFETCH(QString, host);
    QFETCH(bool, author);
    StoreKit kit(testkit::kEventsFixture, user);
    QCOMPARE(events::isAuthor(kit.session.MAPIOBJECT(), host), author);
    QCOMPARE(errorOf([&] { events::checkAuthor(kit.session.MAPIOBJECT(), host); }),
             author ? 0 : com::err::PermissionDenied);
}

QTEST_GUILESS_MAIN(TestBindingPermission)
#include "test_binding_permission.moc"
