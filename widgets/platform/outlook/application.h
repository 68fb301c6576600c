#pragma once

#include "platform/mapi/session.h"

#include <QPointer>
#include <QString>

#include <memory>
#include <optional>

namespace ui {
class Prompter;
}

namespace outlook {

class Application;
class ExplorerWindow;
class MailItem;

/// A folder as the mail client sees it: the store's top folder carries the
/// store's name, and its parent is no folder.
class MAPIFolder {
public:
    MAPIFolder(Application &app, mapi::Session &session, mapi::Folder folder);

    QString Name() const;
    QString EntryID() const { return m_folder.ID(); }
    QString StoreID() const { return m_folder.StoreID(); }
    /// The folder above; raises at the store's top folder, whose parent is
    /// the namespace.
    MAPIFolder Parent() const;
    /// Opens a window of the mail client on the folder.
    void Display();

private:
    Application *m_app;
    mapi::Session *m_session;
    mapi::Folder m_folder;
};

/// A command of the mail client's window, found by its id.
class CommandBarControl {
public:
    CommandBarControl(Application &app, int id) : m_app(app), m_id(id) {}
    void Execute();

private:
    Application &m_app;
    int m_id;
};

class CommandBars {
public:
    explicit CommandBars(Application &app) : m_app(app) {}
    /// Raises when no command has that id.
    CommandBarControl FindControl(const QVariant &type, int id);

private:
    Application &m_app;
};

/// The window of the last `Display`.
class Explorer {
public:
    explicit Explorer(Application &app) : m_app(app) {}
    outlook::CommandBars CommandBars() { return outlook::CommandBars(m_app); }

private:
    Application &m_app;
};

/// The mail client's "MAPI" namespace, logged on to a profile of its own.
class NameSpace {
public:
    NameSpace(Application &app, ui::Prompter &prompter);

    /// Logs on to `profile`; with `showDialog` the profile dialog decides.
    void Logon(const QString &profile, const QString &password, bool showDialog, bool newSession);
    MAPIFolder GetFolderFromID(const QString &entryId, const QString &storeId);

private:
    Application &m_app;
    ui::Prompter &m_prompter;
    std::unique_ptr<mapi::Session> m_session;
};

/// The mail client.
class Application {
public:
    explicit Application(ui::Prompter &prompter);
    ~Application();

    std::unique_ptr<NameSpace> GetNamespace(const QString &type);
    /// A new item of a type; only 0, a mail item, is made.
    std::unique_ptr<MailItem> CreateItem(int type);
    QString Version() const;
    /// The window of the last `Display`; raises when there is none.
    Explorer *ActiveExplorer();

    // For the folder objects.
    void displayed(const MAPIFolder &folder, mapi::Session &session, const mapi::Folder &raw);
    void showFolderProperties();
    /// The namespace's session, where new mail items are filed.
    void loggedOn(mapi::StatePtr state) { m_mailState = std::move(state); }

private:
    ui::Prompter &m_prompter;
    std::unique_ptr<Explorer> m_explorer;
    QPointer<ExplorerWindow> m_window;
    std::optional<mapi::Folder> m_current;
    mapi::Session *m_currentSession = nullptr;
    QString m_currentPath;
    QString m_currentName;
    mapi::StatePtr m_mailState;
};

} // namespace outlook
