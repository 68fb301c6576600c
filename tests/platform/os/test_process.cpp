#include "platform/com/comerror.h"
#include "platform/os/commandline.h"
#include "platform/os/system.h"
#include "tests/support/testenv.h"

#include <QtTest>

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

private:
    testsupport::TestHome m_home;
};

QTEST_GUILESS_MAIN(TestProcess)
#include "test_process.moc"
