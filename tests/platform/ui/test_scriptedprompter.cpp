#include "platform/ui/scriptedprompter.h"
#include "tests/support/testenv.h"

#include <QtTest>

using ui::Answer;
using ui::Buttons;
using ui::Icon;

Q_DECLARE_METATYPE(ui::Answer)
Q_DECLARE_METATYPE(ui::Buttons)

class TestScriptedPrompter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void msgBox_data();
    void msgBox();
    void dialogs_data();
    void dialogs();
    void errorsAreTakenOnce();

private:
    testsupport::TestHome m_home;
};

void TestScriptedPrompter::msgBox_data()
{
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<QString>("queued");
    QTest::addColumn<Answer>("result");
    QTest::addColumn<QString>("recorded");
    QTest::addColumn<QString>("defaultName");
    QTest::addColumn<QString>("error");
    QTest::newRow("Cancel of three") << Buttons::YesNoCancel << 3 << "Cancel" << Answer::Cancel << "Cancel"
                                     << "Cancel" << QString();
    QTest::newRow("a default past the last") << Buttons::YesNo << 5 << "Yes" << Answer::Yes << "Yes"
                                             << "No" << QString();
    QTest::newRow("nothing queued: Cancel")
        << Buttons::OKCancel << 1 << QString() << Answer::Cancel << "Cancel"
        << "OK"
        << "no answer queued for the msgbox \"Delete?\"";
    QTest::newRow("case counts") << Buttons::YesNo << 1 << "yes" << Answer::No << "No"
                                 << "Yes"
                                 << "is no button";
}

void TestScriptedPrompter::msgBox()
{
    QFETCH(Buttons, buttons);
    QFETCH(int, defaultButton);
    QFETCH(QString, queued);
    QFETCH(Answer, result);
    QFETCH(QString, recorded);
    QFETCH(QString, defaultName);
    QFETCH(QString, error);
    ui::ScriptedPrompter p;
    if (!queued.isNull())
        p.enqueue(queued);
    QCOMPARE(p.msgBox(QStringLiteral("Delete?"), buttons, Icon::Question, defaultButton, QString()), result);
    const QList<ui::PromptRecord> prompts = p.takePrompts();
    QCOMPARE(prompts.size(), 1);
    QCOMPARE(prompts.at(0).answer, recorded);
    QCOMPARE(prompts.at(0).defaultButton, defaultName);
    const QString taken = p.takeError();
    QCOMPARE(taken.isEmpty(), error.isEmpty());
    QVERIFY2(taken.contains(error), qPrintable(taken));
    QCOMPARE(prompts.at(0).error, taken);
}

void TestScriptedPrompter::dialogs_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("flags");
    QTest::addColumn<bool>("chosen");
    const QString missing = QStringLiteral("file:") + m_home.file(QStringLiteral("missing.vbs"));
    QTest::newRow("open a missing file, must exist") << "open" << missing << 4100 << false;
    QTest::newRow("open a missing file, may be new") << "open" << missing << 4 << true;
    QTest::newRow("save with nothing queued") << "save" << QString() << 4100 << false;
    QTest::newRow("a button the input box hasn't") << "inputbox"
                                                   << "Yes" << 0 << false;
    QTest::newRow("a font of too few parts") << "font"
                                             << "font:Courier,10" << 0 << false;
    QTest::newRow("a profile the dialog doesn't list") << "profile"
                                                       << "Nobody" << 0 << false;
}

void TestScriptedPrompter::dialogs()
{
    QFETCH(QString, kind);
    QFETCH(QString, answer);
    QFETCH(int, flags);
    QFETCH(bool, chosen);
    ui::CommonDialogState state;
    state.dialogTitle = QStringLiteral("Save Script As");
    state.fileName = QStringLiteral("offered.vbs");
    state.flags = flags;
    state.fontName = QStringLiteral("Times New Roman");
    state.fontSize = 10.8;
    ui::ProfileChoice choice;
    choice.profiles = QStringList{QStringLiteral("Test"), QStringLiteral("Work")};
    ui::ScriptedPrompter p;
    if (!answer.isNull())
        p.enqueue(answer);
    bool result = false;
    if (kind == QLatin1String("open"))
        result = p.showOpen(state);
    else if (kind == QLatin1String("save"))
        result = p.showSave(state);
    else if (kind == QLatin1String("font"))
        result = p.showFont(state);
    else if (kind == QLatin1String("inputbox"))
        result = !p.inputBox(QStringLiteral("Agent Name:"), QString(), QStringLiteral("New Agent")).isEmpty();
    else
        result = !p.chooseProfile(choice).isEmpty();
    QCOMPARE(result, chosen);
    // A refused answer changes nothing and counts as Cancel.
    QCOMPARE(state.fileName, chosen ? answer.mid(5) : QStringLiteral("offered.vbs"));
    QCOMPARE(state.fontName, QStringLiteral("Times New Roman"));
    const ui::PromptRecord r = p.takePrompts().value(0);
    QCOMPARE(r.kind, kind);
    QCOMPARE(r.answer, chosen ? answer : QStringLiteral("Cancel"));
    QCOMPARE(!r.error.isEmpty(), !chosen);
    QCOMPARE(!p.takeError().isEmpty(), !chosen);
}

void TestScriptedPrompter::errorsAreTakenOnce()
{
    ui::ScriptedPrompter p;
    p.msgBox(QStringLiteral("One"), Buttons::OK, Icon::None, 1, QString());
    p.inputBox(QStringLiteral("Two"), QString(), QString());
    QCOMPARE(p.takeError(), QStringLiteral("no answer queued for the msgbox \"One\"; "
                                           "no answer queued for the inputbox \"Two\""));
    QCOMPARE(p.takeError(), QString());
    QCOMPARE(p.takePrompts().size(), 2);
}

QTEST_MAIN(TestScriptedPrompter)
#include "test_scriptedprompter.moc"
