#include "platform/com/comerror.h"
#include "platform/os/commandline.h"
#include "platform/os/system.h"
#include "tests/support/testenv.h"

#include <QtTest>

class TestProcess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void splitCommandLine_data();
    void splitCommandLine();
    void execCmdGivesTheExitCode_data();
    void execCmdGivesTheExitCode();
    void execCmdWaitsForTheEnd();
    void execCmdPassesQuotedArguments_data();
    void execCmdPassesQuotedArguments();
    void execCmdRaisesWhenNothingStarts_data();
    void execCmdRaisesWhenNothingStarts();

private:
    /// An executable shell script in the test's home.
    QString script(const QString &name, const QByteArray &body);

    testsupport::TestHome m_home;
};

void TestProcess::initTestCase()
{
#ifndef Q_OS_UNIX
    QSKIP("the commands here are shell scripts");
#endif
}

QString TestProcess::script(const QString &name, const QByteArray &body)
{
    const QString path = m_home.file(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write("#!/bin/sh\n" + body + '\n');
    file.close();
    file.setPermissions(file.permissions() | QFile::ExeOwner);
    return path;
}

void TestProcess::splitCommandLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("words");
    QTest::newRow("plain") << "notepad file.txt" << QStringList{"notepad", "file.txt"};
    QTest::newRow("quoted program and file")
        << "\"/opt/my tools/edit\" --wait \"/tmp/Auto Reply.txt\""
        << QStringList{"/opt/my tools/edit", "--wait", "/tmp/Auto Reply.txt"};
    QTest::newRow("unquoted program with blanks") << "/opt/my tools/edit \"/tmp/Auto Reply.txt\""
                                                  << QStringList{"/opt/my tools/edit", "/tmp/Auto Reply.txt"};
    QTest::newRow("unquoted, the shortest that starts")
        << "/opt/my tools/edit now \"x\"" << QStringList{"/opt/my tools/edit", "now", "x"};
    QTest::newRow("nothing starts: words as they are")
        << "/nowhere/a b \"c\"" << QStringList{"/nowhere/a", "b", "c"};
    QTest::newRow("empty") << "" << QStringList();
}

void TestProcess::splitCommandLine()
{
    QFETCH(QString, line);
    QFETCH(QStringList, words);
    const QStringList programs{QStringLiteral("notepad"),
                               QStringLiteral("edit"),
                               QStringLiteral("/opt/our"),
                               QStringLiteral("/opt/our tools/edit"),
                               QStringLiteral("/opt/my tools/edit"),
                               QStringLiteral("/opt/my tools/edit now")};
    QCOMPARE(os::splitCommandLine(line, [&programs](const QString &w) { return programs.contains(w); }),
             words);
}

void TestProcess::execCmdGivesTheExitCode_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("code");
    QTest::newRow("success") << "true" << 0;
    QTest::newRow("a code of its own") << "sh -c \"exit 3\"" << 3;
    QTest::newRow("killed") << "sh -c \"kill -9 $$\"" << -1;
    // A program that reads its input ends instead of waiting for ever.
    QTest::newRow("no input") << "sh -c \"read line || exit 4\"" << 4;
}

void TestProcess::execCmdGivesTheExitCode()
{
    QFETCH(QString, line);
    QFETCH(int, code);
    QCOMPARE(os::ExecCmd(line), code);
}

void TestProcess::execCmdWaitsForTheEnd()
{
    // The file appears only after a pause: it is there when ExecCmd returns.
    const QString done = m_home.file(QStringLiteral("done"));
    const QString slow = script(QStringLiteral("slow.sh"), "sleep 0.3\necho done > \"$1\"");
    QCOMPARE(os::ExecCmd(QLatin1Char('"') + slow + QStringLiteral("\" \"") + done + QLatin1Char('"')), 0);
    QVERIFY(QFileInfo::exists(done));
}

void TestProcess::execCmdPassesQuotedArguments_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<bool>("quoteProgram");
    QTest::newRow("quoted program with blanks") << "my tools/edit it.sh" << true;
    QTest::newRow("unquoted program with blanks") << "my tools/edit it.sh" << false;
    QTest::newRow("plain program") << "edit.sh" << false;
}

void TestProcess::execCmdPassesQuotedArguments()
{
    QFETCH(QString, program);
    QFETCH(bool, quoteProgram);
    // An editor as the editor rules call one: program, then the quoted file.
    const QString path = script(program, "for a in \"$@\"; do echo \"[$a]\"; done > \"$HOME/args\"");
    const QString file = m_home.file(QStringLiteral("Auto Reply.txt"));
    const QString prefix =
        quoteProgram ? QLatin1Char('"') + path + QStringLiteral("\" ") : path + QLatin1Char(' ');
    QCOMPARE(os::ExecCmd(prefix + QStringLiteral("--wait \"") + file + QLatin1Char('"')), 0);
    QFile args(m_home.file(QStringLiteral("home/args")));
    QVERIFY(args.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(args.readAll()), QStringLiteral("[--wait]\n[") + file + QStringLiteral("]\n"));
}

void TestProcess::execCmdRaisesWhenNothingStarts_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("no such program") << "/no/such/program \"x\"";
    QTest::newRow("a file that isn't a program") << "/etc/hostname";
    QTest::newRow("empty") << "";
}

void TestProcess::execCmdRaisesWhenNothingStarts()
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

QTEST_GUILESS_MAIN(TestProcess)
#include "test_process.moc"
