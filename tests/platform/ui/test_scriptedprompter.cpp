#include "platform/ui/scriptedprompter.h"
#include "tests/support/testenv.h"

#include <QtTest>

using ui::Answer;
using ui::Buttons;
using ui::Icon;

Q_DECLARE_METATYPE(ui::Answer)

using namespace Qt::StringLiterals;

class TestScriptedPrompter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void msgBox_data()
    {
        QTest::addColumn<int>("defaultButton");
        QTest::addColumn<QString>("queued");
        QTest::addColumn<Answer>("result");
        QTest::addColumn<QString>("recorded");
        QTest::addColumn<QString>("defaultName");
        QTest::addColumn<QString>("error");
        QTest::newRow("a default past the last")
            << 5 << "Yes" << Answer::Yes << "Yes" << u"No"_s << QString();
        QTest::newRow("case counts") << 1 << "yes" << Answer::No << "No" << u"Yes"_s << "is no button";
    }

    void msgBox()
    {
        QFETCH(int, defaultButton);
        QFETCH(QString, queued);
        QFETCH(Answer, result);
        QFETCH(QString, recorded);
        QFETCH(QString, defaultName);
        QFETCH(QString, error);
        ui::ScriptedPrompter p;
        p.enqueue(queued);
        QCOMPARE(p.msgBox(u"Delete?"_s, Buttons::YesNo, Icon::Question, defaultButton, QString()), result);
        const QList<ui::PromptRecord> prompts = p.takePrompts();
        QCOMPARE(prompts.size(), 1);
        QCOMPARE(prompts.at(0).answer, recorded);
        QCOMPARE(prompts.at(0).defaultButton, defaultName);
        const QString taken = p.takeError();
        QCOMPARE(taken.isEmpty(), error.isEmpty());
        QVERIFY2(taken.contains(error), qPrintable(taken));
        QCOMPARE(prompts.at(0).error, taken);
    }

    void dialogs_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("chosen");
        const QString missing = u"file:"_s + m_home.file(u"missing.vbs"_s);
        QTest::newRow("open a missing file, must exist") << "open" << missing << 4100 << false;
        QTest::newRow("open a missing file, may be new") << "open" << missing << 4 << true;
        QTest::newRow("a profile the dialog doesn't list") << "profile" << u"Nobody"_s << 0 << false;
    }

    void dialogs()
    {
        QFETCH(QString, kind);
        QFETCH(QString, answer);
        QFETCH(int, flags);
        QFETCH(bool, chosen);
        ui::CommonDialogState state;
        state.dialogTitle = u"Save Script As"_s;
        state.fileName = u"offered.vbs"_s;
        state.flags = flags;
        ui::ProfileChoice choice;
        choice.profiles = QStringList{u"Test"_s, u"Work"_s};
        ui::ScriptedPrompter p;
        p.enqueue(answer);
        const bool result = kind == "open"_L1 ? p.showOpen(state) : !p.chooseProfile(choice).isEmpty();
        QCOMPARE(result, chosen);
        // A refused answer changes nothing and counts as Cancel.
        QCOMPARE(state.fileName, chosen ? answer.mid(5) : u"offered.vbs"_s);
        const ui::PromptRecord r = p.takePrompts().value(0);
        QCOMPARE(r.kind, kind);
        QCOMPARE(r.answer, chosen ? answer : u"Cancel"_s);
        QCOMPARE(!r.error.isEmpty(), !chosen);
        QCOMPARE(!p.takeError().isEmpty(), !chosen);
    }

private:
    testsupport::TestHome m_home;
};

QTEST_MAIN(TestScriptedPrompter)
#include "test_scriptedprompter.moc"
