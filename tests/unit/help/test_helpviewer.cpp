// The help window: every keyword of the index opens its page at the place
// the keyword names, and a search finds the pages that hold its words.
#include "platform/os/helpviewer.h"
#include "tests/support/testenv.h"

#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace {

QString readPage(const QString &name)
{
    QFile file(testsupport::sourceDir() + u"/share/help/"_s + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The words that stand at a page's anchor (or under its heading), without markup.
QString textAt(const QString &file, const QString &anchor)
{
    const QString html = readPage(file);
    const QRegularExpression at(anchor.isEmpty() ? u"<h1[^>]*>(.*?)</h1>"_s
                                                 : u"id=\"%1\"[^>]*>(.*?)</"_s.arg(anchor),
                                QRegularExpression::DotMatchesEverythingOption);
    QString text = at.match(html).captured(1);
    text.remove(QRegularExpression(u"<[^>]*>"_s));
    return text.simplified();
}

/// The text that the page shows in its window now.
QString visibleText(QTextBrowser *page)
{
    QTextCursor cursor = page->cursorForPosition(QPoint(0, 0));
    const QWidget *view = page->viewport();
    cursor.setPosition(page->cursorForPosition(QPoint(view->width() - 1, view->height() - 1)).position(),
                       QTextCursor::KeepAnchor);
    return cursor.selectedText().replace(QChar::ParagraphSeparator, u' ').simplified();
}

} // namespace

class TestHelpViewer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { delete os::HelpViewer::instance(); }

    void indexEntry_data()
    {
        QTest::addColumn<QString>("keyword");
        QTest::addColumn<QString>("target");
        static const QRegularExpression link(u"<a href=\"([^\"]+)\">([^<]+)</a>"_s);
        for (auto it = link.globalMatch(readPage(u"index.html"_s)); it.hasNext();) {
            const QRegularExpressionMatch m = it.next();
            QTest::newRow(qPrintable(m.captured(2))) << m.captured(2) << m.captured(1);
        }
    }

    void indexEntry()
    {
        QFETCH(QString, keyword);
        QFETCH(QString, target);
        os::HelpViewer *viewer = os::HelpViewer::instance();
        viewer->showIndex();
        auto *index = viewer->findChild<QListWidget *>(u"index"_s);
        const QList<QListWidgetItem *> items = index->findItems(keyword, Qt::MatchExactly);
        QCOMPARE(items.size(), 1);
        index->setCurrentItem(items.first());
        QTest::keyClick(index, Qt::Key_Return);

        auto *page = viewer->findChild<QTextBrowser *>(u"page"_s);
        const QString file = target.section(u'#', 0, 0);
        QCOMPARE(page->source().fileName(), file);
        const QString expected = textAt(file, target.section(u'#', 1));
        QVERIFY2(!expected.isEmpty(), qPrintable(target));
        QVERIFY2(visibleText(page).contains(expected),
                 qPrintable(u"\"%1\" is not in sight: %2"_s.arg(expected, visibleText(page).left(200))));
    }

    void search_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("one word") << u"Approve"_s << QStringList{u"Vote Table"_s};
        QTest::newRow("any case, every word")
            << u"workitem DEFAULT"_s << QStringList{u"Messages the program shows"_s, u"Route Map"_s};
        QTest::newRow("no such words") << u"spreadsheet zebra"_s << QStringList{};
    }

    void search()
    {
        QFETCH(QString, words);
        QFETCH(QStringList, titles);
        os::HelpViewer *viewer = os::HelpViewer::instance();
        viewer->showContents();
        auto *find = viewer->findChild<QLineEdit *>(u"find"_s);
        QVERIFY(find);
        QTest::keyClicks(find, words);
        auto *found = viewer->findChild<QListWidget *>(u"found"_s);
        QStringList shown;
        for (int i = 0; i < found->count(); ++i)
            shown.append(found->item(i)->text());
        QCOMPARE(shown, titles);
        if (titles.isEmpty())
            return;
        found->setCurrentRow(0);
        QTest::keyClick(found, Qt::Key_Return);
        auto *page = viewer->findChild<QTextBrowser *>(u"page"_s);
        QCOMPARE(page->textCursor().selectedText().toLower(), words.section(u' ', 0, 0).toLower());
    }
};

QTEST_MAIN(TestHelpViewer)
#include "test_helpviewer.moc"
