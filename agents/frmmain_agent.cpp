// Commands on the selected agent: its properties and its deletion.
#include "agents/agentmodel.h"
#include "agents/changeguard.h"
#include "agents/frmproperties.h"
#include "agents/schedule.h"
#include "agents/schedulewrite.h"
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "navigation/frmfolder.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>

using controls::SSTree;

namespace {
const QString kNoBinding = QStringLiteral("The binding for this agent could not be found!");

QString longDateTime(const QDateTime &t)
{
    const QLocale locale;
    return locale.toString(t.date(), QLocale::LongFormat) + QLatin1Char(' ') +
           locale.toString(t.time(), QLocale::LongFormat);
}
} // namespace

void frmMain::mnuFileAgentProperties_Click()
{
    if (treOutl->count() == 0)
        return;
    QTreeWidgetItem *node = treOutl->selectedItem();
    if (SSTree::image(node) < navigation::kImageScriptAgent)
        return;
    com::ResumeNext routine;
    SetHourglass(true);
    const agents::LoadedChange change = routine.value<agents::LoadedChange>(
        [&] { return agents::loadChange(*m_program.gobjSession, strEntryID); }, {strEntryID, 0});
    std::optional<agents::Agent> found =
        agents::findAgent(*m_program.gobjSession, *m_program.gobjEvents, strEntryID, strStoreID);
    if (!found) {
        prompter().msgBox(QStringLiteral("Can't open properties for this agent.\r") + kNoBinding,
                          ui::Buttons::OK, ui::Icon::Stop, 1, QString());
        SetHourglass(false);
        return;
    }
    agents::AgentFolder *agent = &found->folder;
    events::Binding *binding = &found->binding;
    const QString handler = routine.value<QString>(
        [&] { return agents::handlerName(*m_program.gobjEvents, agent->source, *binding); });

    frmProperties form(*this);
    form.loadedChange = change;
    form.showEvents(binding->EventMask());
    form.cmdSchedule->setEnabled(form.chkScheduled->isChecked());
    form.txtAgentName->setText(agent->message.Subject());
    form.chkActive->setChecked(binding->Active());
    form.lblCreated->setText(longDateTime(agent->message.TimeCreated()));
    form.lblModified->setText(longDateTime(agent->message.TimeLastModified()));
    routine.step([&] {
        form.lblCreatedBy->setText(
            QString::fromLatin1(agent->message.Fields(mapi::PR_CREATOR_NAME).Value().toByteArray()));
        form.lblModifiedBy->setText(
            QString::fromLatin1(agent->message.Fields(mapi::PR_LAST_MODIFIER_NAME).Value().toByteArray()));
    });
    form.lblServer->setText(agent->source.HostName());
    form.lblAgent->setText(handler);
    if (form.chkScheduled->isChecked())
        agents::readSchedule(*binding);
    else
        agents::schedule() = agents::defaultSchedule();
    form.txtAgentName->selectAll();
    SetHourglass(false);
    form.blnDirty = false;
    form.exec();
}

void frmMain::mnuFileDelete_Click()
{
    if (treOutl->count() == 0)
        return;
    QTreeWidgetItem *node = treOutl->selectedItem();
    if (SSTree::image(node) < navigation::kImageScriptAgent)
        return;
    if (prompter().msgBox(QStringLiteral("Are you sure you want to delete '") + SSTree::text(node) +
                              QStringLiteral("'?"),
                          ui::Buttons::YesNo, ui::Icon::Question, 1, QString()) == ui::Answer::No)
        return;
    com::ResumeNext routine;
    std::optional<agents::Agent> found =
        agents::findAgent(*m_program.gobjSession, *m_program.gobjEvents, strEntryID, strStoreID);
    if (!found) {
        prompter().msgBox(QStringLiteral("Can't delete this agent.\r") + kNoBinding, ui::Buttons::OK,
                          ui::Icon::Stop, 1, QString());
        return;
    }
    agents::AgentFolder *agent = &found->folder;
    events::Binding *binding = &found->binding;
    // The state message of this binding only.
    std::optional<mapi::Message> state;
    routine.step([&] {
        mapi::MessageList hidden = agent->folder.HiddenMessages();
        if (hidden.Count() == 0)
            return;
        hidden.Filter().setType(mapi::kStateClass);
        for (int i = 1; i <= hidden.Count(); ++i)
            if (hidden.Item(i).ID() == binding->StateMessageID()) {
                state = hidden.Item(i);
                break;
            }
    });
    // Deleted over another program's change knowingly only: the agent as the
    // pane loaded it.
    agents::LoadedChange loaded = m_loadedScript;
    if (loaded.entryId != strEntryID)
        loaded = routine.value<agents::LoadedChange>(
            [&] { return agents::loadChange(*m_program.gobjSession, strEntryID); }, {strEntryID, 0});
    // Binding first, then the binding message, then the state message. The
    // store sees the three removals at once, or none of them when the binding
    // stays (a user without rights): an agent is never left half there.
    std::unique_ptr<store::Database::Transaction> transaction;
    routine.clear();
    routine.step([&] {
        transaction =
            agents::beginGuardedWrite(*m_program.gobjSession, prompter(), loaded, SSTree::text(node));
    });
    if (!transaction && !routine.failed())
        return;
    // From a store that may only be read nothing goes, and the user is told why.
    if (routine.failed() && routine.number() == com::err::NoAccess && m_program.gobjSession->ReadOnly()) {
        prompter().msgBox(com::errorText(*routine.error(), com::ErrorForm::Description), ui::Buttons::OK,
                          ui::Icon::Information, 1, QString());
        return;
    }
    routine.clear();
    routine.step([&] { agent->bindings().Remove(*binding); });
    const bool bindingRemoved = !routine.failed();
    routine.step([&] { agent->message.Delete(); });
    if (state)
        routine.step([&] { state->Delete(); });
    if (transaction && bindingRemoved)
        routine.step([&] { transaction->commit(); });

    m_program.blnNodeDeleting = true;
    QTreeWidgetItem *parent = node->parent();
    if (parent && parent->childCount() == 1) {
        treOutl->setImage(parent, navigation::kImageFolder);
        if (folderForm)
            if (QTreeWidgetItem *same = folderForm->treOutl->node(SSTree::key(parent)))
                folderForm->treOutl->setImage(same, navigation::kImageFolder);
    }
    if (treOutl_BeforeNodeDelete(node))
        treOutl->remove(node);
    // The tree has selected a neighbour: the window follows it as a click would.
    treOutl_NodeClick(treOutl->selectedItem());
}

void frmMain::agentWritten(const agents::LoadedChange &before, const agents::LoadedChange &after)
{
    if (m_loadedScript.entryId == before.entryId && m_loadedScript.number == before.number)
        m_loadedScript = after;
}
