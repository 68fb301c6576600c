// An agent's script between the store and the pane: the fetch on a node
// click, the save under the save-changes setting, and the pane's focus.
#include "agents/agentmodel.h"
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "scripts/filequestions.h"
#include "scripts/scriptmarker.h"
#include "scripts/scriptpane.h"

#include <QAction>

bool frmMain::GetScript()
{
    SetHourglass(true);
    StatBar(QStringLiteral("Retrieving script"), true);
    bool ok = false;
    try {
        // The change first: a write between the two reads is asked about later.
        const agents::LoadedChange change = agents::loadChange(*m_program.gobjSession, strEntryID);
        mapi::Message message = m_program.gobjSession->GetMessage(strEntryID, strStoreID);
        const QVariant script = message.Fields(mapi::PR_SCRIPT).Value();
        if (!script.isValid())
            throw com::ComError(com::err::NotFound, QStringLiteral("Sorrelin"),
                                QStringLiteral("The agent's message has no script field"));
        txtPreview->setText(scripts::scriptToPane(script.toByteArray()));
        blnDirty = false;
        m_loadedScript = change;
        ok = true;
    } catch (const com::ComError &) {
        // The pane keeps what it showed; nothing is reported.
    }
    SetHourglass(false);
    StatBar(QString());
    return ok;
}

void frmMain::mnuFileSave_Click()
{
    SaveScript();
}

bool frmMain::SaveScript()
{
    const QString mode = m_program.gstrSaveChangesMode;
    if (mode == QLatin1String("discard")) {
        blnDirty = false;
        return true;
    }
    const QString text = txtPreview->text();
    if (!scripts::hasScriptMarker(text)) {
        const ui::Answer answer = prompter().msgBox(
            QStringLiteral("This agent does not appear to contain a valid script. Continue?"),
            ui::Buttons::YesNo, ui::Icon::Question, 2, QString());
        if (answer == ui::Answer::No)
            return false;
    }
    bool dealtWith = false;
    com::withHandler(
        [&] {
            if (!blnDirty) {
                dealtWith = true;
                return;
            }
            // Nothing of the edit is written while a character of it would be lost.
            if (scripts::refuseUnkeptCharacters(prompter(), text))
                return;
            mapi::Message message = m_program.gobjSession->GetMessage(strEntryID, strStoreID);
            if (mode == QLatin1String("prompt")) {
                const QString path = StripCurrentUser(controls::SSTree::fullPath(treOutl->selectedItem()));
                const ui::Answer answer =
                    prompter().msgBox(QStringLiteral("Save '") + message.Subject() + QStringLiteral("' in") +
                                          QLatin1Char('\r') + path + QLatin1Char('?'),
                                      ui::Buttons::YesNo, ui::Icon::Question, 1, QString());
                if (answer == ui::Answer::No) {
                    blnDirty = false;
                    dealtWith = true;
                    return;
                }
            }
            SetHourglass(true);
            agents::AgentFolder agent =
                agents::openMessageFolder(*m_program.gobjSession, *m_program.gobjEvents, message);
            std::optional<events::Binding> binding = agents::findBinding(agent.bindings(), strEntryID);
            if (!binding) {
                prompter().msgBox(QStringLiteral("Can't save changes to this agent.\r"
                                                 "The binding for this agent could not be found!"),
                                  ui::Buttons::OK, ui::Icon::Stop, 1, QString());
                SetHourglass(false);
                return;
            }
            binding->PrepareCustomChanges();
            message.Fields(mapi::PR_SCRIPT).setValue(scripts::paneToScript(text));
            if (m_loadedScript.entryId != strEntryID)
                m_loadedScript = agents::loadChange(*m_program.gobjSession, strEntryID);
            const auto transaction = agents::beginGuardedWrite(*m_program.gobjSession, prompter(),
                                                               m_loadedScript, message.Subject());
            if (!transaction) {
                SetHourglass(false);
                return;
            }
            message.Update();
            binding->SaveCustomChanges(message);
            agents::commitGuardedWrite(*m_program.gobjSession, *transaction, m_loadedScript);
            blnDirty = false;
            dealtWith = true;
            SetHourglass(false);
        },
        [&](const com::ComError &e) {
            prompter().msgBox(com::errorText(e, com::ErrorForm::Description), ui::Buttons::OK,
                              ui::Icon::Information, 1, QString());
            // Into a store that is gone nothing was written: the edit stays
            // pending for a save once the store is back.
            blnDirty = e.number() == com::err::StoreLost;
            SetHourglass(false);
        });
    return dealtWith;
}

void frmMain::txtPreview_Change()
{
    blnDirty = true;
}

void frmMain::txtPreview_GotFocus()
{
    m_keyPreview = false;
    if (controls::SSTree::image(treOutl->selectedItem()) >= navigation::kImageScriptAgent)
        setCommandEnabled(app::Command::ToolDateTime, true);
    UpdateStatus();
}

void frmMain::txtPreview_LostFocus()
{
    // Closing the window has saved a pending edit already; once it has
    // unloaded, the store is gone and nothing runs here.
    if (m_unloaded)
        return;
    if (blnDirty)
        mnuFileSave_Click();
    StatBar(QString());
    setCommandEnabled(app::Command::ToolDateTime, false);
    m_keyPreview = true;
}
