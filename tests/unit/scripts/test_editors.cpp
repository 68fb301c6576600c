#include "scripts/editors.h"

#include <QtTest>

class TestEditors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void editorCommand_data();
    void editorCommand();
    void editorForSize_data();
    void editorForSize();
};

namespace {

// Class keys as a registry might hold them.
QString classCommand(const QString &key)
{
    if (key == QLatin1String("txtFile\\shell\\open\\command"))
        return QStringLiteral("\"/usr/bin/mousepad\" %1");
    if (key == QLatin1String("Wordpad.Document.1\\shell\\open\\command"))
        return QStringLiteral("\"/usr/bin/kate\" --block \"%1\"");
    if (key == QLatin1String("VisualBasic.Module\\shell\\open\\command"))
        return QStringLiteral("/usr/bin/codium --wait"); // no "%1"
    return QString();
}

const QString kNone = QStringLiteral("<none>");

} // namespace

void TestEditors::editorCommand_data()
{
    QTest::addColumn<bool>("viewer");
    QTest::addColumn<QString>("editor");
    QTest::addColumn<QString>("otherPath");
    QTest::addColumn<bool>("isNT");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Notepad: cut at %1, quote kept") << false << "Notepad"
                                                    << "" << false << "\"/usr/bin/mousepad\" ";
    QTest::newRow("Notepad on NT") << false << "Notepad"
                                   << "" << true << "notepad ";
    QTest::newRow("Wordpad: closing quote dropped") << false << "Wordpad"
                                                    << "" << false << "\"/usr/bin/kate\" --block ";
    QTest::newRow("no %1: whole") << false << "Visual Basic"
                                  << "" << false << "/usr/bin/codium --wait";
    QTest::newRow("missing key") << false << "Visual InterDev"
                                 << "" << false << "";
    QTest::newRow("Other trimmed, one blank") << false << "Other"
                                              << "  /opt/ed -w  " << false << "/opt/ed -w ";
    QTest::newRow("Other n/a") << false << "Other"
                               << "n/a" << false << "";
    QTest::newRow("unknown name") << false << "Emacs"
                                  << "" << false << kNone;
    QTest::newRow("viewer Notepad") << true << "Notepad"
                                    << "" << false << "\"/usr/bin/mousepad\" ";
    QTest::newRow("viewer Wordpad") << true << "Wordpad"
                                    << "" << false << "\"/usr/bin/kate\" --block ";
    QTest::newRow("Visual Basic: no viewer") << true << "Visual Basic"
                                             << "" << false << kNone;
}

void TestEditors::editorCommand()
{
    QFETCH(bool, viewer);
    QFETCH(QString, editor);
    QFETCH(QString, otherPath);
    QFETCH(bool, isNT);
    QFETCH(QString, expected);
    const std::optional<QString> command =
        viewer ? scripts::viewerCommand(editor, isNT, classCommand)
               : scripts::editorCommand(editor, otherPath, isNT, classCommand);
    QCOMPARE(command.value_or(kNone), expected);
}

void TestEditors::editorForSize_data()
{
    QTest::addColumn<QString>("editor");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("isNT");
    QTest::addColumn<QString>("expected");
    QTest::newRow("64000 stays") << "Notepad" << qint64(64000) << false << "Notepad";
    QTest::newRow("64001 swaps") << "Notepad" << qint64(64001) << false << "Wordpad";
    QTest::newRow("not on NT") << "Notepad" << qint64(64001) << true << "Notepad";
}

void TestEditors::editorForSize()
{
    QFETCH(QString, editor);
    QFETCH(qint64, size);
    QFETCH(bool, isNT);
    QFETCH(QString, expected);
    QCOMPARE(scripts::editorForSize(editor, size, isNT), expected);
}

QTEST_GUILESS_MAIN(TestEditors)
#include "test_editors.moc"
