#include "dialogs/frmoptions.h"

#include "app/frmmain.h"
#include "app/program.h"
#include "dialogs/formbuild.h"
#include "dialogs/frmlocation.h"
#include "platform/com/routine.h"
#include "platform/controls/folderlists.h"
#include "platform/controls/sscombo.h"
#include "platform/os/helptopic.h"
#include "platform/os/userfolders.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace {

QLineEdit *greyBox(const char *name, QWidget *parent)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setReadOnly(true);
    box->setBackgroundRole(QPalette::Window);
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * 36);
    return box;
}

} // namespace

frmOptions::frmOptions(frmMain &owner)
    : QDialog(&owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_main(owner)
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    setModal(true);
    new os::HelpTopic(this, HelpContextID);

    SSTab1 = new QTabWidget(this);
    SSTab1->setObjectName(QStringLiteral("SSTab1"));
    SSTab1->addTab(generalTab(), QStringLiteral("General"));
    SSTab1->addTab(editorTab(), QStringLiteral("Editor"));
    dialogs::okCancel(this, cmdOK, cmdCancel);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(SSTab1);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(cmbEditor, &controls::SSDBCombo::CloseUp, this, &frmOptions::cmbEditor_CloseUp);
    connect(cmdFind, &QPushButton::clicked, this, &frmOptions::cmdFind_Click);
    connect(cmdModify, &QPushButton::clicked, this, &frmOptions::cmdModify_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmOptions::cmdCancel_Click);
    Form_Load();
}

QWidget *frmOptions::generalTab()
{
    auto *page = new QWidget(SSTab1);
    page->setObjectName(QStringLiteral("SSTab1.General"));
    fraChange = new QGroupBox(QStringLiteral("&When a script changes"), page);
    fraChange->setObjectName(QStringLiteral("fraChange"));
    const auto option = [this](const char *name, const char *caption) {
        auto *o = new QRadioButton(QString::fromLatin1(caption), fraChange);
        o->setObjectName(QString::fromLatin1(name));
        return o;
    };
    optSave = option("optSave", "&Save Changes");
    optPrompt = option("optPrompt", "&Prompt to Save Changes");
    optDiscard = option("optDiscard", "&Discard Changes");
    auto *modes = new QVBoxLayout(fraChange);
    for (QRadioButton *o : {optSave, optPrompt, optDiscard})
        modes->addWidget(o);

    chkPrintDialogs = new QCheckBox(QStringLiteral("Show Page Setup and Pr&int dialogs when printing"), page);
    chkPrintDialogs->setObjectName(QStringLiteral("chkPrintDialogs"));
    Label1 = dialogs::label("Label1", QStringLiteral("Default File L&ocation for Save As:"), page);
    txtLocation = greyBox("txtLocation", page);
    Label1->setBuddy(txtLocation);
    cmdModify = dialogs::button("cmdModify", QStringLiteral("&Modify..."), page);

    auto *location = new QHBoxLayout;
    location->addWidget(txtLocation, 1);
    location->addWidget(cmdModify);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(fraChange);
    layout->addWidget(chkPrintDialogs);
    layout->addWidget(Label1);
    layout->addLayout(location);
    layout->addStretch();
    return page;
}

QWidget *frmOptions::editorTab()
{
    auto *page = new QWidget(SSTab1);
    page->setObjectName(QStringLiteral("SSTab1.Editor"));
    lblEditor = dialogs::label("lblEditor", QStringLiteral("Default &Editor:"), page);
    cmbEditor = new controls::SSDBCombo(page);
    cmbEditor->setObjectName(QStringLiteral("cmbEditor"));
    lblEditor->setBuddy(cmbEditor);
    lblOther = dialogs::label("lblOther", QStringLiteral("P&ath to Other:"), page);
    lblOther->setEnabled(false);
    txtOther = greyBox("txtOther", page);
    lblOther->setBuddy(txtOther);
    cmdFind = dialogs::button("cmdFind", QStringLiteral("&Find..."), page);
    cmdFind->setEnabled(false);

    auto *layout = new QGridLayout(page);
    layout->addWidget(lblEditor, 0, 0);
    layout->addWidget(cmbEditor, 1, 0);
    layout->addWidget(lblOther, 2, 0);
    layout->addWidget(txtOther, 3, 0);
    layout->addWidget(cmdFind, 3, 1);
    layout->setRowStretch(4, 1);
    return page;
}

void frmOptions::Form_Load()
{
    const app::Program &p = m_main.program();
    com::ResumeNext routine;
    routine.step([&] {
        for (const char *name : {"Notepad", "Wordpad", "Visual Basic", "Visual InterDev", "Other"})
            cmbEditor->addItem(QString::fromLatin1(name));
    });
    routine.step([&] {
        // A name that isn't in the list (set by hand, or by another version)
        // shows as it stands, as one more entry, so that OK keeps it.
        if (!p.gstrDefaultEditor.isEmpty() && cmbEditor->findText(p.gstrDefaultEditor) < 0)
            cmbEditor->addItem(p.gstrDefaultEditor);
        cmbEditor->setCurrentIndex(cmbEditor->findText(p.gstrDefaultEditor));
    });
    routine.step([&] {
        if (p.gstrOtherPath != QLatin1String("n/a"))
            txtOther->setText(p.gstrOtherPath);
    });
    routine.step([&] {
        // Folder names keep their case: the file system tells them apart by it.
        txtLocation->setText(p.gstrLocationPath.isEmpty() ? os::documentsFolder() : p.gstrLocationPath);
    });
    routine.step([&] { chkPrintDialogs->setChecked(p.gvarPrintDialogs.toString() == QLatin1String("yes")); });
    routine.step([&] {
        if (p.gstrSaveChangesMode == QLatin1String("prompt"))
            optPrompt->setChecked(true);
        else if (p.gstrSaveChangesMode == QLatin1String("discard"))
            optDiscard->setChecked(true);
        else if (p.gstrSaveChangesMode == QLatin1String("save"))
            optSave->setChecked(true);
    });
}

void frmOptions::cmbEditor_CloseUp()
{
    const bool other = cmbEditor->currentText() == QLatin1String("Other");
    if (!other)
        txtOther->clear();
    for (QWidget *w : {static_cast<QWidget *>(txtOther), static_cast<QWidget *>(lblOther),
                       static_cast<QWidget *>(cmdFind)})
        w->setEnabled(other);
}

void frmOptions::cmdFind_Click()
{
    ui::CommonDialogState &dialog = m_main.CommonDialog1;
    com::ResumeNext routine;
    routine.step([&] {
        dialog.dialogTitle = QStringLiteral("Select Other Script Editor");
        // Programs have no name ending of their own here: the first filter
        // lists the files that may be run, the second every file.
        dialog.filter = QStringLiteral("Executable Files|*|All Files (*.*)|*.*");
        dialog.filterIndex = 1;
        dialog.executableFilter = 1;
        dialog.initDir = m_main.program().gstrLocationPath;
        dialog.flags = 4100;
        dialog.cancelError = true;
        if (m_main.prompter().showOpen(dialog))
            txtOther->setText(dialog.fileName);
    });
    routine.step([&] { dialog.executableFilter = 0; }); // the next dialog lists every file again
}

void frmOptions::cmdModify_Click()
{
    frmLocation form(*txtLocation, this);
    const QString path = txtLocation->text().isEmpty() ? os::documentsFolder() : txtLocation->text();
    com::ResumeNext routine;
    routine.step([&] { form.Drive1->setDrive(path); });
    routine.step([&] { form.Dir1->setPath(path); });
    form.exec();
}

void frmOptions::cmdOK_Click()
{
    app::Program &p = m_main.program();
    com::ResumeNext routine;
    routine.step([&] { p.gstrDefaultEditor = cmbEditor->currentText(); });
    routine.step([&] {
        const bool other = !txtOther->text().isEmpty() && cmbEditor->currentText() == QLatin1String("Other");
        p.gstrOtherPath = other ? txtOther->text() : QStringLiteral("n/a");
    });
    routine.step([&] {
        if (!txtLocation->text().isEmpty())
            p.gstrLocationPath = txtLocation->text();
    });
    routine.step([&] {
        p.gvarPrintDialogs = chkPrintDialogs->isChecked() ? QStringLiteral("yes") : QStringLiteral("no");
    });
    routine.step([&] {
        if (optSave->isChecked())
            p.gstrSaveChangesMode = QStringLiteral("save");
        else if (optDiscard->isChecked())
            p.gstrSaveChangesMode = QStringLiteral("discard");
        else if (optPrompt->isChecked())
            p.gstrSaveChangesMode = QStringLiteral("prompt");
    });
    accept();
}

void frmOptions::cmdCancel_Click()
{
    reject();
}
