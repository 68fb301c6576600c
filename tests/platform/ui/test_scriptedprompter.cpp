#include "platform/ui/scriptedprompter.h"
#include "tests/support/testenv.h"

#include <QtTest>

using ui::Answer;
using ui::Buttons;
using ui::Icon;

Q_DECLARE_METATYPE(ui::Answer)
Q_DECLARE_METATYPE(ui::Buttons)
Q_DECLARE_METATYPE(ui::Icon)

class TestScriptedPrompter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void msgBox_data();
    void msgBox();
    void inputBox_data();
    void inputBox();
    void fileDialogs_data();
    void fileDialogs();
    void font_data();
    void font();
    void profile_data();
    void profile();
    void errorsAreTakenOnce();

private:
    testsupport::TestHome m_home;
};

void TestScriptedPrompter::msgBox_data()
{
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<QStringList>("queued");
    QTest::addColumn<Answer>("result");
    QTest::addColumn<QString>("recorded");
    QTest::addColumn<QString>("defaultName");
    QTest::addColumn<QString>("error");
    const QStringList none;
    QTest::newRow("Cancel of three") << Buttons::YesNoCancel << 3 << QStringList{"Cancel"} << Answer::Cancel
                                     << "Cancel"
                                     << "Cancel" << QString();
    QTest::newRow("Cancel of two") << Buttons::OKCancel << 1 << QStringList{"Cancel"} << Answer::Cancel
                                   << "Cancel"
                                   << "OK" << QString();
    QTest::newRow("a default past the last")
        << Buttons::YesNo << 5 << QStringList{"Yes"} << Answer::Yes << "Yes"
        << "No" << QString();
    QTest::newRow("nothing queued: No") << Buttons::YesNo << 1 << none << Answer::No << "No"
                                        << "Yes"
                                        << "no answer queued for the msgbox \"Delete?\"";
    QTest::newRow("Cancel where there is none")
        << Buttons::YesNo << 1 << QStringList{"Cancel"} << Answer::No << "No"
        << "Yes"
        << "is no button";
    QTest::newRow("case counts") << Buttons::YesNo << 1 << QStringList{"yes"} << Answer::No << "No"
                                 << "Yes"
                                 << "is no button";
}

void TestScriptedPrompter::msgBox()
{
    QFETCH(Buttons, buttons);
    QFETCH(int, defaultButton);
    QFETCH(QStringList, queued);
    QFETCH(Answer, result);
    QFETCH(QString, recorded);
    QFETCH(QString, defaultName);
    QFETCH(QString, error);
    ui::ScriptedPrompter p;
    for (const QString &a : queued)
        p.enqueue(a);
    QCOMPARE(p.msgBox(QStringLiteral("Delete?"), buttons, Icon::Question, defaultButton, QString()), result);
    QCOMPARE(p.pending(), 0);
    const QList<ui::PromptRecord> prompts = p.takePrompts();
    QCOMPARE(prompts.size(), 1);
    QCOMPARE(prompts.at(0).answer, recorded);
    QCOMPARE(prompts.at(0).defaultButton, defaultName);
    QCOMPARE(prompts.at(0).buttons, ui::ScriptedPrompter::buttonsName(buttons));
    const QString taken = p.takeError();
    QCOMPARE(taken.isEmpty(), error.isEmpty());
    QVERIFY2(taken.contains(error), qPrintable(taken));
    QCOMPARE(prompts.at(0).error, taken);
}

void TestScriptedPrompter::inputBox_data()
{
    QTest::addColumn<QStringList>("queued");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("recorded");
    QTest::addColumn<bool>("failed");
    QTest::newRow("cancelled") << QStringList{"Cancel"} << ""
                               << "Cancel" << false;
    QTest::newRow("nothing queued") << QStringList() << ""
                                    << "Cancel" << true;
    QTest::newRow("a button that isn't there") << QStringList{"Yes"} << ""
                                               << "Cancel" << true;
}

void TestScriptedPrompter::inputBox()
{
    QFETCH(QStringList, queued);
    QFETCH(QString, result);
    QFETCH(QString, recorded);
    QFETCH(bool, failed);
    ui::ScriptedPrompter p;
    for (const QString &a : queued)
        p.enqueue(a);
    QCOMPARE(p.inputBox(QStringLiteral("Agent Name:"), QStringLiteral("Agent Name for Script"),
                        QStringLiteral("New Agent")),
             result);
    const QList<ui::PromptRecord> prompts = p.takePrompts();
    QCOMPARE(prompts.size(), 1);
    QCOMPARE(prompts.at(0).kind, QStringLiteral("inputbox"));
    QCOMPARE(prompts.at(0).text, QStringLiteral("Agent Name:"));
    QCOMPARE(prompts.at(0).title, QStringLiteral("Agent Name for Script"));
    QCOMPARE(prompts.at(0).extra.value(QStringLiteral("default")).toString(), QStringLiteral("New Agent"));
    QCOMPARE(prompts.at(0).answer, recorded);
    QCOMPARE(!prompts.at(0).error.isEmpty(), failed);
    QCOMPARE(!p.takeError().isEmpty(), failed);
}

void TestScriptedPrompter::fileDialogs_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("chosen");
    QTest::addColumn<QString>("fileTitle");
    QTest::addColumn<bool>("failed");
    const QString existing = QStringLiteral("file:") + m_home.file(QStringLiteral("exists.vbs"));
    const QString missing = QStringLiteral("file:") + m_home.file(QStringLiteral("missing.vbs"));
    QTest::newRow("open an existing file") << "open" << 4100 << existing << true << "exists.vbs" << false;
    QTest::newRow("open a missing file, must exist") << "open" << 4100 << missing << false << "" << true;
    QTest::newRow("open a missing file, may be new")
        << "open" << 4 << missing << true << "missing.vbs" << false;
    QTest::newRow("nothing queued") << "save" << 4100 << QString() << false << "" << true;
}

void TestScriptedPrompter::fileDialogs()
{
    QFETCH(QString, kind);
    QFETCH(int, flags);
    QFETCH(QString, answer);
    QFETCH(bool, chosen);
    QFETCH(QString, fileTitle);
    QFETCH(bool, failed);
    QFile existing(m_home.file(QStringLiteral("exists.vbs")));
    QVERIFY(existing.open(QIODevice::WriteOnly));
    existing.close();
    ui::CommonDialogState state;
    state.dialogTitle = QStringLiteral("Save Script As");
    state.filter = QStringLiteral("Text Files (*.txt)|*.txt|VBScript Files (*.vbs)|*.vbs");
    state.filterIndex = 2;
    state.fileName = QStringLiteral("offered.vbs");
    state.initDir = m_home.path();
    state.flags = flags;
    ui::ScriptedPrompter p;
    if (!answer.isNull())
        p.enqueue(answer);
    QCOMPARE(kind == QLatin1String("open") ? p.showOpen(state) : p.showSave(state), chosen);
    if (chosen) {
        QCOMPARE(QFileInfo(state.fileName).fileName(), fileTitle);
        QCOMPARE(state.fileTitle, fileTitle);
    } else {
        QCOMPARE(state.fileName, QStringLiteral("offered.vbs"));
    }
    const QList<ui::PromptRecord> prompts = p.takePrompts();
    QCOMPARE(prompts.size(), 1);
    const ui::PromptRecord &r = prompts.at(0);
    QCOMPARE(r.kind, kind);
    QCOMPARE(r.title, QStringLiteral("Save Script As"));
    // The dialog as it opened.
    QCOMPARE(r.extra.value(QStringLiteral("fileName")).toString(), QStringLiteral("offered.vbs"));
    QCOMPARE(r.answer, failed ? QStringLiteral("Cancel") : answer);
    QCOMPARE(!r.error.isEmpty(), failed);
    QCOMPARE(!p.takeError().isEmpty(), failed);
}

void TestScriptedPrompter::font_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("chosen");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("size");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<bool>("italic");
    QTest::addColumn<bool>("failed");
    QTest::newRow("numbers") << "font:DejaVu Sans Mono,12.5,1,0" << true << "DejaVu Sans Mono" << 12.5 << true
                             << false << false;
    QTest::newRow("cancelled") << "Cancel" << false << "Times New Roman" << 10.8 << false << false << false;
    QTest::newRow("too few parts") << "font:Courier,10" << false << "Times New Roman" << 10.8 << false
                                   << false << true;
    QTest::newRow("nothing queued") << QString() << false << "Times New Roman" << 10.8 << false << false
                                    << true;
}

void TestScriptedPrompter::font()
{
    QFETCH(QString, answer);
    QFETCH(bool, chosen);
    QFETCH(QString, name);
    QFETCH(double, size);
    QFETCH(bool, bold);
    QFETCH(bool, italic);
    QFETCH(bool, failed);
    ui::CommonDialogState state;
    state.fontName = QStringLiteral("Times New Roman");
    state.fontSize = 10.8;
    state.flags = 1027;
    ui::ScriptedPrompter p;
    if (!answer.isNull())
        p.enqueue(answer);
    QCOMPARE(p.showFont(state), chosen);
    QCOMPARE(state.fontName, name);
    QCOMPARE(state.fontSize, size);
    QCOMPARE(state.fontBold, bold);
    QCOMPARE(state.fontItalic, italic);
    const ui::PromptRecord r = p.takePrompts().value(0);
    QCOMPARE(r.kind, QStringLiteral("font"));
    QCOMPARE(r.extra.value(QStringLiteral("fontName")).toString(), QStringLiteral("Times New Roman"));
    QCOMPARE(!r.error.isEmpty(), failed);
    QCOMPARE(!p.takeError().isEmpty(), failed);
}

void TestScriptedPrompter::profile_data()
{
    QTest::addColumn<QStringList>("profiles");
    QTest::addColumn<bool>("offerDemo");
    QTest::addColumn<QString>("defaultProfile");
    QTest::addColumn<QString>("queued");
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("failed");
    const QStringList two{QStringLiteral("Test"), QStringLiteral("Work")};
    QTest::newRow("nothing queued: the demo offered")
        << QStringList() << true << QString() << QString() << "Demo" << false;
    QTest::newRow("cancelled") << two << false << "Work"
                               << "Cancel" << QString() << false;
    QTest::newRow("a name the dialog doesn't list")
        << two << false << QString() << "Nobody" << QString() << true;
}

void TestScriptedPrompter::profile()
{
    QFETCH(QStringList, profiles);
    QFETCH(bool, offerDemo);
    QFETCH(QString, defaultProfile);
    QFETCH(QString, queued);
    QFETCH(QString, result);
    QFETCH(bool, failed);
    ui::ProfileChoice choice;
    choice.profiles = profiles;
    choice.defaultProfile = profiles.value(0);
    choice.offerDemo = offerDemo;
    choice.demoProfile = offerDemo ? QStringLiteral("Demo") : QString();
    ui::ScriptedPrompter p;
    p.setDefaultProfile(defaultProfile);
    if (!queued.isNull())
        p.enqueue(queued);
    QCOMPARE(p.chooseProfile(choice), result);
    const ui::PromptRecord r = p.takePrompts().value(0);
    QCOMPARE(r.kind, QStringLiteral("profile"));
    QCOMPARE(r.extra.value(QStringLiteral("offerDemo")).toBool(), offerDemo);
    QCOMPARE(r.answer, failed ? QStringLiteral("Cancel") : queued.isNull() ? result : queued);
    QCOMPARE(!r.error.isEmpty(), failed);
    QCOMPARE(!p.takeError().isEmpty(), failed);
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
