#include "platform/ui/dialogtext.h"
#include "platform/ui/profiledialog.h"
#include "platform/ui/qtprompter.h"
#include "tests/support/testenv.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMessageBox>
#include <QPrinter>
#include <QPushButton>
#include <QtTest>

#include <functional>

using ui::Answer;
using ui::Buttons;
using ui::Icon;

Q_DECLARE_METATYPE(ui::Answer)
Q_DECLARE_METATYPE(ui::Buttons)
Q_DECLARE_METATYPE(ui::Icon)

using namespace Qt::StringLiterals;

namespace {

/// Runs `act` on the next modal dialog of type D once it shows, as a user
/// would act on it; `act` must close it. A dialog left open is rejected
/// after a while so that a failing test ends. Gives whether `act` ran.
template <typename D> std::shared_ptr<bool> whenShown(std::function<void(D *)> act)
{
    auto ran = std::make_shared<bool>(false);
    auto *poll = new QTimer(qApp);
    poll->setInterval(10);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act, ran] {
        if (auto *dialog = qobject_cast<D *>(QApplication::activeModalWidget())) {
            poll->stop();
            poll->deleteLater();
            *ran = true;
            act(dialog);
        }
    });
    poll->start();
    QTimer::singleShot(10000, poll, [poll] {
        if (auto *open = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            open->reject();
        poll->deleteLater();
    });
    return ran;
}

} // namespace

class TestQtPrompter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        // No dialog outlives its prompt.
        for (QWidget *w : QApplication::topLevelWidgets())
            QVERIFY2(!w->isVisible(), qPrintable(w->metaObject()->className()));
    }

    void msgBox_data()
    {
        QTest::addColumn<Buttons>("buttons");
        QTest::addColumn<Icon>("icon");
        QTest::addColumn<int>("defaultButton");
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("clicked");
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QString>("shown"); // title: buttons by name, the default, the icon
        QTest::newRow("OK, stop") << Buttons::OK << Icon::Stop << 1 << QString() << int(QMessageBox::Ok)
                                  << Answer::OK << u"Sorrelin: Ok, Ok, Critical"_s;
        QTest::newRow("Yes No, No the default")
            << Buttons::YesNo << Icon::Question << 2 << QString() << int(QMessageBox::Yes) << Answer::Yes
            << u"Sorrelin: No|Yes, No, Question"_s;
        QTest::newRow("Yes No Cancel, a title")
            << Buttons::YesNoCancel << Icon::Exclamation << 3 << u"Save Script"_s << int(QMessageBox::Cancel)
            << Answer::Cancel << u"Save Script: Cancel|No|Yes, Cancel, Warning"_s;
        QTest::newRow("OK Cancel, information")
            << Buttons::OKCancel << Icon::Information << 1 << QString() << int(QMessageBox::Ok) << Answer::OK
            << u"Sorrelin: Cancel|Ok, Ok, Information"_s;
    }

    void msgBox()
    {
        QFETCH(Buttons, buttons);
        QFETCH(Icon, icon);
        QFETCH(int, defaultButton);
        QFETCH(QString, title);
        QFETCH(int, clicked);
        QFETCH(Answer, answer);
        QFETCH(QString, shown);
        QString text;
        QString seen;
        const auto ran = whenShown<QMessageBox>([&](QMessageBox *box) {
            text = box->text();
            const auto buttonNames = QMetaEnum::fromType<QMessageBox::StandardButtons>();
            QStringList shownButtons;
            for (QAbstractButton *button : box->buttons())
                shownButtons << QString::fromLatin1(buttonNames.valueToKey(box->standardButton(button)));
            shownButtons.sort();
            seen = u"%1: %2, %3, %4"_s.arg(
                box->windowTitle(), shownButtons.join(u'|'),
                box->defaultButton() ? buttonNames.valueToKey(box->standardButton(box->defaultButton()))
                                     : "none",
                QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(box->icon()));
            box->button(QMessageBox::StandardButton(clicked))->click();
        });
        QCOMPARE(m_prompter.msgBox(u"Error# 70\rDescription: Permission denied\r\nTry again"_s, buttons, icon,
                                   defaultButton, title),
                 answer);
        QVERIFY(*ran);
        QCOMPARE(text, u"Error# 70\nDescription: Permission denied\nTry again"_s);
        QCOMPARE(seen, shown);
    }

    void inputBox()
    {
        for (const bool accept : {true, false}) {
            QString label;
            QString caption;
            QString offered;
            const auto ran = whenShown<QInputDialog>([&](QInputDialog *dialog) {
                label = dialog->labelText();
                caption = dialog->windowTitle();
                offered = dialog->textValue();
                dialog->setTextValue(u"Greeter"_s);
                accept ? dialog->accept() : dialog->reject();
            });
            QCOMPARE(m_prompter.inputBox(u"Agent Name:"_s, u"Agent Name for Script"_s, u"New Agent"_s),
                     accept ? u"Greeter"_s : QString());
            QVERIFY(*ran);
            QCOMPARE(label, u"Agent Name:"_s);
            QCOMPARE(caption, u"Agent Name for Script"_s);
            QCOMPARE(offered, u"New Agent"_s);
        }
    }

    void fileDialog_data()
    {
        QTest::addColumn<bool>("open");
        QTest::addColumn<int>("filterIndex");
        QTest::addColumn<int>("chosenFilter");
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("shown"); // the mode, whether the dialog asks before overwriting
        QTest::newRow("open") << true << 2 << 2 << 4100 << u"ExistingFile, no"_s;
        QTest::newRow("save, the program asks") << false << 1 << 3 << 4100 << u"AnyFile, no"_s;
        QTest::newRow("save, the dialog asks") << false << 3 << 2 << 0x2 << u"AnyFile, asks"_s;
    }

    void fileDialog()
    {
        QFETCH(bool, open);
        QFETCH(int, filterIndex);
        QFETCH(int, chosenFilter);
        QFETCH(int, flags);
        QFETCH(QString, shown);
        const QString dir = m_home.file(QString::fromUtf8(QTest::currentDataTag()));
        QVERIFY(QDir().mkpath(dir));
        QFile file(dir + u"/Saved Agent.vbs"_s);
        if (open) // an open dialog takes only a file that is there
            QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        ui::CommonDialogState state;
        state.dialogTitle = u"Save Script As"_s;
        state.filter = u"Text Files (*.txt)|*.txt|VBScript Files(*.vbs)|*.vbs|All Files (*.*)|*.*"_s;
        state.filterIndex = filterIndex;
        state.initDir = dir;
        state.fileName = u"Auto Reply.vbs"_s;
        state.flags = flags;
        QString selectedFilter;
        QString directory;
        QString seen;
        const auto ran = whenShown<QFileDialog>([&](QFileDialog *dialog) {
            selectedFilter = dialog->selectedNameFilter();
            directory = dialog->directory().absolutePath();
            seen = QString::fromLatin1(
                       QMetaEnum::fromType<QFileDialog::FileMode>().valueToKey(dialog->fileMode())) +
                   (dialog->testOption(QFileDialog::DontConfirmOverwrite) ? u", no"_s : u", asks"_s);
            dialog->selectNameFilter(dialog->nameFilters().value(chosenFilter - 1));
            // Typed into the name box, as a user does.
            if (auto *name = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s))
                name->setText(u"Saved Agent.vbs"_s);
            static_cast<QDialog *>(dialog)->accept();
        });
        QVERIFY(open ? m_prompter.showOpen(state) : m_prompter.showSave(state));
        QVERIFY(*ran);
        // The user sees the filter's own descriptions.
        QCOMPARE(ui::filterIndexOf(ui::qtNameFilters(state.filter), selectedFilter), qMax(filterIndex, 1));
        if (open)
            QCOMPARE(selectedFilter, u"VBScript Files(*.vbs)"_s);
        QCOMPARE(directory, dir);
        QCOMPARE(seen, shown);
        QCOMPARE(state.fileName, QDir::toNativeSeparators(dir + u"/Saved Agent.vbs"_s));
        QCOMPARE(state.fileTitle, u"Saved Agent.vbs"_s);
        QCOMPARE(state.filterIndex, chosenFilter);
    }

    void executableFilter()
    {
        // The first filter lists the folders and the programs, the second every file.
        const QString dir = m_home.file(u"programs"_s);
        QVERIFY(QDir().mkpath(dir + u"/sub"_s));
        for (const auto &[name, permissions] :
             {std::pair{u"run"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner},
              std::pair{u"notes.txt"_s, QFile::ReadOwner | QFile::WriteOwner}}) {
            QFile file(dir + u'/' + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.close();
            QVERIFY(file.setPermissions(permissions));
        }
        ui::CommonDialogState state;
        state.filter = u"Executable Files|*|All Files (*.*)|*.*"_s;
        state.filterIndex = 1;
        state.executableFilter = 1;
        state.initDir = dir;
        state.flags = 4100;
        QStringList programs, all;
        const auto listed = [](QFileDialog *dialog) {
            auto *view = dialog->findChild<QListView *>(u"listView"_s);
            QStringList names;
            for (int r = 0; r < view->model()->rowCount(view->rootIndex()); ++r)
                names << view->model()->index(r, 0, view->rootIndex()).data().toString();
            names.sort();
            return names;
        };
        const auto ran = whenShown<QFileDialog>([&](QFileDialog *dialog) {
            QTRY_COMPARE_WITH_TIMEOUT(listed(dialog).size(), 2, 5000);
            programs = listed(dialog);
            // The user picks the second filter in the list.
            QTest::keyClick(dialog->findChild<QComboBox *>(u"fileTypeCombo"_s), Qt::Key_Down);
            QTRY_COMPARE_WITH_TIMEOUT(listed(dialog).size(), 3, 5000);
            all = listed(dialog);
            dialog->reject();
        });
        QVERIFY(!m_prompter.showOpen(state));
        QVERIFY(*ran);
        QCOMPARE(programs, (QStringList{u"run"_s, u"sub"_s}));
        QCOMPARE(all, (QStringList{u"notes.txt"_s, u"run"_s, u"sub"_s}));
    }

    void fontDialog()
    {
        ui::CommonDialogState state;
        state.fontName = u"Times New Roman"_s;
        state.fontSize = 10.8;
        QFont offered;
        QFont chosen;
        const auto ran = whenShown<QFontDialog>([&](QFontDialog *dialog) {
            offered = dialog->currentFont();
            QFont font = dialog->currentFont();
            font.setPointSize(14);
            font.setBold(true);
            font.setItalic(true);
            dialog->setCurrentFont(font);
            chosen = dialog->currentFont();
            dialog->accept();
        });
        QVERIFY(m_prompter.showFont(state));
        QVERIFY(*ran);
        // The dialog lists whole sizes: the pane's 10.8 shows as 11.
        QCOMPARE(offered.pointSize(), 11);
        QVERIFY(!offered.bold() && !offered.italic());
        QCOMPARE(state.fontName, chosen.family());
        QCOMPARE(state.fontSize, 14.0);
        QCOMPARE(state.fontBold, chosen.bold());
        QCOMPARE(state.fontItalic, chosen.italic());
    }

    void profileDialog_data()
    {
        QTest::addColumn<QStringList>("profiles");
        QTest::addColumn<QString>("defaultProfile");
        QTest::addColumn<bool>("offerDemo");
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<QString>("current");
        const QStringList two{u"Test"_s, u"Work"_s};
        QTest::newRow("the default preselected") << two << "Work" << false << two << "Work";
        QTest::newRow("the demo offered")
            << QStringList() << QString() << true << QStringList{"Demo"} << "Demo";
    }

    void profileDialog()
    {
        QFETCH(QStringList, profiles);
        QFETCH(QString, defaultProfile);
        QFETCH(bool, offerDemo);
        QFETCH(QStringList, listed);
        QFETCH(QString, current);
        ui::ProfileChoice choice;
        choice.profiles = profiles;
        choice.defaultProfile = defaultProfile;
        choice.offerDemo = offerDemo;
        choice.demoProfile = offerDemo ? u"Demo"_s : QString();
        QStringList items;
        QString selected;
        QString label;
        const auto ran = whenShown<ui::ProfileDialog>([&](ui::ProfileDialog *dialog) {
            const auto *list = dialog->findChild<QListWidget *>(u"profiles"_s);
            for (int i = 0; list && i < list->count(); ++i)
                items << list->item(i)->text();
            selected = list && list->currentItem() ? list->currentItem()->text() : QString();
            if (const auto *text = dialog->findChild<QLabel *>())
                label = text->text();
            dialog->accept();
        });
        QCOMPARE(m_prompter.chooseProfile(choice), current);
        QVERIFY(*ran);
        QCOMPARE(items, listed);
        QCOMPARE(selected, current);
        // The offer names the demo profile.
        QCOMPARE(label.contains("\"Demo\""_L1), offerDemo);
    }

    void printDialogs()
    {
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(m_home.file(u"print.pdf"_s));
        for (const bool accept : {true, false}) {
            const auto answer = [accept](QDialog *d) { accept ? d->accept() : d->reject(); };
            const auto setup = whenShown<QDialog>(answer);
            QCOMPARE(m_prompter.pageSetup(printer), accept);
            QVERIFY(*setup);
            const auto print = whenShown<QDialog>(answer);
            QCOMPARE(m_prompter.print(printer), accept);
            QVERIFY(*print);
        }
    }

private:
    testsupport::TestHome m_home;
    ui::QtPrompter m_prompter;
};

QTEST_MAIN(TestQtPrompter)
#include "test_qtprompter.moc"
