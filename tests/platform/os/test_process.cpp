#include "platform/com/comerror.h"
#include "platform/os/commandline.h"
#include "platform/os/system.h"
#include "tests/support/testenv.h"

#include <QWidget>
#include <QtTest>

#include <atomic>
#include <thread>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class TestProcess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
#ifndef Q_OS_UNIX
        QSKIP("the commands here are shell scripts");
#endif
    }

    void splitCommandLine_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("unquoted, the shortest that starts")
            << "/opt/my tools/edit now \"x\"" << QStringList{"/opt/my tools/edit", "now", "x"};
        QTest::newRow("nothing starts: words as they are")
            << "/nowhere/a b \"c\"" << QStringList{"/nowhere/a", "b", "c"};
    }

    void splitCommandLine()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, words);
        const QStringList programs{u"/opt/my tools/edit"_s, u"/opt/my tools/edit now"_s};
        QCOMPARE(os::splitCommandLine(line, [&programs](const QString &w) { return programs.contains(w); }),
                 words);
    }

    void execCmdGivesTheExitCode_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("code");
        QTest::newRow("a code of its own") << "sh -c \"exit 3\"" << 3;
        QTest::newRow("killed") << "sh -c \"kill -9 $$\"" << -1;
        // A program that reads its input ends instead of waiting for ever.
        QTest::newRow("no input") << "sh -c \"read line || exit 4\"" << 4;
    }

    void execCmdGivesTheExitCode()
    {
        QFETCH(QString, line);
        QFETCH(int, code);
        QCOMPARE(os::ExecCmd(line), code);
    }

    void execCmdPassesQuotedArguments_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<bool>("quoteProgram");
        QTest::newRow("quoted program with blanks") << "my tools/edit it.sh" << true;
        QTest::newRow("unquoted program with blanks") << "my tools/edit it.sh" << false;
        QTest::newRow("plain program") << "edit.sh" << false;
    }

    void execCmdPassesQuotedArguments()
    {
        QFETCH(QString, program);
        QFETCH(bool, quoteProgram);
        // An editor as the editor rules call one: program, then the quoted
        // file. It writes only after a pause: ExecCmd waits for its end.
        const QString path = m_home.file(program);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile script(path);
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nsleep 0.3\nfor a in \"$@\"; do echo \"[$a]\"; done > \"$HOME/args\"\n");
        script.close();
        script.setPermissions(script.permissions() | QFile::ExeOwner);
        const QString file = m_home.file(u"Auto Reply.txt"_s);
        const QString prefix = quoteProgram ? QLatin1Char('"') + path + u"\" "_s : path + QLatin1Char(' ');
        QCOMPARE(os::ExecCmd(prefix + u"--wait \""_s + file + QLatin1Char('"')), 0);
        QFile args(m_home.file(u"home/args"_s));
        QVERIFY(args.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(args.readAll()), u"[--wait]\n["_s + file + u"]\n"_s);
    }

    void execCmdRaisesWhenNothingStarts_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("no such program") << "/no/such/program \"x\"";
        QTest::newRow("a file that isn't a program") << "/etc/hostname";
        QTest::newRow("empty") << "";
    }

    void execCmdRaisesWhenNothingStarts()
    {
        QFETCH(QString, line);
        try {
            os::ExecCmd(line);
            QFAIL("nothing was raised");
        } catch (const com::ComError &e) {
            QCOMPARE(e.number(), com::err::FileNotFound);
            QVERIFY(!e.description().isEmpty());
        }
    }

    void execCmdRepaintsAndDropsWhatTheUserDoes()
    {
        // A window that counts what reaches it.
        class Window : public QWidget {
        public:
            int input = 0;
            bool waiting = false;
            bool paintedWhileWaiting = false;

        protected:
            void keyPressEvent(QKeyEvent *) override { ++input; }
            void mousePressEvent(QMouseEvent *) override { ++input; }
            void paintEvent(QPaintEvent *) override { paintedWhileWaiting = paintedWhileWaiting || waiting; }
        } window;
        window.resize(200, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // The user types and clicks while the editor runs; the editor ends
        // when the user is done, or after five seconds.
        const QString started = m_home.file(u"started"_s), done = m_home.file(u"done"_s);
        std::atomic<bool> userDone = false;
        std::thread user([&] {
            for (int i = 0; i < 500 && !QFileInfo::exists(started); ++i)
                QThread::msleep(10);
            QWindow *w = window.windowHandle();
            qt_handleKeyEvent(w, QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, u"a"_s);
            qt_handleKeyEvent(w, QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier, u"a"_s);
            qt_handleMouseEvent(w, QPointF(10, 10), w->mapToGlobal(QPointF(10, 10)), Qt::LeftButton,
                                Qt::LeftButton, QEvent::MouseButtonPress, Qt::NoModifier, 0);
            qt_handleMouseEvent(w, QPointF(10, 10), w->mapToGlobal(QPointF(10, 10)), Qt::NoButton,
                                Qt::LeftButton, QEvent::MouseButtonRelease, Qt::NoModifier, 0);
            QFile(done).open(QIODevice::WriteOnly);
            userDone = true;
        });
        window.waiting = true;
        window.update();
        os::ExecCmd(u"sh -c \"touch '%1'; i=0; while [ ! -e '%2' ] && [ $i -lt 100 ]; do sleep 0.05; "
                    "i=$((i+1)); done\""_s.arg(started, done));
        window.waiting = false;
        while (!userDone)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        user.join();
        QCoreApplication::processEvents();
        QVERIFY(window.paintedWhileWaiting);
        QCOMPARE(window.input, 0);
    }

    void temporaryFilesAreTheUsersOwn()
    {
        const QString runtime = m_home.file(u"runtime"_s);
        QVERIFY(QDir().mkpath(runtime));
        QFile::setPermissions(runtime, QFileDevice::Permissions(0x7000));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
        const QString folder = os::GetTempPath();
        QCOMPARE(folder, m_home.file(u"runtime/sorrelin/"_s));
        const auto mode = [](const QString &path) {
            struct stat info {};
            ::stat(QFile::encodeName(path).constData(), &info);
            return info.st_mode & 0777;
        };
        QCOMPARE(mode(folder), 0700u);
        QCOMPARE(os::writeTempFile(folder + u"Log For Auto Reply.txt"_s, "log\r\n"), 5);
        QCOMPARE(mode(folder + u"Log For Auto Reply.txt"_s), 0600u);
        // A folder of that name that others may enter isn't used.
        QFile::setPermissions(folder, QFileDevice::Permissions(0x7777));
        QVERIFY_THROWS_EXCEPTION(com::ComError, os::GetTempPath());
    }

private:
    testsupport::TestHome m_home;
};

QTEST_MAIN(TestProcess)
#include "test_process.moc"
