#include "platform/os/helpviewer.h"

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
#include <QVBoxLayout>

namespace os {

QString helpFolder()
{
    return shareDir() + QStringLiteral("/help");
}

HelpViewer *HelpViewer::instance()
{
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *viewer = qobject_cast<HelpViewer *>(w))
            return viewer;
    return new HelpViewer(QApplication::activeModalWidget());
}

HelpViewer::HelpViewer(QWidget *parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("helpViewer"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Sorrelin Help"));

    m_panes = new QTabWidget(this);
    m_panes->setObjectName(QStringLiteral("panes"));
    m_contents = new QTextBrowser(m_panes);
    m_contents->setObjectName(QStringLiteral("contents"));
    m_contents->setOpenLinks(false);
    m_panes->addTab(m_contents, QStringLiteral("Contents"));
    auto *indexPane = new QWidget(m_panes);
    m_search = new QLineEdit(indexPane);
    m_search->setObjectName(QStringLiteral("search"));
    m_index = new QListWidget(indexPane);
    m_index->setObjectName(QStringLiteral("index"));
    auto *indexLayout = new QVBoxLayout(indexPane);
    indexLayout->addWidget(m_search);
    indexLayout->addWidget(m_index);
    m_panes->addTab(indexPane, QStringLiteral("Index"));

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

    QFile contents(helpFolder() + QStringLiteral("/contents.html"));
    if (contents.open(QIODevice::ReadOnly))
        m_contents->setHtml(QString::fromUtf8(contents.readAll()));
    // The index page is a list of links: each link's text is a keyword.
    QFile index(helpFolder() + QStringLiteral("/index.html"));
    if (index.open(QIODevice::ReadOnly)) {
        static const QRegularExpression link(QStringLiteral("<a\\s+href=\"([^\"]+)\"[^>]*>([^<]+)</a>"),
                                             QRegularExpression::CaseInsensitiveOption);
        const QString html = QString::fromUtf8(index.readAll());
        for (auto it = link.globalMatch(html); it.hasNext();) {
            const QRegularExpressionMatch m = it.next();
            auto *item = new QListWidgetItem(m.captured(2).trimmed(), m_index); // owned by the list
            item->setData(Qt::UserRole, m.captured(1));
        }
    }
    const auto follow = [this](const QString &target) {
        static const QRegularExpression topic(QStringLiteral("topic-(\\d+)\\.html"));
        const QRegularExpressionMatch m = topic.match(target);
        showPage(target, m.hasMatch() ? QStringLiteral("topic") : QStringLiteral("contents"),
                 m.hasMatch() ? m.captured(1).toInt() : 0);
    };
    connect(m_contents, &QTextBrowser::anchorClicked, this,
            [follow](const QUrl &url) { follow(url.path()); });
    connect(m_index, &QListWidget::itemActivated, this,
            [follow](QListWidgetItem *item) { follow(item->data(Qt::UserRole).toString()); });
    connect(m_search, &QLineEdit::textChanged, this, &HelpViewer::filterIndex);
}

void HelpViewer::showPage(const QString &file, const QString &view, int context)
{
    m_page->setSource(QUrl::fromLocalFile(helpFolder() + QLatin1Char('/') + file));
    m_view->setText(view);
    m_context->setText(context ? QString::number(context) : QString());
    show();
    raise();
    activateWindow();
}

void HelpViewer::filterIndex(const QString &text)
{
    for (int i = 0; i < m_index->count(); ++i) {
        QListWidgetItem *item = m_index->item(i);
        item->setHidden(!item->text().startsWith(text, Qt::CaseInsensitive));
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
}

bool HelpKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
        return false;
    for (QObject *o = watched; o; o = o->parent()) {
        const int context = o->property("helpContext").toInt();
        if (context > 0) {
            HelpViewer::instance()->showTopic(context);
            return true;
        }
        if (static_cast<QWidget *>(o)->isWindow())
            break;
    }
    return false;
}

} // namespace os
