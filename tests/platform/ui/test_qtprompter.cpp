#include "platform/ui/dialogtext.h"
#include "platform/ui/profiledialog.h"
#include "platform/ui/qtprompter.h"
#include "tests/support/testenv.h"

#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
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
    void cleanup();
    void msgBox_data();
    void msgBox();
    void inputBox_data();
    void inputBox();
    void fileDialog_data();
    void fileDialog();
    void fontDialog();
    void profileDialog_data();
    void profileDialog();
    void printDialogs();

private:
    testsupport::TestHome m_home;
    ui::QtPrompter m_prompter;
};

void TestQtPrompter::cleanup()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // No dialog outlives its prompt.
    for (QWidget *w : QApplication::topLevelWidgets())
        QVERIFY2(!w->isVisible(), qPrintable(w->metaObject()->className()));
}

void TestQtPrompter::msgBox_data()
{
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<Icon>("icon");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("shownButtons");
    QTest::addColumn<int>("shownDefault");
    QTest::addColumn<int>("shownIcon");
    QTest::addColumn<int>("clicked");
    QTest::addColumn<Answer>("answer");
    QTest::newRow("OK, stop") << Buttons::OK << Icon::Stop << 1 << QString() << int(QMessageBox::Ok)
                              << int(QMessageBox::Ok) << int(QMessageBox::Critical) << int(QMessageBox::Ok)
                              << Answer::OK;
    QTest::newRow("Yes No, No the default")
        << Buttons::YesNo << Icon::Question << 2 << QString() << int(QMessageBox::Yes | QMessageBox::No)
        << int(QMessageBox::No) << int(QMessageBox::Question) << int(QMessageBox::Yes) << Answer::Yes;
    QTest::newRow("Yes No Cancel, a title")
        << Buttons::YesNoCancel << Icon::Exclamation << 3 << "Save Script"
        << int(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel) << int(QMessageBox::Cancel)
        << int(QMessageBox::Warning) << int(QMessageBox::Cancel) << Answer::Cancel;
    QTest::newRow("OK Cancel, information")
        << Buttons::OKCancel << Icon::Information << 1 << QString()
        << int(QMessageBox::Ok | QMessageBox::Cancel) << int(QMessageBox::Ok) << int(QMessageBox::Information)
        << int(QMessageBox::Ok) << Answer::OK;
}

void TestQtPrompter::msgBox()
{
    QFETCH(Buttons, buttons);
    QFETCH(Icon, icon);
    QFETCH(int, defaultButton);
    QFETCH(QString, title);
    QFETCH(int, shownButtons);
    QFETCH(int, shownDefault);
    QFETCH(int, shownIcon);
    QFETCH(int, clicked);
    QFETCH(Answer, answer);
    QString text;
    QString caption;
    int seenButtons = 0;
    int seenDefault = 0;
    int seenIcon = -1;
    const auto ran = whenShown<QMessageBox>([&](QMessageBox *box) {
        text = box->text();
        caption = box->windowTitle();
        seenButtons = int(box->standardButtons());
        seenDefault = box->defaultButton() ? int(box->standardButton(box->defaultButton())) : 0;
        seenIcon = int(box->icon());
        box->button(QMessageBox::StandardButton(clicked))->click();
    });
    QCOMPARE(m_prompter.msgBox(QStringLiteral("Error# 70\rDescription: Permission denied"), buttons, icon,
                               defaultButton, title),
             answer);
    QVERIFY(*ran);
    QCOMPARE(text, QStringLiteral("Error# 70\nDescription: Permission denied"));
    QCOMPARE(caption, title.isEmpty() ? QStringLiteral("Sorrelin") : title);
    QCOMPARE(seenButtons, shownButtons);
    QCOMPARE(seenDefault, shownDefault);
    QCOMPARE(seenIcon, shownIcon);
}

void TestQtPrompter::inputBox_data()
{
    QTest::addColumn<bool>("accept");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");
    QTest::newRow("typed") << true << "Greeter"
                           << "Greeter";
    QTest::newRow("cancelled") << false << "Greeter" << QString();
}

void TestQtPrompter::inputBox()
{
    QFETCH(bool, accept);
    QFETCH(QString, typed);
    QFETCH(QString, result);
    QString label;
    QString caption;
    QString offered;
    const auto ran = whenShown<QInputDialog>([&](QInputDialog *dialog) {
        label = dialog->labelText();
        caption = dialog->windowTitle();
        offered = dialog->textValue();
        if (!typed.isNull())
            dialog->setTextValue(typed);
        accept ? dialog->accept() : dialog->reject();
    });
    QCOMPARE(m_prompter.inputBox(QStringLiteral("Agent Name:"), QStringLiteral("Agent Name for Script"),
                                 QStringLiteral("New Agent")),
             result);
    QVERIFY(*ran);
    QCOMPARE(label, QStringLiteral("Agent Name:"));
    QCOMPARE(caption, QStringLiteral("Agent Name for Script"));
    QCOMPARE(offered, QStringLiteral("New Agent"));
}

void TestQtPrompter::fileDialog_data()
{
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("filterIndex");
    QTest::addColumn<int>("chosenFilter");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<bool>("confirmOverwrite");
    QTest::newRow("open") << true << 2 << 2 << 4100 << int(QFileDialog::ExistingFile) << false;
    QTest::newRow("save, the program asks") << false << 1 << 3 << 4100 << int(QFileDialog::AnyFile) << false;
    QTest::newRow("save, the dialog asks") << false << 3 << 2 << 0x2 << int(QFileDialog::AnyFile) << true;
}

void TestQtPrompter::fileDialog()
{
    QFETCH(bool, open);
    QFETCH(int, filterIndex);
    QFETCH(int, chosenFilter);
    QFETCH(int, flags);
    QFETCH(int, fileMode);
    QFETCH(bool, confirmOverwrite);
    const QString dir = m_home.file(QString::fromUtf8(QTest::currentDataTag()));
    QVERIFY(QDir().mkpath(dir));
    QFile file(dir + QStringLiteral("/Saved Agent.vbs"));
    if (open) // an open dialog takes only a file that is there
        QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    ui::CommonDialogState state;
    state.dialogTitle = QStringLiteral("Save Script As");
    state.filter = QStringLiteral("Text Files (*.txt)|*.txt|VBScript Files(*.vbs)|*.vbs|All Files (*.*)|*.*");
    state.filterIndex = filterIndex;
    state.initDir = dir;
    state.fileName = QStringLiteral("Auto Reply.vbs");
    state.flags = flags;
    QString selectedFilter;
    QString directory;
    int seenMode = -1;
    bool confirms = false;
    const auto ran = whenShown<QFileDialog>([&](QFileDialog *dialog) {
        selectedFilter = dialog->selectedNameFilter();
        directory = dialog->directory().absolutePath();
        seenMode = int(dialog->fileMode());
        confirms = !dialog->testOption(QFileDialog::DontConfirmOverwrite);
        dialog->selectNameFilter(dialog->nameFilters().value(chosenFilter - 1));
        // Typed into the name box, as a user does.
        if (auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit")))
            name->setText(QStringLiteral("Saved Agent.vbs"));
        static_cast<QDialog *>(dialog)->accept();
    });
    QVERIFY(open ? m_prompter.showOpen(state) : m_prompter.showSave(state));
    QVERIFY(*ran);
    // The user sees the filter's own descriptions.
    QCOMPARE(ui::filterIndexOf(ui::qtNameFilters(state.filter), selectedFilter), qMax(filterIndex, 1));
    if (open)
        QCOMPARE(selectedFilter, QStringLiteral("VBScript Files(*.vbs)"));
    QCOMPARE(directory, dir);
    QCOMPARE(seenMode, fileMode);
    QCOMPARE(confirms, confirmOverwrite);
    QCOMPARE(state.fileName, QDir::toNativeSeparators(dir + QStringLiteral("/Saved Agent.vbs")));
    QCOMPARE(state.fileTitle, QStringLiteral("Saved Agent.vbs"));
    QCOMPARE(state.filterIndex, chosenFilter);
}

void TestQtPrompter::fontDialog()
{
    ui::CommonDialogState state;
    state.fontName = QStringLiteral("Times New Roman");
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

void TestQtPrompter::profileDialog_data()
{
    QTest::addColumn<QStringList>("profiles");
    QTest::addColumn<QString>("defaultProfile");
    QTest::addColumn<bool>("offerDemo");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<QString>("current");
    const QStringList two{QStringLiteral("Test"), QStringLiteral("Work")};
    QTest::newRow("the default preselected") << two << "Work" << false << two << "Work";
    QTest::newRow("the demo offered") << QStringList() << QString() << true << QStringList{"Demo"} << "Demo";
}

void TestQtPrompter::profileDialog()
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
    choice.demoProfile = offerDemo ? QStringLiteral("Demo") : QString();
    QStringList items;
    QString selected;
    QString label;
    const auto ran = whenShown<ui::ProfileDialog>([&](ui::ProfileDialog *dialog) {
        const auto *list = dialog->findChild<QListWidget *>(QStringLiteral("profiles"));
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
    QCOMPARE(label.contains(QLatin1String("\"Demo\"")), offerDemo);
}

void TestQtPrompter::printDialogs()
{
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_home.file(QStringLiteral("print.pdf")));
    for (const bool accept : {true, false}) {
        const auto setup = whenShown<QDialog>([accept](QDialog *d) { accept ? d->accept() : d->reject(); });
        QCOMPARE(m_prompter.pageSetup(printer), accept);
        QVERIFY(*setup);
        const auto print = whenShown<QDialog>([accept](QDialog *d) { accept ? d->accept() : d->reject(); });
        QCOMPARE(m_prompter.print(printer), accept);
        QVERIFY(*print);
    }
}

QTEST_MAIN(TestQtPrompter)
#include "test_qtprompter.moc"
