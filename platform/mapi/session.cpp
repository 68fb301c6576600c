#include "platform/mapi/session.h"

#include "platform/mapi/profiles.h"
#include "platform/ui/prompter.h"

namespace mapi {

InfoStore::InfoStore(StatePtr state, qint64 row, QString id, QString name, QString provider)
    : m_state(std::move(state)), m_row(row), m_id(std::move(id)), m_name(std::move(name)),
      m_provider(std::move(provider))
{
}

Folder InfoStore::RootFolder() const
{
    const QVector<Folder> roots =
        queryFolders(m_state, QStringLiteral("f.store = ? AND f.parent IS NULL"), {m_row});
    if (roots.isEmpty())
        throw notFound(QStringLiteral("The store %1 has no root folder.").arg(m_name));
    return roots.constFirst();
}

Session::Session(ui::Prompter &prompter) : m_prompter(prompter), m_state(std::make_shared<SessionState>()) {}

Session::~Session() = default;

void Session::Logon()
{
    ProfileChoice choice = profileChoice();
    const QString name = m_prompter.chooseProfile(choice.dialog);
    if (name.isEmpty())
        throw com::ComError(com::err::UserCancel, QStringLiteral("Collaboration Data Objects"),
                            QStringLiteral("[Collaboration Data Objects - [MAPI_E_USER_CANCEL(80040113)]]"));
    if (choice.dialog.offerDemo && name == choice.dialog.demoProfile)
        makeDemoProfile(name);
    Logon(name);
}

void Session::Logon(const QString &profileName)
{
    const Profile profile = readProfile(profileName);
    LogonStore(profile.store, profile.user);
    m_state->profile = profileName;
}

void Session::LogonStore(const QString &storePath, const QString &user)
{
    auto state = std::make_shared<SessionState>();
    state->db = store::Database::open(storePath);
    state->user = user.isEmpty() ? state->db->meta(QStringLiteral("user")) : user;
    state->profile = state->db->meta(QStringLiteral("profile"));
    state->loggedOn = true;
    m_state = std::move(state);
}

void Session::Logoff()
{
    m_state->check();
    m_state->loggedOn = false;
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
        m_state->query(QStringLiteral("SELECT id, store_id, name, provider FROM stores ORDER BY seq, id"));
    m_state->db->exec(q);
    QVector<InfoStore> stores;
    while (q.next())
        stores.append(InfoStore(m_state, q.value(0).toLongLong(), q.value(1).toString(),
                                q.value(2).toString(), q.value(3).toString()));
    return stores;
}

Folder Session::GetFolder(const QString &id, const QString &storeId) const
{
    m_state->check();
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
    m_state->check();
    QSqlQuery &q = m_state->query(
        storeId.isEmpty()
            ? QStringLiteral("SELECT m.id FROM messages m WHERE m.entry_id = ?")
            : QStringLiteral("SELECT m.id FROM messages m JOIN folders f ON f.id = m.folder"
                             " JOIN stores s ON s.id = f.store WHERE m.entry_id = ? AND s.store_id = ?"));
    q.addBindValue(id);
    if (!storeId.isEmpty())
        q.addBindValue(storeId);
    m_state->db->exec(q);
    if (!q.next())
        throw notFound(QStringLiteral("No message has the identifier %1.").arg(id));
    const qint64 row = q.value(0).toLongLong();
    return loadMessage(m_state, row);
}

} // namespace mapi
