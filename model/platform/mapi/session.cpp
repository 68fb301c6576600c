#include "platform/mapi/session.h"

#include "platform/mapi/messagedata.h"
#include "platform/mapi/profiles.h"
#include "platform/store/storewatch.h"
#include "platform/ui/prompter.h"

namespace mapi {

Session::Session(ui::Prompter &prompter) : m_prompter(prompter), m_state(std::make_shared<SessionState>()) {}

Session::~Session() = default;

void Session::Logon()
{
    const ui::ProfileChoice choice = profileChoice();
    const QString name = m_prompter.chooseProfile(choice);
    if (name.isEmpty())
        throw com::ComError(com::err::UserCancel, kCdoSource,
                            QStringLiteral("[Collaboration Data Objects - [MAPI_E_USER_CANCEL(80040113)]]"
                                           " The user cancelled the logon."));
    // A profile made in the dialog under the demo's name is the user's own.
    if (choice.offerDemo && name == choice.demoProfile && profileChoice().offerDemo)
        makeDemoProfile(name);
    Logon(name);
}

void Session::Logon(const QString &profileName)
{
    const Profile profile = readProfile(profileName);
    LogonStore(profile.store, profile.user);
    m_state->profile = profile.name;
}

void Session::LogonStore(const QString &storePath, const QString &user, store::Database::Access access)
{
    auto state = std::make_shared<SessionState>();
    state->db = store::Database::open(storePath, access);
    state->user = user.isEmpty() ? state->db->meta(QStringLiteral("user")) : user;
    state->profile = state->db->meta(QStringLiteral("profile"));
    state->loggedOn = true;
    m_state = std::move(state);
}

bool Session::ReadOnly() const
{
    m_state->check();
    return m_state->db->readOnly();
}

void Session::Logoff()
{
    m_state->check();
    m_state->close();
}

std::unique_ptr<store::Database::Transaction> Session::BeginTransaction()
{
    m_state->check();
    return std::make_unique<store::Database::Transaction>(*m_state->db);
}

std::unique_ptr<store::Database::Transaction> Session::BeginRead()
{
    m_state->check();
    return std::make_unique<store::Database::Transaction>(*m_state->db,
                                                          store::Database::Transaction::Kind::Read);
}

store::AgentChange Session::AgentChange(const QString &entryId) const
{
    m_state->check();
    return store::agentChange(*m_state->db, entryId);
}

store::AgentChange Session::HoldAgentChange(const QString &entryId)
{
    m_state->check();
    return store::holdAgentChange(*m_state->db, entryId);
}

void Session::SetBusyObserver(store::BusyObserver observer)
{
    m_state->check();
    m_state->db->setBusyObserver(std::move(observer));
}

void Session::SetLossObserver(store::LossObserver observer)
{
    m_state->check();
    m_state->db->setLossObserver(std::move(observer));
}

void Session::RetryLostStore()
{
    if (m_state && m_state->db)
        m_state->db->retryLostConnection();
}

std::unique_ptr<store::StoreWatch> Session::WatchStore() const
{
    m_state->check();
    return std::make_unique<store::StoreWatch>(*m_state->db);
}

QString Session::CurrentUser() const
{
    m_state->check();
    return m_state->user;
}

QString Session::Name() const
{
    m_state->check();
    return m_state->profile;
}

QString Session::Version() const
{
    return QStringLiteral("1.21");
}

StatePtr Session::MAPIOBJECT() const
{
    m_state->check();
    return m_state;
}

QVector<InfoStore> Session::InfoStores() const
{
    QSqlQuery &q =
        m_state->run(QStringLiteral("SELECT id, store_id, name, provider FROM stores ORDER BY seq, id"), {});
    QVector<InfoStore> stores;
    while (q.next())
        stores.append(InfoStore(m_state, q.value(0).toLongLong(), q.value(1).toString(),
                                q.value(2).toString(), q.value(3).toString()));
    return stores;
}

Folder Session::GetFolder(const QString &id, const QString &storeId) const
{
    const QVector<Folder> found =
        storeId.isEmpty()
            ? queryFolders(m_state, QStringLiteral("f.entry_id = ?"), {id})
            : queryFolders(m_state, QStringLiteral("f.entry_id = ? AND s.store_id = ?"), {id, storeId});
    if (found.isEmpty())
        throw notFound(QStringLiteral("No folder has the identifier %1.").arg(id));
    return found.constFirst();
}

Message Session::GetMessage(const QString &id, const QString &storeId) const
{
    QSqlQuery &q =
        storeId.isEmpty()
            ? m_state->run(messageSelect() + QStringLiteral(" WHERE m.entry_id = ?"), {id})
            : m_state->run(messageSelect() + QStringLiteral(" WHERE m.entry_id = ? AND s.store_id = ?"),
                           {id, storeId});
    if (!q.next())
        throw notFound(QStringLiteral("No message has the identifier %1.").arg(id));
    Message message(messageFromQuery(m_state, q));
    q.finish();
    return message;
}

} // namespace mapi
