// The script helpers: editor commands, file names, the pane's font sizes,
// the script marker, and the pane that gives back every byte of a script.
#include "scripts/editors.h"
#include "scripts/filenames.h"
#include "scripts/fontladder.h"
#include "scripts/scriptmarker.h"
#include "scripts/scriptpane.h"

#include <QClipboard>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

// Class keys as a registry might hold them.
QString classCommand(const QString &key)
{
    if (key == "txtFile\\shell\\open\\command"_L1)
        return u"\"/usr/bin/mousepad\" %1"_s;
    if (key == "Wordpad.Document.1\\shell\\open\\command"_L1)
        return u"\"/usr/bin/kate\" --block \"%1\""_s;
    if (key == "VisualBasic.Module\\shell\\open\\command"_L1)
        return u"/usr/bin/codium --wait"_s; // no "%1"
    return QString();
}

const QString kNone = u"<none>"_s;

/// Every byte but the line-end bytes, in lines of 16, ended by `end`.
QByteArray everyByte(const QByteArray &end)
{
    QByteArray script;
    for (int b = 0; b < 256; ++b) {
        if (b != '\r' && b != '\n')
            script.append(static_cast<char>(b));
        if (b % 16 == 15)
            script.append(end);
    }
    return script;
}

} // namespace

class TestScripts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void editorCommand_data()
    {
        QTest::addColumn<bool>("viewer");
        QTest::addColumn<QString>("editor");
        QTest::addColumn<QString>("otherPath");
        QTest::addColumn<bool>("isNT");
        QTest::addColumn<QString>("expected");
        QTest::newRow("Notepad: cut at %1, quote kept")
            << false << "Notepad" << u""_s << false << "\"/usr/bin/mousepad\" ";
        QTest::newRow("Notepad on NT") << false << "Notepad" << u""_s << true << "notepad ";
        QTest::newRow("Wordpad: closing quote dropped")
            << false << "Wordpad" << u""_s << false << "\"/usr/bin/kate\" --block ";
        QTest::newRow("no %1: whole")
            << false << "Visual Basic" << u""_s << false << "/usr/bin/codium --wait";
        QTest::newRow("missing key") << false << "Visual InterDev" << u""_s << false << "";
        QTest::newRow("Other trimmed, one blank")
            << false << "Other" << u"  /opt/ed -w  "_s << false << "/opt/ed -w ";
        QTest::newRow("Other n/a") << false << "Other" << u"n/a"_s << false << "";
        QTest::newRow("unknown name") << false << "Emacs" << u""_s << false << kNone;
        QTest::newRow("viewer Notepad") << true << "Notepad" << u""_s << false << "\"/usr/bin/mousepad\" ";
        QTest::newRow("viewer Wordpad")
            << true << "Wordpad" << u""_s << false << "\"/usr/bin/kate\" --block ";
        QTest::newRow("Visual Basic: no viewer") << true << "Visual Basic" << u""_s << false << kNone;
    }

    void editorCommand()
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

    void editorForSize_data()
    {
        QTest::addColumn<QString>("editor");
        QTest::addColumn<qint64>("size");
        QTest::addColumn<bool>("isNT");
        QTest::addColumn<QString>("expected");
        QTest::newRow("64000 stays") << "Notepad" << qint64(64000) << false << "Notepad";
        QTest::newRow("64001 swaps") << "Notepad" << qint64(64001) << false << "Wordpad";
        QTest::newRow("not on NT") << "Notepad" << qint64(64001) << true << "Notepad";
    }

    void editorForSize()
    {
        QFETCH(QString, editor);
        QFETCH(qint64, size);
        QFETCH(bool, isNT);
        QFETCH(QString, expected);
        QCOMPARE(scripts::editorForSize(editor, size, isNT), expected);
    }

    void cleanFileName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        QTest::newRow("slash and colon") << "Reply: a/b" << u"Reply  a b"_s;
        QTest::newRow("neighbours not merged") << "a:/b" << u"a  b"_s;
        QTest::newRow("all six") << ":/\\|><" << u"      "_s;
        QTest::newRow("others kept") << "What? *\"now\"" << u"What? *\"now\""_s;
        QTest::newRow("no trimming") << " x: " << u" x  "_s;
    }

    void cleanFileName()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        QString argument = name;
        const QString result = scripts::CleanFileName(argument);
        QCOMPARE(result, expected);
        QCOMPARE(argument, expected); // the argument becomes the result too
        QCOMPARE(result.size(), name.size());
    }

    void fontSteps_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<double>("size");
        QTest::addColumn<bool>("paneShown");
        QTest::addColumn<double>("expected");
        QTest::newRow("menu decrease from 10") << "menuDecrease" << 10.0 << true << 8.0;
        QTest::newRow("menu decrease stops at 8") << "menuDecrease" << 8.0 << true << 8.0;
        QTest::newRow("menu decrease with pane hidden") << "menuDecrease" << 12.0 << false << 12.0;
        QTest::newRow("menu increase from 22") << "menuIncrease" << 22.0 << true << 24.0;
        QTest::newRow("menu increase stops at 24") << "menuIncrease" << 24.0 << true << 24.0;
        QTest::newRow("key decrease from 10") << "keyDecrease" << 10.0 << true << 9.0;
        QTest::newRow("key decrease from 9") << "keyDecrease" << 9.0 << true << 8.0;
        QTest::newRow("key decrease stops at 8") << "keyDecrease" << 8.0 << true << 8.0;
        QTest::newRow("key decrease from 9.5 by two") << "keyDecrease" << 9.5 << true << 7.5;
        QTest::newRow("key decrease with pane hidden") << "keyDecrease" << 12.0 << false << 12.0;
        QTest::newRow("key increase from 8") << "keyIncrease" << 8.0 << true << 9.0;
        QTest::newRow("key increase from 24") << "keyIncrease" << 24.0 << true << 26.0;
        QTest::newRow("key increase stops above 24") << "keyIncrease" << 26.0 << true << 26.0;
        QTest::newRow("key increase with pane hidden") << "keyIncrease" << 12.0 << false << 12.0;
    }

    void fontSteps()
    {
        QFETCH(QString, command);
        QFETCH(double, size);
        QFETCH(bool, paneShown);
        QFETCH(double, expected);
        double result = 0;
        if (command == "menuDecrease"_L1)
            result = scripts::menuDecrease(size, paneShown);
        else if (command == "menuIncrease"_L1)
            result = scripts::menuIncrease(size);
        else if (command == "keyDecrease"_L1)
            result = scripts::keyDecrease(size, paneShown);
        else
            result = scripts::keyIncrease(size, paneShown);
        QCOMPARE(result, expected);
    }

    void scriptMarker_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        QTest::newRow("as written") << "<SCRIPT RunAt=Server Language=VBScript>" << true;
        QTest::newRow("lower case, later in the text")
            << "' note\r\n<script runat=server language=JScript>" << true;
        QTest::newRow("no language attribute") << "<SCRIPT RunAt=Server>" << false;
        QTest::newRow("two blanks") << "<SCRIPT  RunAt=Server Language=VBScript>" << false;
        QTest::newRow("marker alone") << "<SCRIPT RunAt=Server Language=" << true;
    }

    void scriptMarker()
    {
        QFETCH(QString, text);
        QFETCH(bool, valid);
        QCOMPARE(scripts::hasScriptMarker(text), valid);
    }

    void unkeptCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("unkept");
        QTest::newRow("8-bit text keeps all") << QStringLiteral("caf\u00E9 \u00FF\r\n") << QStringList();
        QTest::newRow("each once, in order")
            << QStringLiteral("\u20AC or \u65E5\u672C \u20AC")
            << QStringList{QStringLiteral("\u20AC"), QStringLiteral("\u65E5"), QStringLiteral("\u672C")};
        QTest::newRow("beyond 16 bits is one character")
            << QStringLiteral("a\U0001F600b") << QStringList{QStringLiteral("\U0001F600")};
        // The pane's pictures of control characters are bytes of the script.
        QTest::newRow("control pictures") << QStringLiteral("\u0001") << QStringList();
    }

    void unkeptCharacters()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, unkept);
        scripts::ScriptPane pane;
        pane.setText(text);
        QCOMPARE(scripts::unkeptCharacters(pane.text()), unkept);
    }

    // An editor's file: UTF-8 when it is that beyond ASCII, else 8-bit.
    void fileToPane_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("text");
        QTest::newRow("ASCII") << QByteArray("Sub A\r\n") << u"Sub A\r\n"_s;
        QTest::newRow("8-bit") << QByteArray("caf\xE9 \xC3") << u"caf\u00E9 \u00C3"_s;
        QTest::newRow("UTF-8") << QByteArray("caf\xC3\xA9 \xE2\x82\xAC") << u"caf\u00E9 \u20AC"_s;
        QTest::newRow("UTF-8 with a mark") << QByteArray("\xEF\xBB\xBF\xC3\xA9") << u"\u00E9"_s;
    }

    void fileToPane()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, text);
        QCOMPARE(scripts::fileToPane(file), text);
    }

    // Every way in keeps what a script can hold and names what it left out,
    // until the next key.
    void inputLeavesOutWhatAScriptCantHold_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("kept");
        QTest::addColumn<QStringList>("leftOut");
        QTest::newRow("a key") << u"key"_s << u"\u20AC"_s << u"ab"_s << QStringList{u"\u20AC"_s};
        QTest::newRow("a key the script holds") << u"key"_s << u"\u00E9"_s << u"a\u00E9b"_s << QStringList();
        QTest::newRow("an input method")
            << u"input method"_s << u"x\u65E5\u672C"_s << u"axb"_s << QStringList{u"\u65E5"_s, u"\u672C"_s};
        QTest::newRow("a paste") << u"paste"_s << u"\u20ACx\u0001"_s << u"ax\u0001b"_s
                                 << QStringList{u"\u20AC"_s};
        QTest::newRow("a drop") << u"drop"_s << u"y\U0001F600"_s << u"ayb"_s << QStringList{u"\U0001F600"_s};
        QTest::newRow("a menu's insert")
            << u"insert"_s << u"\u20ACz"_s << u"azb"_s << QStringList{u"\u20AC"_s};
        QTest::newRow("an editor's file") << u"file"_s << u"c\u20AC"_s << u"c"_s << QStringList{u"\u20AC"_s};
    }

    void inputLeavesOutWhatAScriptCantHold()
    {
        QFETCH(QString, way);
        QFETCH(QString, input);
        QFETCH(QString, kept);
        QFETCH(QStringList, leftOut);
        scripts::ScriptPane pane;
        pane.show();
        pane.setText(u"ab"_s);
        QTextCursor cursor = pane.textCursor();
        cursor.setPosition(1);
        pane.setTextCursor(cursor);
        QSignalSpy told(&pane, &scripts::ScriptPane::LeftOut);
        if (way == "key"_L1) {
            QTest::sendKeyEvent(QTest::Click, &pane, Qt::Key(input.toUpper().at(0).unicode()), input,
                                Qt::NoModifier);
        } else if (way == "input method"_L1) {
            QInputMethodEvent event;
            event.setCommitString(input);
            QApplication::sendEvent(&pane, &event);
        } else if (way == "paste"_L1) {
            QGuiApplication::clipboard()->setText(input);
            pane.paste();
        } else if (way == "drop"_L1) {
            QMimeData data;
            data.setText(input);
            const QPointF at = pane.cursorRect(cursor).center();
            QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(pane.viewport(), &enter);
            QDragMoveEvent move(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(pane.viewport(), &move);
            QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(pane.viewport(), &drop);
        } else if (way == "insert"_L1) {
            pane.setSelText(input);
        } else {
            pane.setEditedText(input);
        }
        QCOMPARE(pane.text(), kept);
        QCOMPARE(pane.leftOut(), leftOut);
        QCOMPARE(told.size(), leftOut.isEmpty() ? 0 : 1);
        QTest::keyClick(&pane, Qt::Key_End);
        QCOMPARE(pane.leftOut(), QStringList());
    }

    // The pane gives back every byte of a script and its line ends, after
    // the user has typed in it.
    void everyByteAndLineEndSurvivesAnEdit_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("CR LF") << everyByte("\r\n");
        QTest::newRow("LF") << everyByte("\n");
        QTest::newRow("CR") << everyByte("\r");
        QTest::newRow("mixed, no end on the last line") << QByteArray("a\rb\r\nc\nd\xA0");
    }

    void everyByteAndLineEndSurvivesAnEdit()
    {
        QFETCH(QByteArray, script);
        scripts::ScriptPane pane;
        pane.setText(scripts::scriptToPane(script));
        QCOMPARE(scripts::paneToScript(pane.text()), script);
        // The user types a letter at the very start and another at the end.
        QTextCursor cursor = pane.textCursor();
        cursor.movePosition(QTextCursor::Start);
        pane.setTextCursor(cursor);
        QTest::keyClick(&pane, Qt::Key_X);
        cursor.movePosition(QTextCursor::End);
        pane.setTextCursor(cursor);
        QTest::keyClick(&pane, Qt::Key_Y);
        QCOMPARE(scripts::paneToScript(pane.text()), "x" + script + "y");
    }

    void newLinesTakeTheUsualEnd()
    {
        scripts::ScriptPane pane;
        pane.setText(u"one\ntwo\nthree\r\n"_s);
        QCOMPARE(pane.lineCount(), 4);
        QTextCursor cursor = pane.textCursor();
        cursor.movePosition(QTextCursor::Start);
        cursor.movePosition(QTextCursor::EndOfLine);
        pane.setTextCursor(cursor);
        QTest::keyClick(&pane, Qt::Key_Return);
        QCOMPARE(pane.text(), u"one\n\ntwo\nthree\r\n"_s);
        // A new text without line ends gets the program's own.
        pane.setText(u"single"_s);
        QTest::keyClick(&pane, Qt::Key_Return);
        QVERIFY(pane.text().contains("\r\n"_L1));
    }
};

QTEST_MAIN(TestScripts)
#include "test_scripts.moc"
