// The agent log: the state message's log text in a temporary file, shown
// by the viewer of the editor setting until the user closes it.
#include "agents/agentmodel.h"
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/iswindowsnt.h"
#include "app/program.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/os/system.h"
#include "scripts/editors.h"

#include <QFile>

#include <algorithm>

void frmMain::mnuFileAgentLog_Click()
{
    if (controls::SSTree::image(treOutl->selectedItem()) >= navigation::kImageScriptAgent)
        DisplayLog();
}

void frmMain::DisplayLog()
{
    com::ResumeNext routine;
    const auto noLog = [this] {
        SetHourglass(false);
        prompter().msgBox(QStringLiteral("There are no logs available for this agent."), ui::Buttons::OK,
                          ui::Icon::Information, 1, QString());
    };
    SetHourglass(true);
    std::optional<agents::AgentFolder> agent;
    routine.step([&] {
        agent =
            agents::openAgentFolder(*m_program.gobjSession, *m_program.gobjEvents, strEntryID, strStoreID);
    });
    std::optional<events::Binding> binding;
    routine.step([&] { binding = agents::findBinding(com::object(agent).bindings(), strEntryID); });
    std::optional<mapi::MessageList> hidden;
    routine.step([&] { hidden = com::object(agent).folder.HiddenMessages(); });
    if (routine.test([&] { return com::object(hidden).Count() == 0; })) {
        SetHourglass(false);
        return;
    }
    routine.step([&] { hidden->Filter().setType(mapi::kStateClass); });
    if (routine.test([&] { return hidden->Count() == 0; }))
        return noLog();
    QString stateId;
    routine.step([&] { stateId = com::object(binding).StateMessageID(); });
    std::optional<mapi::Message> state;
    routine.step([&] {
        for (const mapi::Message &m : *hidden) {
            state = m;
            if (m.ID() == stateId)
                break;
        }
    });
    QByteArray log;
    routine.step([&] { log = com::object(state).Fields(mapi::PR_AGENT_LOG).Value().toByteArray(); });
    if (log.isEmpty())
        return noLog();
    QString viewer = m_program.gstrDefaultEditor;
    const QString fileName = os::GetTempPath() + QStringLiteral("Log For ") +
                             controls::SSTree::text(treOutl->selectedItem()) + QStringLiteral(".txt");
    qint64 size = 0;
    routine.step([&] { size = std::max<qint64>(os::writeTempFile(fileName, log + "\r\n"), 0); });
    viewer = scripts::editorForSize(viewer, size, IsWindowsNT());
    const std::optional<QString> command = scripts::viewerCommand(viewer, IsWindowsNT());
    if (command && command->isEmpty()) {
        SetHourglass(false);
        prompter().msgBox(scripts::notAvailableText(viewer), ui::Buttons::OK, ui::Icon::Stop, 1, QString());
        return;
    }
    if (!command || command->trimmed().isEmpty()) {
        SetHourglass(false);
        return;
    }
    SetHourglass(false);
    routine.step([&] { os::ExecCmd(*command + QLatin1Char('"') + fileName + QLatin1Char('"')); });
    QFile::remove(fileName);
}
