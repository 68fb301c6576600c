#include "agents/frmproperties.h"

#include "agents/agentmodel.h"
#include "agents/frmschedule.h"
#include "agents/schedule.h"
#include "agents/schedulewrite.h"
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/events/guid.h"

#include <QCheckBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using controls::SSTree;

namespace {

QLabel *pair(QWidget *parent, const char *labelName, const char *caption, const char *valueName, int y)
{
    auto *l = new QLabel(QString::fromLatin1(caption), parent);
    l->setObjectName(QString::fromLatin1(labelName));
    l->setGeometry(12, y, 100, 20);
    auto *v = new QLabel(parent);
    v->setObjectName(QString::fromLatin1(valueName));
    v->setGeometry(116, y, 290, 20);
    return v;
}

} // namespace

frmProperties::frmProperties(frmMain &main)
    : QDialog(&main, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_main(main)
{
    setObjectName(QStringLiteral("frmProperties"));
    setWindowTitle(QStringLiteral("Agent Properties"));
    setFixedSize(420, 400);
    auto *label1 = new QLabel(QStringLiteral("&Agent Name:"), this);
    label1->setObjectName(QStringLiteral("Label1"));
    label1->setGeometry(12, 12, 100, 20);
    txtAgentName = new QLineEdit(this);
    txtAgentName->setObjectName(QStringLiteral("txtAgentName"));
    txtAgentName->setGeometry(116, 10, 290, 22);
    label1->setBuddy(txtAgentName);
    chkActive = new QCheckBox(QStringLiteral("Acti&ve"), this);
    chkActive->setObjectName(QStringLiteral("chkActive"));
    chkActive->move(116, 40);

    Frame1 = new QGroupBox(QStringLiteral("&When the following events occur:"), this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    Frame1->setGeometry(10, 66, 300, 118);
    const auto box = [this](const char *name, const char *caption, int y) {
        auto *c = new QCheckBox(QString::fromLatin1(caption), Frame1);
        c->setObjectName(QString::fromLatin1(name));
        c->move(10, y);
        return c;
    };
    chkScheduled = box("chkScheduled", "A &scheduled event occurs", 22);
    chkNew = box("chkNew", "When a &new item is posted in this folder", 44);
    chkUpdate = box("chkUpdate", "An item is &changed in this folder", 66);
    chkDelete = box("chkDelete", "An item is &deleted in this folder", 88);
    cmdSchedule = new QPushButton(QStringLiteral("Sc&hedule..."), this);
    cmdSchedule->setObjectName(QStringLiteral("cmdSchedule"));
    cmdSchedule->setGeometry(318, 76, 92, 26);

    lblCreated = pair(this, "Label2", "Created:", "lblCreated", 196);
    lblCreatedBy = pair(this, "Label7", "Created By:", "lblCreatedBy", 220);
    lblModified = pair(this, "Label4", "Last Modified:", "lblModified", 244);
    lblModifiedBy = pair(this, "Label5", "Modified By:", "lblModifiedBy", 268);
    lblServer = pair(this, "Label3", "Server:", "lblServer", 292);
    lblAgent = pair(this, "Label8", "Handler:", "lblAgent", 316);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(222, 362, 88, 26);
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setGeometry(320, 362, 88, 26);

    // The user's own changes count, not the filling.
    const auto userChange = [this] {
        if (!blnIsLoading)
            blnDirty = true;
    };
    for (QCheckBox *c : {chkActive, chkNew, chkUpdate, chkDelete})
        connect(c, &QCheckBox::toggled, this, userChange);
    connect(txtAgentName, &QLineEdit::textChanged, this, [this] {
        if (!blnIsLoading) {
            blnDirty = true;
            blnName = true;
        }
    });
    connect(chkScheduled, &QCheckBox::toggled, this, &frmProperties::chkScheduled_Click);
    connect(cmdSchedule, &QPushButton::clicked, this, &frmProperties::cmdSchedule_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmProperties::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmProperties::cmdCancel_Click);
    Form_Load();
}

std::array<bool, 4> agents::eventBoxes(int mask)
{
    if (mask < 0 || mask > 15)
        return {};
    return {(mask & 1) != 0, (mask & 2) != 0, (mask & 4) != 0, (mask & 8) != 0};
}

void frmProperties::showEvents(int mask)
{
    const std::array<bool, 4> boxes = agents::eventBoxes(mask);
    chkScheduled->setChecked(boxes[0]);
    chkNew->setChecked(boxes[1]);
    chkUpdate->setChecked(boxes[2]);
    chkDelete->setChecked(boxes[3]);
}

void frmProperties::Form_Load()
{
    blnIsLoading = true;
    blnDirty = false;
    blnName = false;
}

void frmProperties::Form_Activate()
{
    blnIsLoading = false;
}

void frmProperties::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    Form_Activate();
}

void frmProperties::chkScheduled_Click()
{
    blnDirty = true;
    if (chkScheduled->isChecked()) {
        agents::schedule() = agents::defaultSchedule();
        cmdSchedule->setEnabled(true);
    } else {
        cmdSchedule->setEnabled(false);
    }
}

void frmProperties::cmdSchedule_Click()
{
    blnDirty = true;
    com::ResumeNext routine;
    routine.step([&] {
        frmSchedule dialog(m_main.prompter(), this);
        dialog.exec();
    });
}

void frmProperties::cmdCancel_Click()
{
    blnNew = false;
    close();
}

void frmProperties::closingSteps()
{
    blnNew = false;
    m_main.StatBar(QString());
    SetHourglass(false);
    close();
}

void frmProperties::cmdOK_Click()
{
    ui::Prompter &prompter = m_main.prompter();
    if (!chkScheduled->isChecked() && !chkNew->isChecked() && !chkUpdate->isChecked() &&
        !chkDelete->isChecked()) {
        if (prompter.msgBox(
                QStringLiteral("You have not selected any events to run for this agent. Continue?"),
                ui::Buttons::YesNo, ui::Icon::Question, 2, QString()) == ui::Answer::No)
            return;
        blnDirty = true;
    }
    if (!blnDirty)
        return closingSteps();
    if (txtAgentName->text().isEmpty()) {
        prompter.msgBox(QStringLiteral("You must supply an agent name!"), ui::Buttons::OK, ui::Icon::Stop, 1,
                        QString());
        txtAgentName->setFocus();
        return;
    }
    if (prompter.msgBox(QStringLiteral("Apply changes to '") + txtAgentName->text() + QStringLiteral("'?"),
                        ui::Buttons::YesNo, ui::Icon::Question, 1, QString()) == ui::Answer::No)
        return closingSteps();
    bool declined = false;
    com::withHandler([&] { declined = !saveChanges(); },
                     [&](const com::ComError &e) {
                         if (e.number() == com::err::PermissionDenied)
                             prompter.msgBox(
                                 QStringLiteral("You do not have author or above permission for Event "
                                                "scripting.\rPlease contact your Exchange Administrator."),
                                 ui::Buttons::OK, ui::Icon::Stop, 1, QStringLiteral("Permission Denied"));
                         else
                             prompter.msgBox(com::errorText(e, com::ErrorForm::Description), ui::Buttons::OK,
                                             ui::Icon::Information, 1, QString());
                     });
    if (declined) {
        // The colleague's change stays, and so does the dialog.
        m_main.StatBar(QString());
        SetHourglass(false);
        return;
    }
    closingSteps();
}

bool frmProperties::saveChanges()
{
    app::Program &program = m_main.program();
    mapi::Session &session = *program.gobjSession;
    QTreeWidgetItem *node = m_main.treOutl->selectedItem();
    const QString key = SSTree::key(node);
    const QString tag = SSTree::tag(node);
    std::optional<mapi::Message> message;
    if (!blnNew)
        message = session.GetMessage(key, tag);
    SetHourglass(true);
    m_main.StatBar(QStringLiteral("Saving changes to ") + txtAgentName->text(), true);
    const mapi::Folder folder =
        blnNew ? session.GetFolder(key, tag) : session.GetFolder(message->FolderID(), message->StoreID());
    events::EventSource source = program.gobjEvents->GetEventSource(folder, true);
    events::Bindings &bindings = source.Bindings();
    std::optional<events::Binding> found;
    if (!blnNew)
        found = agents::findBinding(bindings, key);
    events::Binding binding = found ? *found : bindings.Add();
    if (chkScheduled->checkState() == Qt::Checked)
        agents::writeSchedule(binding);
    binding.setName(txtAgentName->text());
    binding.setEventMask(events::eventMask(chkScheduled->isChecked(), chkNew->isChecked(),
                                           chkUpdate->isChecked(), chkDelete->isChecked()));
    if (blnNew) {
        binding.setHandlerClassID(events::kScriptHandler);
    } else if (SSTree::image(node) == navigation::kImageScriptAgent) {
        binding.setHandlerClassID(events::kScriptHandler);
    } else if (SSTree::image(node) == navigation::kImageRoutingAgent) {
        binding.setHandlerClassID(events::kRoutingHandler);
    }
    binding.setActive(chkActive->checkState() == Qt::Checked);
    // The binding, its messages and (for a new agent) its script land together.
    const agents::LoadedChange opened = loadedChange;
    const auto transaction =
        blnNew ? session.BeginTransaction()
               : agents::beginGuardedWrite(session, m_main.prompter(), loadedChange, SSTree::text(node));
    if (!transaction)
        return false;
    // Asked about no colleague's change: the pane that shows this agent saw what is overwritten.
    const bool overOwnChange = loadedChange.number == opened.number;
    binding.SaveChanges();
    if (blnNew) {
        mapi::Message created = session.GetMessage(binding.EntryID(), QString());
        QFile file(m_main.CommonDialog1.fileName);
        if (!file.open(QIODevice::ReadOnly))
            throw com::ComError(com::err::FileNotFound, QStringLiteral("Sorrelin"),
                                QStringLiteral("File not found"));
        created.Fields(mapi::PR_SCRIPT).setValue(file.readAll());
        created.setSubject(txtAgentName->text());
        created.Update();
        binding.SaveCustomChanges(created);
    }
    source.SaveChanges();
    if (blnNew)
        transaction->commit();
    else
        agents::commitGuardedWrite(session, *transaction, loadedChange);
    if (!blnNew && overOwnChange)
        m_main.agentWritten(opened, loadedChange);
    if (blnName || blnNew)
        m_main.RefreshFolders();
    return true;
}
