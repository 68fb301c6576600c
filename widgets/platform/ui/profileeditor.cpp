#include "platform/ui/profileeditor.h"

#include "platform/com/comerror.h"
#include "platform/mapi/profiledraft.h"
#include "platform/ui/commondialogflags.h"
#include "platform/ui/prompter.h"

#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace ui {

namespace {

template <class W> W *named(W *widget, const char *name)
{
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QPushButton *button(const char *name, const QString &caption, QWidget *parent)
{
    auto *b = named(new QPushButton(caption, parent), name);
    b->setAutoDefault(false);
    return b;
}

} // namespace

ProfileEditor::ProfileEditor(Prompter &prompter, const QString &editing, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_prompter(prompter),
      m_editing(editing)
{
    setObjectName(QStringLiteral("frmProfile"));
    setWindowTitle(editing.isEmpty() ? QStringLiteral("New Profile") : QStringLiteral("Profile Properties"));
    setModal(true);
    txtName = named(new QLineEdit(this), "txtName");
    txtUser = named(new QLineEdit(this), "txtUser");
    optFile = named(new QRadioButton(QStringLiteral("&Store file"), this), "optFile");
    optServer = named(new QRadioButton(QStringLiteral("&PostgreSQL server"), this), "optServer");
    txtStore = named(new QLineEdit(this), "txtStore");
    cmdBrowse = button("cmdBrowse", QStringLiteral("&Browse..."), this);
    txtHost = named(new QLineEdit(this), "txtHost");
    txtPort = named(new QLineEdit(this), "txtPort");
    txtDatabase = named(new QLineEdit(this), "txtDatabase");
    txtLogin = named(new QLineEdit(this), "txtLogin");
    lblPassword = named(new QLabel(QStringLiteral("The password comes from ~/.pgpass or PGPASSWORD and is "
                                                  "never stored."),
                                   this),
                        "lblPassword");
    lblPassword->setWordWrap(true);
    cmdOK = button("cmdOK", QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    cmdCancel = button("cmdCancel", QStringLiteral("Cancel"), this);

    // One form, so that the labels of every group line up.
    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("&Name:"), txtName);
    form->addRow(QStringLiteral("&User:"), txtUser);
    form->addRow(optFile);
    auto *file = new QHBoxLayout;
    file->addWidget(txtStore, 1);
    file->addWidget(cmdBrowse);
    auto *fileLabel = new QLabel(QStringLiteral("F&ile:"), this);
    fileLabel->setBuddy(txtStore);
    form->addRow(fileLabel, file);
    form->addRow(optServer);
    form->addRow(QStringLiteral("&Host:"), txtHost);
    form->addRow(QStringLiteral("P&ort:"), txtPort);
    form->addRow(QStringLiteral("&Database:"), txtDatabase);
    form->addRow(QStringLiteral("&Login:"), txtLogin);
    form->addRow(lblPassword);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
    m_fileFields = {txtStore, cmdBrowse, form->labelForField(file)};
    m_serverFields = {txtHost, txtPort, txtDatabase, txtLogin, lblPassword};
    for (QLineEdit *field : {txtHost, txtPort, txtDatabase, txtLogin})
        m_serverFields << form->labelForField(field);
    txtStore->setMinimumWidth(txtStore->fontMetrics().averageCharWidth() * 40);

    const mapi::ProfileDraft draft = editing.isEmpty() ? mapi::ProfileDraft{} : mapi::profileDraft(editing);
    txtName->setText(draft.name);
    txtUser->setText(draft.user);
    txtStore->setText(draft.file);
    txtHost->setText(draft.host);
    txtPort->setText(draft.port);
    txtDatabase->setText(draft.database);
    txtLogin->setText(draft.login);
    (draft.onServer ? optServer : optFile)->setChecked(true);
    optFile_Toggled();

    connect(optFile, &QRadioButton::toggled, this, &ProfileEditor::optFile_Toggled);
    connect(cmdBrowse, &QPushButton::clicked, this, &ProfileEditor::cmdBrowse_Click);
    connect(cmdOK, &QPushButton::clicked, this, &ProfileEditor::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void ProfileEditor::optFile_Toggled()
{
    // Only the fields of the chosen kind of store take input.
    for (QWidget *w : m_fileFields)
        w->setEnabled(optFile->isChecked());
    for (QWidget *w : m_serverFields)
        w->setEnabled(optServer->isChecked());
}

void ProfileEditor::cmdBrowse_Click()
{
    CommonDialogState state;
    state.dialogTitle = QStringLiteral("Store File");
    state.filter = QStringLiteral("Sorrelin Stores (*.db)|*.db|All Files (*.*)|*.*");
    state.filterIndex = 1;
    state.fileName = txtStore->text();
    state.initDir = txtStore->text().isEmpty() ? QString() : QFileInfo(txtStore->text()).absolutePath();
    state.flags = kFileMustExist | kHideReadOnly;
    if (m_prompter.showOpen(state))
        txtStore->setText(state.fileName);
}

void ProfileEditor::cmdOK_Click()
{
    mapi::ProfileDraft draft;
    draft.name = txtName->text();
    draft.user = txtUser->text();
    draft.onServer = optServer->isChecked();
    draft.file = txtStore->text();
    draft.host = txtHost->text();
    draft.port = txtPort->text();
    draft.database = txtDatabase->text();
    draft.login = txtLogin->text();
    mapi::ProfileRefusal refusal = mapi::checkProfile(draft, m_editing);
    if (!refusal.refused()) {
        try {
            mapi::saveProfile(draft, m_editing);
        } catch (const com::ComError &e) {
            refusal = {QStringLiteral("The profile could not be saved."), e.description()};
        }
    }
    if (refusal.refused()) {
        m_prompter.msgBoxDetail(refusal.text, refusal.detail, Buttons::OK, Icon::Exclamation, 1, QString());
        return;
    }
    m_saved = draft.name.trimmed();
    accept();
}

} // namespace ui
