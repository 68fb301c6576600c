#include "platform/os/clipboard.h"
#include "platform/os/screen.h"
#include "tests/support/testenv.h"

#include <QtTest>

class TestDesktop : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void clipboardText_data();
    void clipboardText();
    void clipboardCleared();
    void taskbarRect_data();
    void taskbarRect();

private:
    testsupport::TestHome m_home;
};

void TestDesktop::clipboardText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << "Sub Folder_OnMessageCreated";
    QTest::newRow("beyond ASCII") << QStringLiteral("M\u00fcller");
}

void TestDesktop::clipboardText()
{
    QFETCH(QString, text);
    os::clipboard::setText(QStringLiteral("before"));
    os::clipboard::setText(text);
    QVERIFY(os::clipboard::hasText());
    QCOMPARE(os::clipboard::text(), text);
}

void TestDesktop::clipboardCleared()
{
    os::clipboard::setText(QStringLiteral("something"));
    os::clipboard::clear();
    QVERIFY(!os::clipboard::hasText());
    QCOMPARE(os::clipboard::text(), QString());
}

void TestDesktop::taskbarRect_data()
{
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<QRect>("workArea");
    QTest::addColumn<QRect>("taskbar");
    const QRect screen(0, 0, 1920, 1080);
    QTest::newRow("none") << screen << screen << QRect();
    QTest::newRow("bottom") << screen << QRect(0, 0, 1920, 1040) << QRect(0, 1040, 1920, 40);
    QTest::newRow("left") << screen << QRect(64, 0, 1856, 1080) << QRect(0, 0, 64, 1080);
    QTest::newRow("top and bottom: the top one")
        << screen << QRect(0, 28, 1920, 1012) << QRect(0, 0, 1920, 28);
    QTest::newRow("a second screen") << QRect(1920, 0, 1280, 1024) << QRect(1920, 0, 1280, 994)
                                     << QRect(1920, 994, 1280, 30);
    QTest::newRow("no screen") << QRect() << QRect() << QRect();
}

void TestDesktop::taskbarRect()
{
    QFETCH(QRect, screen);
    QFETCH(QRect, workArea);
    QFETCH(QRect, taskbar);
    QCOMPARE(os::taskbarRect(os::ScreenGeometry{screen, workArea}), taskbar);
}

QTEST_MAIN(TestDesktop)
#include "test_desktop.moc"
