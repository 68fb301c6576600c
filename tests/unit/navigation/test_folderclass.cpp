// How the tree classifies folders (6, 7, 18) and agents (19, 20, 21).
#include "navigation/folderclass.h"
#include "navigation/nodekinds.h"
#include "platform/events/events.h"
#include "platform/mapi/folderscan.h"
#include "tests/support/storekit.h"

#include <QtTest>

using testkit::StoreKit;

namespace {

const QByteArray kFixture = R"({
  "user": "Tess Tester",
  "hosts": [ { "name": "H1", "handlers": [] } ],
  "stores": [ { "name": "Mailbox - Tess Tester", "host": "H1", "folders": [
    { "name": "Plain" },
    { "name": "With Agents", "agents": [ { "name": "A" } ] },
    { "name": "Other Hidden", "hidden": [ { "subject": "Routing Map Message", "class": "IPM.Note" } ] },
    { "name": "Lost Binding", "agents": [ { "name": "B", "binding": false, "stateMessage": false } ] },
    { "name": "Only Messages", "messages": [ { "subject": "EventBinding", "class": "IPC.Microsoft.EventBinding" } ] },
    { "name": "Access 62", "access": 62, "agents": [ { "name": "C" } ] },
    { "name": "No Source", "eventSource": false, "agents": [ { "name": "D" } ] },
    { "name": "Above 63", "agents": [ { "name": "E" } ] },
    { "name": "Lowered For Me", "agents": [ { "name": "F" } ] } ] } ] })";

const QString kMailbox = QStringLiteral("\\Mailbox - Tess Tester\\");

} // namespace

class TestFolderClass : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_kit.reset(); }
    void folderImage_data();
    void folderImage();
    void unreadableRightsAreNoRights();
    void handlerField_data();
    void handlerField();

private:
    std::unique_ptr<StoreKit> m_kit;
};

void TestFolderClass::initTestCase()
{
    m_kit = std::make_unique<StoreKit>(kFixture);
    const mapi::Folder above = m_kit->folder(kMailbox + QStringLiteral("Above 63"));
    m_kit->db().run(QStringLiteral("UPDATE folders SET access = 127 WHERE id = ?"), {above.row().row});
    const mapi::Folder lowered = m_kit->folder(kMailbox + QStringLiteral("Lowered For Me"));
    m_kit->db().run(
        QStringLiteral("INSERT INTO folder_access(folder, user, access) VALUES(?, 'Tess Tester', 62)"),
        {lowered.row().row});
}

void TestFolderClass::folderImage_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("image");
    QTest::newRow("full rights, nothing hidden") << "Plain" << 6;
    QTest::newRow("full rights, binding messages") << "With Agents" << 7;
    QTest::newRow("other hidden messages alone") << "Other Hidden" << 6;
    QTest::newRow("a binding message without its binding") << "Lost Binding" << 7;
    QTest::newRow("the class among ordinary messages") << "Only Messages" << 6;
    QTest::newRow("access 62, binding messages") << "Access 62" << 18;
    QTest::newRow("no event source, binding messages") << "No Source" << 18;
    QTest::newRow("access above 63 isn't exactly 63") << "Above 63" << 6;
    QTest::newRow("the user's own access row") << "Lowered For Me" << 18;
}

void TestFolderClass::folderImage()
{
    QFETCH(QString, folder);
    QFETCH(int, image);
    const mapi::FolderScan scan(m_kit->session.MAPIOBJECT());
    QCOMPARE(navigation::classifyFolder(m_kit->folder(kMailbox + folder), m_kit->events, scan), image);
}

void TestFolderClass::unreadableRightsAreNoRights()
{
    StoreKit kit(kFixture);
    const mapi::Folder agents = kit.folder(kMailbox + QStringLiteral("With Agents"));
    const mapi::FolderScan scan(kit.session.MAPIOBJECT());
    QCOMPARE(navigation::classifyFolder(agents, kit.events, scan), navigation::kImageFolderWithAgents);
    kit.session.Logoff();
    QCOMPARE(navigation::classifyFolder(agents, kit.events, scan), navigation::kImageNoRights);
}

void TestFolderClass::handlerField_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<int>("image");
    QTest::newRow("script handler") << QByteArray("5141E56971B3D011BCD900AA00C1AB1C") << 19;
    QTest::newRow("routing handler") << QByteArray("5141E66971B3D011BCD900AA00C1AB1C") << 20;
    QTest::newRow("lower-case digits") << QByteArray("5141e56971b3d011bcd900aa00c1ab1c") << 21;
    QTest::newRow("registry form") << QByteArray("{69E54151-B371-11D0-BCD9-00AA00C1AB1C}") << 21;
    QTest::newRow("another handler") << QByteArray("3E2D1C8B504F6B4A9C7D8E9F0A1B2C3D") << 21;
}

void TestFolderClass::handlerField()
{
    QFETCH(QByteArray, field);
    QFETCH(int, image);
    QCOMPARE(navigation::classifyHandlerField(field), image);
}

QTEST_GUILESS_MAIN(TestFolderClass)
#include "test_folderclass.moc"
