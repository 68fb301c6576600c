#include "catalogue/reportwindow.h"

#include "app/frmmain.h"
#include "app/generaldate.h"
#include "app/program.h"
#include "platform/com/routine.h"
#include "platform/os/helptopic.h"
#include "platform/os/twips.h"
#include "scripts/filequestions.h"
#include "scripts/fontladder.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace catalogue {

namespace {

constexpr int kButtonWidth = 1212;
constexpr int kButtonHeight = 372;
constexpr int kLeastWidth = 6900;
constexpr int kButtonSpacing = 1332;
constexpr int kPrintAllRows = 7;

using os::px;
using os::twips;

} // namespace

void ReportWindow::place(QWidget *control, int left, int top, int width, int height)
{
    control->setGeometry(px(left), px(top), px(width), px(height));
    m_twips.insert(control, QRect(left, top, width, height));
}

ReportWindow::ReportWindow(const ReportSetup &setup, frmMain &main, QWidget *parent)
    : QDialog(parent), m_setup(setup), m_main(main)
{
    setObjectName(setup.formName);
    setWindowTitle(setup.designCaption);
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    Qt::WindowFlags flags =
        Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    if (setup.resizes)
        flags |= Qt::WindowMaximizeButtonHint;
    setWindowFlags(flags);
    new os::HelpTopic(this, setup.helpContext);

    SSDBGrid1 = new controls::SSDBGrid(this);
    SSDBGrid1->setObjectName(QStringLiteral("SSDBGrid1"));
    place(SSDBGrid1, 0, 0, setup.gridWidth, setup.gridHeight);
    QFont arial(QStringLiteral("Arial"));
    arial.setPointSizeF(8);
    SSDBGrid1->setFont(arial);
    SSDBGrid1->setHeadFontSize(8);
    connect(SSDBGrid1, &controls::SSDBGrid::PrintInitialize, this, &ReportWindow::SSDBGrid1_PrintInitialize);
    connect(SSDBGrid1, &controls::SSDBGrid::KeyUp, this, &ReportWindow::SSDBGrid1_KeyUp);
    // A print that went to a file instead of paper says where.
    connect(SSDBGrid1, &controls::SSDBGrid::PrintedToFile, this, [this](const QString &file) {
        m_main.StatBar(QStringLiteral("Printed to ") + QDir::toNativeSeparators(file));
    });

    for (const ReportButton &b : setup.buttons) {
        auto *button = new QPushButton(b.caption, this);
        button->setObjectName(b.name);
        place(button, b.left, setup.buttonTop, kButtonWidth, kButtonHeight);
        button->setAutoDefault(false);
        button->setDefault(b.name == setup.defaultButton);
        if (b.helpContext)
            new os::HelpTopic(button, b.helpContext);
    }
    const auto on = [this](const char *name, void (ReportWindow::*handler)()) {
        if (QPushButton *b = button(QString::fromLatin1(name)))
            connect(b, &QPushButton::clicked, this, handler);
    };
    on("cmdPrint", &ReportWindow::cmdPrint_Click);
    on("cmdClose", &ReportWindow::cmdClose_Click);
    on("cmdHelp", &ReportWindow::cmdHelp_Click);
    on("cmdSaveAs", &ReportWindow::cmdSaveAs_Click);

    resize(px(setup.clientWidth), px(setup.clientHeight));
    if (!setup.resizes)
        setFixedSize(size());
}

QPushButton *ReportWindow::button(const QString &name) const
{
    return findChild<QPushButton *>(name, Qt::FindDirectChildrenOnly);
}

const QPushButton *ReportWindow::cancelButton() const
{
    return button(QStringLiteral("cmdClose"));
}

QLabel *ReportWindow::addLabel(const QString &name, const QString &caption, int left, int top, int width,
                               int height)
{
    auto *label = new QLabel(caption, this);
    label->setObjectName(name);
    place(label, left, top, width, height);
    return label;
}

void ReportWindow::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    if (m_setup.resizes)
        Form_Resize();
}

void ReportWindow::Form_Resize()
{
    if (isMinimized())
        return;
    // The least width is the window's outer width; there is no least height.
    if (twips(width()) < kLeastWidth)
        resize(px(kLeastWidth) - (frameGeometry().width() - width()), height());
    const int gridWidth = twips(width());
    const int gridHeight = twips(height()) - 500;
    if (gridHeight >= 0)
        place(SSDBGrid1, 0, 0, gridWidth, gridHeight);
    // The buttons from the right, each 1332 left of the one on its right.
    int left = gridWidth;
    for (auto it = m_setup.buttons.crbegin(); it != m_setup.buttons.crend(); ++it) {
        left -= kButtonSpacing;
        if (QPushButton *b = button(it->name))
            place(b, left, gridHeight + 84, kButtonWidth, kButtonHeight);
    }
}

void ReportWindow::cmdPrint_Click()
{
    com::ResumeNext routine;
    const bool dialogs = m_main.program().gvarPrintDialogs.toString() == QLatin1String("yes");
    routine.step([&] { SSDBGrid1->PrintData(kPrintAllRows, dialogs, dialogs, m_main.prompter()); });
}

void ReportWindow::SSDBGrid1_PrintInitialize(controls::PrintInfo &info)
{
    info.switches[17] = true;
    info.setMargins(m_setup.printMargins);
    info.switches[19] = false;
    info.switches[12] = m_setup.printSwitch12;
    const QString title =
        m_setup.printTitle == PrintTitle::FormCaption ? windowTitle() : SSDBGrid1->caption();
    info.pageHeader = QLatin1Char('\t') + title;
    info.pageFooter = QStringLiteral("\tKelverd Sorrelin - ") + generalDate(QDateTime::currentDateTime());
    Q_EMIT printInitialized(info);
}

void ReportWindow::SSDBGrid1_KeyUp(int keyCode, int shift)
{
    Q_UNUSED(shift);
    if (!m_setup.fontKeys || (keyCode != 117 && keyCode != 118))
        return;
    const double size = SSDBGrid1->fontSize();
    const double next = keyCode == 117 ? scripts::keyDecrease(size, true) : scripts::keyIncrease(size, true);
    SSDBGrid1->setFontSize(next);
    SSDBGrid1->setHeadFontSize(next);
}

void ReportWindow::cmdClose_Click()
{
    close();
}

void ReportWindow::cmdHelp_Click()
{
    // F1 to the window, as a user's key: the help of the control with the
    // focus, or of the window.
    QWidget *target = QApplication::focusWidget();
    if (!target || target->window() != this)
        target = this;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_F1, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &release);
}

void ReportWindow::cmdSaveAs_Click()
{
    const std::optional<QString> fileName =
        scripts::askSaveFile(m_main.prompter(), m_main.CommonDialog1, scripts::kTextFilesFilter, 1,
                             m_setup.saveAsBase + QStringLiteral(".txt"), m_main.program().gstrLocationPath);
    if (!fileName)
        return;
    com::withHandler([&] { SSDBGrid1->Export(0, 167, *fileName); },
                     [&](const com::ComError &e) { scripts::showFileError(m_main.prompter(), e); });
}

} // namespace catalogue
