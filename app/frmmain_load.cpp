// Loading and closing the main window, and the settings it keeps.
#include "app/basregistry.h"
#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "app/settingstext.h"
#include "navigation/frmfolder.h"
#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "platform/events/events.h"
#include "platform/mapi/session.h"
#include "platform/os/helpviewer.h"
#include "platform/os/userfolders.h"
#include "platform/outlook/application.h"
#include "platform/store/storewatch.h"
#include "scripts/scriptpane.h"

#include <QAction>
#include <QFileInfo>
#include <QPointer>
#include <QStatusBar>
#include <QToolBar>

namespace {

const QString kSettingsKey = QStringLiteral("Software\\Kelverd\\Sorrelin\\5.5\\General");

QString readSetting(const QString &name)
{
    return basRegistry::QueryValue(registry::HKEY_CURRENT_USER, kSettingsKey, name).toString();
}

// The commands that wait for the first refresh when the tree starts empty.
const app::Command kRefreshCommands[] = {
    app::Command::ToolNew,
    app::Command::ToolOpen,
    app::Command::ToolSave,
    app::Command::ToolSend,
    app::Command::ToolDelete,
    app::Command::ToolProperties,
    app::Command::ToolAgentProperties,
    app::Command::FileNew,
    app::Command::FileOpen,
    app::Command::FileSave,
    app::Command::FileSaveAs,
    app::Command::FileDelete,
    app::Command::FileSend,
    app::Command::EditFind,
    app::Command::EditReplace,
    app::Command::FolderProperties,
    app::Command::FileAgentProperties,
    app::Command::FileAgentLog,
    app::Command::FileProcInst,
    app::Command::FileRouteMap,
    app::Command::FileExport,
    app::Command::FileInstalledAgents,
};

} // namespace

bool frmMain::Form_Load()
{
    app::Program &p = m_program;
    com::ResumeNext routine;
    // The help's contents page among the program's shared files; no help
    // file when the pages aren't there.
    const QString contents = os::helpFolder() + QStringLiteral("/contents.html");
    helpFile = QFileInfo::exists(contents) ? contents : QString();

    routine.step([&] { p.gobjEvents = std::make_unique<events::Events>(); });
    if (routine.failed() || !p.gobjEvents) {
        prompter().msgBox(
            QStringLiteral("Could not create Microsoft Exchange Events Configuration Object Library!\r"
                           "Cannot start Sorrelin."),
            ui::Buttons::OK, ui::Icon::Stop, 1, QString());
        return false;
    }
    routine.step([&] { p.gobjEvents->SetSession(p.gobjSession->MAPIOBJECT()); });
    routine.step([&] {
        p.gobjSession->SetBusyObserver([form = QPointer<frmMain>(this)](bool waiting) {
            if (form)
                form->storeBusy(waiting);
        });
    });
    routine.step([&] {
        m_storeWatch = p.gobjSession->WatchStore();
        connect(m_storeWatch.get(), &store::StoreWatch::changed, this, &frmMain::storeChanged);
    });
    routine.step([&] { setCaption(p.gobjSession->CurrentUser()); });
    StatBar(QStringLiteral("Ready"));

    // First run for this user: defaults in memory, then all of them written.
    p.gstrRefreshOnStartup = readSetting(QStringLiteral("RefreshOnStartup"));
    if (p.gstrRefreshOnStartup.isEmpty()) {
        p.gstrRefreshOnStartup = QStringLiteral("yes");
        p.gvarPrintDialogs = QStringLiteral("yes");
        p.gstrSaveChangesMode = QStringLiteral("prompt");
        p.gstrDefaultEditor = QStringLiteral("Notepad");
        p.gstrOtherPath = QStringLiteral("n/a");
        p.gstrLocationPath = os::documentsFolder();
        SaveRegSettings();
    }

    if (readSetting(QStringLiteral("RefreshOnStartup")) == QLatin1String("yes")) {
        p.gstrRefreshOnStartup = QStringLiteral("yes");
        routine.step([&] { RefreshFolders(); });
    } else {
        p.gstrRefreshOnStartup = QStringLiteral("no");
        for (const app::Command command : kRefreshCommands)
            setCommandEnabled(command, false);
    }

    const QString mode = readSetting(QStringLiteral("SaveChangesMode"));
    if (mode == QLatin1String("save") || mode == QLatin1String("discard") || mode == QLatin1String("prompt"))
        p.gstrSaveChangesMode = mode;
    p.gstrDefaultEditor = readSetting(QStringLiteral("DefaultEditor"));
    p.gstrOtherPath = readSetting(QStringLiteral("OtherPath"));
    p.gstrLocationPath = readSetting(QStringLiteral("LocationPath"));
    p.gvarPrintDialogs =
        basRegistry::QueryValue(registry::HKEY_CURRENT_USER, kSettingsKey, QStringLiteral("PrintDialogs"));
    if (p.gstrLocationPath.isEmpty())
        p.gstrLocationPath = os::documentsFolder();

    // The views, each restored from its yes-or-no value.
    const bool folders = app::isYes(readSetting(QStringLiteral("ViewFolders")));
    action(app::Command::ViewFolderTree)->setChecked(folders);
    action(app::Command::ToolViewFolder)->setChecked(folders);
    treOutl->setVisible(folders);
    const bool preview = app::isYes(readSetting(QStringLiteral("ViewPreview")));
    action(app::Command::ViewPreview)->setChecked(preview);
    action(app::Command::ToolViewPreview)->setChecked(preview);
    txtPreview->setVisible(preview);
    const bool toolbar = app::isYes(readSetting(QStringLiteral("ViewToolbar")));
    action(app::Command::ViewToolbar)->setChecked(toolbar);
    tbToolBar->setVisible(toolbar);
    const bool statusbar = app::isYes(readSetting(QStringLiteral("ViewStatusBar")));
    action(app::Command::ViewStatusBar)->setChecked(statusbar);
    statusBar()->setVisible(statusbar);

    // The pane's font.
    QFont font = txtPreview->font();
    const QString fontName = readSetting(QStringLiteral("FontName"));
    if (!fontName.isEmpty())
        font.setFamily(fontName);
    const double size = app::leadingNumber(readSetting(QStringLiteral("FontSize")));
    if (size > 0)
        font.setPointSizeF(size);
    font.setBold(app::isYes(readSetting(QStringLiteral("FontBold"))));
    font.setItalic(app::isYes(readSetting(QStringLiteral("FontItalic"))));
    txtPreview->setFont(font);

    if (app::isYes(readSetting(QStringLiteral("Maximized"))))
        setWindowState(windowState() | Qt::WindowMaximized);
    Form_Resize();
    return true;
}

void frmMain::setCaption(const QString &text)
{
    bool readOnly = false;
    try {
        readOnly = m_program.gobjSession && m_program.gobjSession->ReadOnly();
    } catch (const com::ComError &) {
    }
    setWindowTitle(text +
                   (readOnly ? QStringLiteral(" - Sorrelin (read-only)") : QStringLiteral(" - Sorrelin")));
}

void frmMain::SaveRegSettings()
{
    app::Program &p = m_program;
    com::ResumeNext routine;
    const auto write = [&](const QString &name, const QString &value) {
        routine.step([&] {
            basRegistry::SetKeyValue(registry::HKEY_CURRENT_USER, kSettingsKey, name, value,
                                     registry::REG_SZ);
        });
    };
    const QFont font = txtPreview->font();
    write(QStringLiteral("FontName"), font.family());
    write(QStringLiteral("FontSize"), app::formatFontSize(font.pointSizeF()));
    write(QStringLiteral("FontBold"), app::yesNo(font.bold()));
    write(QStringLiteral("FontItalic"), app::yesNo(font.italic()));
    write(QStringLiteral("Maximized"), app::yesNo(isMaximized() && !isMinimized()));
    write(QStringLiteral("ViewToolbar"), app::yesNo(action(app::Command::ViewToolbar)->isChecked()));
    write(QStringLiteral("ViewStatusBar"), app::yesNo(action(app::Command::ViewStatusBar)->isChecked()));
    write(QStringLiteral("ViewPreview"), app::yesNo(action(app::Command::ViewPreview)->isChecked()));
    write(QStringLiteral("ViewFolders"), app::yesNo(action(app::Command::ViewFolderTree)->isChecked()));
    if (p.gvarPrintDialogs.isNull() || p.gvarPrintDialogs.toString().isEmpty())
        p.gvarPrintDialogs = QStringLiteral("yes");
    write(QStringLiteral("PrintDialogs"), p.gvarPrintDialogs.toString());
    write(QStringLiteral("RefreshOnStartup"), p.gstrRefreshOnStartup);
    write(QStringLiteral("SaveChangesMode"), p.gstrSaveChangesMode);
    write(QStringLiteral("DefaultEditor"), p.gstrDefaultEditor);
    write(QStringLiteral("OtherPath"), p.gstrOtherPath);
    if (p.gstrLocationPath.isEmpty())
        p.gstrLocationPath = os::documentsFolder();
    write(QStringLiteral("LocationPath"), p.gstrLocationPath);
    if (routine.failed())
        prompter().msgBox(
            QStringLiteral("An error occurred while saving current user settings to the registry."),
            ui::Buttons::OK, ui::Icon::Information, 1, QString());
}

void frmMain::Form_QueryUnload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    app::Program &p = m_program;
    com::ResumeNext routine;
    SetHourglass(true);
    routine.step([&] { SaveRegSettings(); });
    routine.step([&] { delete folderForm.data(); });
    routine.step([&] { p.gobjEvents.reset(); });
    routine.step([&] { p.gobjSession->Logoff(); });
    routine.step([&] { p.gobjSession.reset(); });
    routine.step([&] { p.gobjNameSpace.reset(); });
    routine.step([&] { p.gobjOutlook.reset(); });
    SetHourglass(false);
}
