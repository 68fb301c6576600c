#include "platform/os/helpviewer.h"

#include "platform/os/helptopic.h"
#include "platform/os/sharedir.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace os {

namespace {

QString readHelpFile(const QString &name)
{
    QFile file(helpFolder() + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QListWidget *pickList(QWidget *parent, const QString &name)
{
    auto *list = new QListWidget(parent);
    list->setObjectName(name);
    return list;
}

} // namespace

QString helpFolder()
{
    return shareDir() + QStringLiteral("/help");
}

QList<HelpPage> helpPages()
{
    QList<HelpPage> pages;
    const QStringList files =
        QDir(helpFolder()).entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name);
    for (const QString &file : files) {
        QTextDocument doc;
        doc.setHtml(readHelpFile(file));
        pages.append({file, doc.metaInformation(QTextDocument::DocumentTitle), doc.toPlainText()});
    }
    return pages;
}

QList<HelpPage> searchHelp(const QList<HelpPage> &pages, const QString &words)
{
    const QStringList wanted = words.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    QList<HelpPage> found;
    if (wanted.isEmpty())
        return found;
    for (const HelpPage &page : pages) {
        const bool all = std::all_of(wanted.begin(), wanted.end(), [&page](const QString &word) {
            return page.text.contains(word, Qt::CaseInsensitive);
        });
        if (all)
            found.append(page);
    }
    return found;
}

HelpViewer *HelpViewer::instance()
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *viewer = qobject_cast<HelpViewer *>(w))
            return viewer;
    return new HelpViewer; // deletes itself on close, and HelpKey closes it at the end
}

HelpViewer::HelpViewer() : QWidget(nullptr, Qt::Window)
{
    setObjectName(QStringLiteral("helpViewer"));
    setAttribute(Qt::WA_DeleteOnClose);
    // A help window left open doesn't keep the program running.
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QStringLiteral("Sorrelin Help"));
    // The index's keywords and the search need every page's words, not
    // only the topics': the contents and the index page are no results.
    for (const HelpPage &page : helpPages())
        if (page.file != QLatin1String("contents.html") && page.file != QLatin1String("index.html"))
            m_pages.append(page);

    m_panes = new QTabWidget(this);
    m_panes->setObjectName(QStringLiteral("panes"));
    m_contents = new QTextBrowser(m_panes);
    m_contents->setObjectName(QStringLiteral("contents"));
    m_contents->setOpenLinks(false);
    m_panes->addTab(m_contents, QStringLiteral("Contents"));
    auto *indexPane = new QWidget(m_panes);
    m_search = new QLineEdit(indexPane);
    m_search->setObjectName(QStringLiteral("search"));
    m_index = pickList(indexPane, QStringLiteral("index"));
    auto *indexLayout = new QVBoxLayout(indexPane);
    indexLayout->addWidget(m_search);
    indexLayout->addWidget(m_index);
    m_panes->addTab(indexPane, QStringLiteral("Index"));
    auto *findPane = new QWidget(m_panes);
    m_find = new QLineEdit(findPane);
    m_find->setObjectName(QStringLiteral("find"));
    m_find->setPlaceholderText(QStringLiteral("Words to find"));
    m_found = pickList(findPane, QStringLiteral("found"));
    auto *findLayout = new QVBoxLayout(findPane);
    findLayout->addWidget(m_find);
    findLayout->addWidget(m_found);
    m_panes->addTab(findPane, QStringLiteral("Search"));

    m_page = new QTextBrowser(this);
    m_page->setObjectName(QStringLiteral("page"));
    m_page->setSearchPaths({helpFolder()});
    // What the window shows, for scripts: the view and the topic's number.
    m_view = new QLineEdit(this);
    m_view->setObjectName(QStringLiteral("view"));
    m_context = new QLineEdit(this);
    m_context->setObjectName(QStringLiteral("context"));
    for (QLineEdit *e : {m_view, m_context}) {
        e->setReadOnly(true);
        e->hide();
    }

    auto *split = new QSplitter(this);
    split->addWidget(m_panes);
    split->addWidget(m_page);
    split->setStretchFactor(1, 3);
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(split);
    resize(760, 520);

    m_contents->setHtml(readHelpFile(QStringLiteral("contents.html")));
    // The index page is a list of links: each link's text is a keyword.
    static const QRegularExpression link(QStringLiteral("<a\\s+href=\"([^\"]+)\"[^>]*>([^<]+)</a>"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QString index = readHelpFile(QStringLiteral("index.html"));
    for (auto it = link.globalMatch(index); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        auto *item = new QListWidgetItem(m.captured(2).trimmed(), m_index); // owned by the list
        item->setData(Qt::UserRole, m.captured(1));
    }
    connect(m_contents, &QTextBrowser::anchorClicked, this,
            [this](const QUrl &url) { showTarget(url.toString()); });
    connect(m_index, &QListWidget::itemActivated, this,
            [this](QListWidgetItem *item) { showTarget(item->data(Qt::UserRole).toString()); });
    connect(m_search, &QLineEdit::textChanged, this, &HelpViewer::filterIndex);
    connect(m_find, &QLineEdit::textChanged, this, &HelpViewer::search);
    connect(m_found, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) {
        showTarget(item->data(Qt::UserRole).toString());
        // The first of the words found, selected where it stands.
        m_page->find(m_find->text().split(QLatin1Char(' '), Qt::SkipEmptyParts).value(0));
    });
    connect(m_page, &QTextBrowser::sourceChanged, this, [this](const QUrl &url) {
        static const QRegularExpression topic(QStringLiteral("topic-(\\d+)\\.html$"));
        const QRegularExpressionMatch m = topic.match(url.path());
        const bool isIndex = url.path().endsWith(QLatin1String("/index.html"));
        m_view->setText(m.hasMatch() ? QStringLiteral("topic")
                        : isIndex    ? QStringLiteral("index")
                                     : QStringLiteral("contents"));
        m_context->setText(m.hasMatch() ? m.captured(1) : QString());
    });
}

bool HelpViewer::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowBlocked:
        // A dialog opened while the help was up: stand beside it.
        followModal();
        break;
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
            close();
            return true;
        }
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void HelpViewer::followModal()
{
    QWidget *modal = QApplication::activeModalWidget();
    QWindow *beside = modal && modal != this ? modal->windowHandle() : nullptr;
    create();
    if (windowHandle()->transientParent() != beside)
        windowHandle()->setTransientParent(beside);
    // When that dialog goes, the one under it (if any) is the next to stand beside.
    if (beside)
        connect(beside, &QObject::destroyed, this, &HelpViewer::followModal, Qt::UniqueConnection);
}

void HelpViewer::showTarget(const QString &target)
{
    showPage(target, QString(), 0);
}

void HelpViewer::showPage(const QString &target, const QString &view, int context)
{
    followModal();
    show();
    raise();
    activateWindow();
    // The page after the window is laid out, so that an anchor scrolls to its place.
    QUrl url = QUrl::fromLocalFile(helpFolder() + QLatin1Char('/') + target.section(QLatin1Char('#'), 0, 0));
    url.setFragment(target.section(QLatin1Char('#'), 1), QUrl::DecodedMode);
    if (url.fragment().isEmpty())
        url.setFragment(QString());
    m_page->setSource(url);
    if (!view.isEmpty()) {
        m_view->setText(view);
        m_context->setText(context ? QString::number(context) : QString());
    }
}

void HelpViewer::filterIndex(const QString &text)
{
    for (int i = 0; i < m_index->count(); ++i) {
        QListWidgetItem *item = m_index->item(i);
        item->setHidden(!item->text().startsWith(text, Qt::CaseInsensitive));
    }
}

void HelpViewer::search(const QString &words)
{
    m_found->clear();
    for (const HelpPage &page : searchHelp(m_pages, words)) {
        auto *item = new QListWidgetItem(page.title, m_found); // owned by the list
        item->setData(Qt::UserRole, page.file);
    }
}

void HelpViewer::showContents()
{
    m_panes->setCurrentIndex(0);
    showPage(QStringLiteral("contents.html"), QStringLiteral("contents"), 0);
}

void HelpViewer::showIndex()
{
    m_panes->setCurrentIndex(1);
    showPage(QStringLiteral("index.html"), QStringLiteral("index"), 0);
    m_search->setFocus();
}

void HelpViewer::showTopic(int context)
{
    const QString file = QStringLiteral("topic-%1.html").arg(context);
    if (!QFile::exists(helpFolder() + QLatin1Char('/') + file))
        return showContents();
    showPage(file, QStringLiteral("topic"), context);
}

HelpKey::HelpKey(QObject *parent) : QObject(parent)
{
    qApp->installEventFilter(this);
}

HelpKey::~HelpKey()
{
    qApp->removeEventFilter(this);
    // The help belongs to the program's session: it ends with the main window.
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *viewer = qobject_cast<HelpViewer *>(w))
            delete viewer;
}

bool HelpKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
        return false;
    for (const QWidget *w = static_cast<QWidget *>(watched); w; w = w->parentWidget()) {
        if (const HelpTopic *topic = HelpTopic::of(w); topic && topic->context() > 0) {
            HelpViewer::instance()->showTopic(topic->context());
            return true;
        }
        if (w->isWindow())
            break;
    }
    return false;
}

} // namespace os
