// The "Installation" tab: a script file becomes an agent in one or many
// folders at once.
#include "agents/agentmodel.h"
#include "agents/frmschedule.h"
#include "agents/schedule.h"
#include "agents/schedulewrite.h"
#include "app/eventlog.h"
#include "app/frmmain.h"
#include "app/generaldate.h"
#include "app/leastsize.h"
#include "app/program.h"
#include "navigation/frmfolder.h"
#include "navigation/nodekinds.h"
#include "platform/com/routine.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/controls/sstree.h"
#include "platform/events/guid.h"
#include "platform/os/applog.h"

#include <QCheckBox>
#include <QDateTime>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>

using controls::SSTree;

namespace {

const QString kScriptFilter = QStringLiteral("Text Files (*.txt)|*.txt|VBScript Files"
                                             "(*.vbs)|*.vbs|All Files (*.*)|*.*");

QLabel *label(QWidget *parent, const char *name, const char *caption, int x, int y)
{
    auto *l = new QLabel(QString::fromLatin1(caption), parent);
    l->setObjectName(QString::fromLatin1(name));
    l->move(x, y);
    return l;
}

QPushButton *button(QWidget *parent, const char *name, const char *caption, const QRect &geometry)
{
    auto *b = new QPushButton(QString::fromLatin1(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setGeometry(geometry);
    return b;
}

QCheckBox *check(QWidget *parent, const char *name, const char *caption, int x, int y)
{
    auto *c = new QCheckBox(QString::fromLatin1(caption), parent);
    c->setObjectName(QString::fromLatin1(name));
    c->move(x, y);
    return c;
}

} // namespace

void frmMain::createInstallTab(QWidget *page)
{
    label(page, "lblSource", "Source Script:", 8, 12);
    txtSource = new QLineEdit(page);
    txtSource->setObjectName(QStringLiteral("txtSource"));
    txtSource->setGeometry(100, 8, 230, 22);
    txtSource->setEnabled(false);
    cmdScript = button(page, "cmdScript", "Select Sourc&e Script", QRect(336, 7, 150, 24));
    label(page, "lblAgentName", "Agent Name:", 8, 40);
    txtAgentName = new QLineEdit(page);
    txtAgentName->setObjectName(QStringLiteral("txtAgentName"));
    txtAgentName->setGeometry(100, 36, 230, 22);
    txtAgentName->setEnabled(false);

    label(page, "lblTarget", "Target Folders:", 8, 68);
    SSDBTarget = new controls::SSDBGrid(page);
    SSDBTarget->setObjectName(QStringLiteral("SSDBTarget"));
    SSDBTarget->setGeometry(8, 86, 322, 90);
    SSDBTarget->setColumns({QStringLiteral("Folder"), QStringLiteral("EntryID"), QStringLiteral("StoreID")},
                           {4800, 0, 0});
    cmdFolder = button(page, "cmdFolder", "Select Target &Folder", QRect(336, 86, 150, 24));
    chkMultiple = check(page, "chkMultiple", "&Multiple Selection", 336, 116);
    chkMultiple->setChecked(true);
    chkMultiple->hide();

    fraWhen = new QGroupBox(QStringLiteral("&When the following events occur:"), page);
    fraWhen->setObjectName(QStringLiteral("fraWhen"));
    fraWhen->setGeometry(8, 184, 322, 118);
    chkScheduled = check(fraWhen, "chkScheduled", "A &scheduled event occurs", 10, 22);
    chkNew = check(fraWhen, "chkNew", "When a &new item is posted in this folder", 10, 44);
    chkUpdate = check(fraWhen, "chkUpdate", "An item is &changed in this folder", 10, 66);
    chkDelete = check(fraWhen, "chkDelete", "An item is &deleted in this folder", 10, 88);
    cmdSchedule = button(page, "cmdSchedule", "Sc&hedule...", QRect(336, 198, 150, 24));
    cmdSchedule->setEnabled(false);
    chkRouting = check(page, "chkRouting", "&Routing Agent", 336, 232);
    cmdInstall = button(page, "cmdInstall", "&Install Agent", QRect(336, 272, 150, 28));

    connect(cmdScript, &QPushButton::clicked, this, &frmMain::cmdScript_Click);
    connect(cmdFolder, &QPushButton::clicked, this, &frmMain::cmdFolder_Click);
    connect(cmdSchedule, &QPushButton::clicked, this, &frmMain::cmdSchedule_Click);
    connect(cmdInstall, &QPushButton::clicked, this, &frmMain::cmdInstall_Click);
    connect(chkRouting, &QCheckBox::toggled, this, &frmMain::chkRouting_Click);
    connect(chkScheduled, &QCheckBox::toggled, this, &frmMain::chkScheduled_Click);
    app::holdControls(page);
}

void frmMain::cmdScript_Click()
{
    txtSource->clear();
    txtAgentName->clear();
    const bool routing = chkRouting->isChecked();
    CommonDialog1.filter = kScriptFilter;
    CommonDialog1.filterIndex = 2;
    CommonDialog1.flags = 4100;
    CommonDialog1.cancelError = true;
    CommonDialog1.initDir = m_program.gstrLocationPath;
    CommonDialog1.dialogTitle = routing ? QStringLiteral("Open Exchange Routing Agent")
                                        : QStringLiteral("Open Exchange Scripting Agent");
    CommonDialog1.fileName = routing ? QStringLiteral("Routing.vbs") : QStringLiteral("New Agent.vbs");
    if (!prompter().showOpen(CommonDialog1))
        return;
    txtSource->setText(CommonDialog1.fileName);
    if (txtSource->text().isEmpty())
        return;
    txtAgentName->setText(prompter().inputBox(
        QStringLiteral("Agent Name:"),
        routing ? QStringLiteral("Agent Name for Route") : QStringLiteral("Agent Name for Script"),
        routing ? QStringLiteral("Routing Agent") : QStringLiteral("New Agent")));
    if (txtAgentName->text().isEmpty())
        txtSource->clear();
}

void frmMain::chkRouting_Click()
{
    if (chkRouting->isChecked()) {
        for (QCheckBox *box : {chkNew, chkUpdate, chkScheduled, chkDelete})
            box->setChecked(true);
        fraWhen->setEnabled(false);
    } else {
        fraWhen->setEnabled(true);
        for (QCheckBox *box : {chkNew, chkUpdate, chkScheduled, chkDelete})
            box->setChecked(false);
    }
}

void frmMain::chkScheduled_Click()
{
    if (chkScheduled->isChecked()) {
        agents::schedule() = agents::defaultSchedule();
        cmdSchedule->setEnabled(true);
    } else {
        cmdSchedule->setEnabled(false);
    }
}

void frmMain::cmdSchedule_Click()
{
    com::ResumeNext routine;
    routine.step([&] {
        frmSchedule dialog(prompter(), this);
        dialog.exec();
    });
}

void frmMain::cmdFolder_Click()
{
    if (!folderForm)
        folderForm = new frmFolder(prompter(), this);
    SSDBTarget->RemoveAll();
    folderForm->treOutl->setMultiSelect(true);
    folderForm->setWindowTitle(QStringLiteral("Select Multiple Folders"));
    StatBar(QStringLiteral("Use Ctrl + Click to select a range of folders"));
    folderForm->lblEntryID->clear();
    folderForm->lblStoreID->clear();
    folderForm->exec();
    if (folderForm->lblEntryID->text().isEmpty() && folderForm->lblStoreID->text().isEmpty()) {
        StatBar(QString());
        return;
    }
    const QString user = currentUser();
    for (QTreeWidgetItem *node : folderForm->treOutl->selectedNodes()) {
        const QString path = StripCurrentUser(SSTree::fullPath(node));
        switch (SSTree::image(node)) {
        case navigation::kImageStore:
        case navigation::kImageRoot:
            prompter().msgBox(QStringLiteral("Agents cannot be installed in folder\r") + path,
                              ui::Buttons::OK, ui::Icon::Stop, 1, QString());
            break;
        case navigation::kImageFolder:
        case navigation::kImageFolderWithAgents:
            SSDBTarget->AddItem(path + QLatin1Char('\t') + SSTree::key(node) + QLatin1Char('\t') +
                                SSTree::tag(node));
            break;
        default:
            if (navigation::isUnderFavorites(SSTree::fullPath(node), user))
                prompter().msgBox(
                    QStringLiteral("Cannot install agents under Favorites.\rSelect the source folder."),
                    ui::Buttons::OK, ui::Icon::Stop, 1, QString());
            else
                prompter().msgBox(
                    QStringLiteral("You do not have permissions to install agents in folder\r") + path,
                    ui::Buttons::OK, ui::Icon::Stop, 1, QString());
            break;
        }
    }
    StatBar(QString());
}

void frmMain::cmdInstall_Click()
{
    const int rows = SSDBTarget->Rows();
    // A routing agent's fields are not checked.
    if (!chkRouting->isChecked() &&
        (txtSource->text().isEmpty() || txtAgentName->text().isEmpty() || rows == 0)) {
        prompter().msgBox(QStringLiteral("Must specify source script, agent name, and target folder(s)."),
                          ui::Buttons::OK, ui::Icon::Stop, 1, QString());
        return;
    }
    const QString path = SSDBTarget->cellText(0, 0);
    QString question = QStringLiteral("Install ") + txtSource->text().toLower() +
                       QStringLiteral("\ras agent '") + txtAgentName->text() + QStringLiteral("' in \r") +
                       path;
    question += rows > 1 ? QStringLiteral("\rand additional selected folders?") : QStringLiteral("?");
    if (!chkScheduled->isChecked() && !chkNew->isChecked() && !chkUpdate->isChecked() &&
        !chkDelete->isChecked()) {
        if (prompter().msgBox(
                QStringLiteral("You have not selected any events to run for this agent. Continue?"),
                ui::Buttons::YesNo, ui::Icon::Question, 2, QString()) == ui::Answer::No)
            return;
    }
    if (prompter().msgBox(question, ui::Buttons::YesNo, ui::Icon::Question, 1, QString()) == ui::Answer::No)
        return;
    StatBar(QStringLiteral("Installing agents"), true);
    bool failed = false;
    for (int row = 0; row < rows; ++row)
        failed |= InstallScript(txtSource->text(), txtAgentName->text(), SSDBTarget->cellText(row, 1),
                                SSDBTarget->cellText(row, 2), SSDBTarget->cellText(row, 0));
    RefreshFolders();
    StatBar(QString());
    if (!failed)
        prompter().msgBox(QStringLiteral("Agent installed OK in target folder(s)."), ui::Buttons::OK,
                          ui::Icon::Information, 1, QString());
    else
        prompter().msgBox(QStringLiteral("Errors occurred during agent installation.\r"
                                         "Please consult the application error log."),
                          ui::Buttons::OK, ui::Icon::Stop, 1, QString());
}

bool frmMain::InstallScript(const QString &strFilePath, const QString &strAgentName, const QString &entryId,
                            const QString &storeId, const QString &targetPath)
{
    const bool ok = com::withHandler(
        [&] {
            mapi::Session &session = *m_program.gobjSession;
            // The binding, its two messages and the script land together.
            const auto transaction = session.BeginTransaction();
            const mapi::Folder folder = session.GetFolder(entryId, storeId);
            events::EventSource source = m_program.gobjEvents->GetEventSource(folder, true);
            events::Binding binding = source.Bindings().Add();
            if (chkScheduled->checkState() == Qt::Checked)
                agents::writeSchedule(binding);
            binding.setName(strAgentName);
            const int16_t mask = chkRouting->isChecked()
                                     ? int16_t{events::kEventAll}
                                     : events::eventMask(chkScheduled->isChecked(), chkNew->isChecked(),
                                                         chkUpdate->isChecked(), chkDelete->isChecked());
            binding.setActive(mask != 0);
            binding.setEventMask(mask);
            binding.setHandlerClassID(chkRouting->isChecked() ? events::kRoutingHandler
                                                              : events::kScriptHandler);
            binding.SaveChanges();
            mapi::Message message = session.GetMessage(binding.EntryID(), QString());
            // The file is read anew for every folder, byte for byte.
            QFile file(strFilePath);
            if (!file.open(QIODevice::ReadOnly))
                throw com::ComError(com::err::FileNotFound, QStringLiteral("Sorrelin"),
                                    QStringLiteral("File not found: %1").arg(strFilePath));
            message.Fields(mapi::PR_SCRIPT).setValue(file.readAll());
            message.Update();
            message.setSubject(strAgentName);
            message.Update();
            binding.SaveCustomChanges(message);
            source.SaveChanges();
            transaction->commit();
            app::logEvent(m_program,
                          generalDate(QDateTime::currentDateTime()) + QLatin1Char(' ') +
                              txtAgentName->text() + QStringLiteral(" installed in ") + targetPath,
                          os::kLogInformation);
        },
        [&](const com::ComError &e) {
            app::logEvent(m_program,
                          generalDate(QDateTime::currentDateTime()) + QLatin1Char(' ') +
                              txtAgentName->text() + QStringLiteral(" installation failure. ") + e.source() +
                              QStringLiteral(" Error#: ") + QString::number(e.number()) +
                              QStringLiteral(" Description: ") + e.description(),
                          os::kLogError);
        });
    return !ok;
}
