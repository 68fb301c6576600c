#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

class QLineEdit;
class QListWidget;
class QTabWidget;
class QTextBrowser;

namespace os {

/// The folder of the help pages, in the program's shared files.
QString helpFolder();

/// One help page: its file name, its title and its text without markup.
struct HelpPage {
    QString file;
    QString title;
    QString text;
};

/// Every page of the help folder, by file name.
QList<HelpPage> helpPages();

/// The pages whose text holds every word of `words` (any case), in the
/// order of `pages`.
QList<HelpPage> searchHelp(const QList<HelpPage> &pages, const QString &words);

/// The help window: contents, index and full-text search panes on the left,
/// the page on the right. Pages are HTML files of the help folder:
/// contents.html, index.html (a list of links, one keyword each) and
/// topic-NUMBER.html for each help context. It is a window of its own, as a
/// separate help program would be: no dialog of the program blocks it, and
/// it outlives the window it was opened from. Esc closes it.
class HelpViewer : public QWidget {
    Q_OBJECT

public:
    /// The open viewer, or a new one.
    static HelpViewer *instance();

    void showContents();
    void showIndex();
    /// The topic of a help context; the contents when there is no such page.
    void showTopic(int context);
    /// A page of the help folder, "page.html" or "page.html#anchor".
    void showTarget(const QString &target);

protected:
    bool event(QEvent *event) override;

private:
    HelpViewer();
    void showPage(const QString &target, const QString &view, int context);
    void filterIndex(const QString &text);
    void search(const QString &words);
    /// Keeps the window out of the reach of the modal dialog that is up, by
    /// standing beside it (a transient of it) rather than behind it.
    void followModal();

    QList<HelpPage> m_pages;
    QTabWidget *m_panes = nullptr;
    QTextBrowser *m_contents = nullptr;
    QLineEdit *m_search = nullptr;
    QListWidget *m_index = nullptr;
    QLineEdit *m_find = nullptr;
    QListWidget *m_found = nullptr;
    QTextBrowser *m_page = nullptr;
    QLineEdit *m_view = nullptr;
    QLineEdit *m_context = nullptr;
};

/// F1 anywhere in the program: the topic of the control with the focus, or
/// of the nearest parent in its window that has one (its `HelpTopic`).
/// Listens to the whole application while it lives, and closes the help
/// window when it ends.
class HelpKey : public QObject {
    Q_OBJECT

public:
    explicit HelpKey(QObject *parent);
    ~HelpKey() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace os
