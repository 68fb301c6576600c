// Where the main window goes (the taskbar found from the screen and its
// work area, the window centred in what the taskbar leaves), and the
// settings' texts; the main window's commands.
#include "app/frmmain.h"
#include "app/positionform.h"
#include "app/program.h"
#include "app/settingstext.h"
#include "platform/os/screen.h"
#include "platform/ui/scriptedprompter.h"

#include <QMenu>
#include <QToolBar>
#include <QtTest>

class TestApp : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void taskbarRect_data()
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
        QTest::newRow("a second screen")
            << QRect(1920, 0, 1280, 1024) << QRect(1920, 0, 1280, 994) << QRect(1920, 994, 1280, 30);
        QTest::newRow("no screen") << QRect() << QRect() << QRect();
    }

    void taskbarRect()
    {
        QFETCH(QRect, screen);
        QFETCH(QRect, workArea);
        QFETCH(QRect, taskbar);
        QCOMPARE(os::taskbarRect(os::ScreenGeometry{screen, workArea}), taskbar);
    }

    // A screen of 1024 by 768 pixels, 15 twips to a pixel: 15360 by 11520
    // twips; a window of 7536 by 6060 twips.
    void centred_data()
    {
        QTest::addColumn<QRect>("taskbar");
        QTest::addColumn<QPoint>("expected");
        QTest::newRow("no taskbar") << QRect() << QPoint(3912, 2730);
        QTest::newRow("at the bottom, 30 high") << QRect(0, 738, 1024, 30) << QPoint(3912, 2730 - 225);
        QTest::newRow("at the top, 30 high") << QRect(0, 0, 1024, 30) << QPoint(3912, 225 + 2730);
        QTest::newRow("at the left, 60 wide") << QRect(0, 0, 60, 768) << QPoint(450 + 3912, 2730);
        QTest::newRow("at the right, 60 wide") << QRect(964, 0, 60, 768) << QPoint(3912 - 450, 2730);
    }

    void centred()
    {
        QFETCH(QRect, taskbar);
        QFETCH(QPoint, expected);
        QCOMPARE(app::centredPosition(QSize(15360, 11520), QSize(7536, 6060), taskbar, 15, 15), expected);
    }

    void leadingNumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::newRow("decimal") << "10.8" << 10.8;
        QTest::newRow("trailing words") << "14pt" << 14.0;
        QTest::newRow("leading blanks") << "  9.5" << 9.5;
        QTest::newRow("comma is not a decimal point") << "10,8" << 10.0;
        QTest::newRow("no number") << "large" << 0.0;
        QTest::newRow("point first") << ".5" << 0.5;
    }

    void leadingNumber()
    {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QCOMPARE(app::leadingNumber(text), expected);
    }

    void formatFontSize_data()
    {
        QTest::addColumn<double>("size");
        QTest::addColumn<QString>("expected");
        QTest::newRow("one place") << 10.8 << "10.8";
        QTest::newRow("whole") << 10.0 << "10";
        QTest::newRow("four places") << 9.1234 << "9.1234";
        QTest::newRow("rounded to four places") << 9.12345678 << "9.1235";
    }

    void formatFontSize()
    {
        QFETCH(double, size);
        QFETCH(QString, expected);
        QCOMPARE(app::formatFontSize(size), expected);
    }

    // Every command the program names has one action, under its own name,
    // in a menu or on the toolbar with its picture.
    void commands()
    {
        ui::ScriptedPrompter prompter;
        app::Program program(prompter);
        frmMain main(program);
        const auto *toolbar = main.findChild<QToolBar *>(QStringLiteral("tbToolBar"));
        QVERIFY(toolbar);
        for (const app::CommandName &c : app::kCommandNames) {
            const QString name = QString::fromLatin1(c.name);
            QAction *a = main.action(c.command);
            QVERIFY2(a, qPrintable(name));
            QCOMPARE(a->objectName(), name);
            QCOMPARE(main.findChildren<QAction *>(name).size(), 1);
            const bool button = toolbar->actions().contains(a);
            QCOMPARE(button, name.startsWith(QLatin1String("tbToolBar.")));
            QVERIFY2(!button || !a->icon().isNull(), qPrintable(name));
            QVERIFY2(button || !a->associatedObjects().isEmpty(), qPrintable(name));
        }
    }
};

QTEST_MAIN(TestApp)
#include "test_app.moc"
