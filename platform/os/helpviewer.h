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

/// The help window: a contents pane and an index pane with its search field
/// on the left, the page on the right. Pages are HTML files of the help
/// folder: contents.html, index.html (a list of links, one keyword each) and
/// topic-NUMBER.html for each help context.
class HelpViewer : public QWidget {
    Q_OBJECT

public:
    /// The open viewer, or a new one over the modal window that is up (so
    /// that it takes input while that window waits).
    static HelpViewer *instance();

    void showContents();
    void showIndex();
    /// The topic of a help context; the contents when there is no such page.
    void showTopic(int context);

private:
    explicit HelpViewer(QWidget *parent);
    void showPage(const QString &file, const QString &view, int context);
    void filterIndex(const QString &text);

    QTabWidget *m_panes = nullptr;
    QTextBrowser *m_contents = nullptr;
    QLineEdit *m_search = nullptr;
    QListWidget *m_index = nullptr;
    QTextBrowser *m_page = nullptr;
    QLineEdit *m_view = nullptr;
    QLineEdit *m_context = nullptr;
};

/// F1 anywhere in the program: the topic of the help context of the control
/// with the focus, or of the nearest parent that has one (the property
/// "helpContext"). Listens to the whole application while it lives.
class HelpKey : public QObject {
    Q_OBJECT

public:
    explicit HelpKey(QObject *parent);
    ~HelpKey() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace os
