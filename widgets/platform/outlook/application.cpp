#include "platform/outlook/application.h"

#include "platform/events/events.h"
#include "platform/mapi/profiles.h"
#include "platform/outlook/mailitem.h"
#include "platform/outlook/olwindows.h"
#include "platform/ui/prompter.h"

#include <QApplication>

namespace outlook {

namespace {

const QString kSource = QStringLiteral("Microsoft Outlook");

com::ComError outlookError(const QString &text)
{
    return com::ComError(com::err::CallFailed, kSource, text);
}

QString storeName(mapi::Session &session, const mapi::Folder &folder)
{
    for (const mapi::InfoStore &store : session.InfoStores())
        if (store.ID() == folder.StoreID())
            return store.Name();
    return QString();
}

bool isTop(const mapi::Folder &folder)
{
    return folder.parentRow() == 0;
}

} // namespace

MAPIFolder::MAPIFolder(Application &app, mapi::Session &session, mapi::Folder folder)
    : m_app(&app), m_session(&session), m_folder(std::move(folder))
{
}

QString MAPIFolder::Name() const
{
    return isTop(m_folder) ? storeName(*m_session, m_folder) : m_folder.Name();
}

MAPIFolder MAPIFolder::Parent() const
{
    if (isTop(m_folder))
        throw com::ComError(13, kSource, QStringLiteral("Type mismatch"));
    const QVector<mapi::Folder> parents =
        mapi::queryFolders(m_folder.state(), QStringLiteral("f.id = ?"), {m_folder.parentRow()});
    if (parents.isEmpty())
        throw outlookError(QStringLiteral("The folder above %1 could not be found.").arg(m_folder.Name()));
    return MAPIFolder(*m_app, *m_session, parents.constFirst());
}

void MAPIFolder::Display()
{
    m_app->displayed(*this, *m_session, m_folder);
}

void CommandBarControl::Execute()
{
    if (m_id == 2502)
        m_app.showFolderProperties();
}

CommandBarControl CommandBars::FindControl(const QVariant &type, int id)
{
    Q_UNUSED(type);
    if (id != 2502)
        throw outlookError(QStringLiteral("No command has the id %1.").arg(id));
    return CommandBarControl(m_app, id);
}

NameSpace::NameSpace(Application &app, ui::Prompter &prompter) : m_app(app), m_prompter(prompter) {}

void NameSpace::Logon(const QString &profile, const QString &password, bool showDialog, bool newSession)
{
    Q_UNUSED(password);
    Q_UNUSED(newSession);
    auto session = std::make_unique<mapi::Session>(m_prompter);
    if (showDialog)
        session->Logon();
    else
        session->Logon(profile);
    m_session = std::move(session);
    m_app.loggedOn(m_session->MAPIOBJECT());
}

MAPIFolder NameSpace::GetFolderFromID(const QString &entryId, const QString &storeId)
{
    if (!m_session)
        throw outlookError(QStringLiteral("The namespace is not logged on."));
    return MAPIFolder(m_app, *m_session, m_session->GetFolder(entryId, storeId));
}

Application::Application(ui::Prompter &prompter) : m_prompter(prompter) {}

Application::~Application()
{
    delete m_window.data();
}

std::unique_ptr<NameSpace> Application::GetNamespace(const QString &type)
{
    if (type.compare(QLatin1String("MAPI"), Qt::CaseInsensitive) != 0)
        throw outlookError(QStringLiteral("Only the MAPI namespace is supported."));
    return std::make_unique<NameSpace>(*this, m_prompter);
}

std::unique_ptr<MailItem> Application::CreateItem(int type)
{
    if (type != 0)
        throw outlookError(QStringLiteral("Only mail items can be made."));
    return std::make_unique<MailItem>(m_mailState);
}

QString Application::Version() const
{
    return QStringLiteral("8.5.0.4000");
}

Explorer *Application::ActiveExplorer()
{
    if (!m_explorer)
        throw outlookError(QStringLiteral("No folder window is open."));
    return m_explorer.get();
}

void Application::displayed(const MAPIFolder &folder, mapi::Session &session, const mapi::Folder &raw)
{
    // The folder's path as the mail client names it, from the store down.
    QString path = QLatin1Char('\\') + folder.Name();
    try {
        for (MAPIFolder f = folder.Parent();; f = f.Parent())
            path.prepend(QLatin1Char('\\') + f.Name());
    } catch (const com::ComError &) {
    }
    QList<ItemRow> rows;
    mapi::MessageList messages = raw.Messages();
    for (const mapi::Message &m : messages)
        rows.append(ItemRow{m.Subject(),
                            QString::fromLatin1(m.Fields(mapi::PR_SENDER_NAME).Value().toByteArray()),
                            QLocale().toString(m.TimeReceived(), QLocale::ShortFormat), m.Class()});
    delete m_window.data();
    m_window = new ExplorerWindow(folder.Name(), path, rows); // deletes itself when closed
    m_window->show();
    m_explorer = std::make_unique<Explorer>(*this);
    m_current = raw;
    m_currentSession = &session;
    m_currentPath = path;
    m_currentName = folder.Name();
}

void Application::showFolderProperties()
{
    if (!m_current || !m_currentSession)
        return;
    FolderFacts facts;
    facts.name = m_currentName;
    facts.path = m_currentPath;
    facts.items = m_current->Messages().Count();
    facts.hiddenItems = m_current->HiddenMessages().Count();
    facts.subfolders = m_current->Folders().Count();
    facts.access = m_current->Fields(mapi::PR_ACCESS).toInt();
    if (m_current->row().eventSource)
        facts.eventSourceHost = m_current->row().host;
    FolderPropertiesDialog dialog(facts, m_window.data());
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.exec();
}

} // namespace outlook
