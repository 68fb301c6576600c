// The help pages: every link and picture leads somewhere, every anchor a
// link names is on its page, and the contents reach every page and every
// help context's topic.
#include "tests/support/testenv.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString helpDir()
{
    return testsupport::sourceDir() + u"/share/help"_s;
}

QString readPage(const QString &name)
{
    QFile file(helpDir() + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The targets of a page's links and pictures, without outside addresses.
QStringList targets(const QString &page)
{
    static const QRegularExpression ref(u"(?:href|src)=\"([^\"]*)\""_s);
    QStringList out;
    for (auto it = ref.globalMatch(page); it.hasNext();) {
        const QString target = it.next().captured(1);
        if (!target.contains(QLatin1Char(':')))
            out.append(target);
    }
    return out;
}

QStringList pages()
{
    return QDir(helpDir()).entryList({u"*.html"_s}, QDir::Files, QDir::Name);
}

} // namespace

class TestHelpPages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void links_data()
    {
        QTest::addColumn<QString>("page");
        for (const QString &page : pages())
            QTest::newRow(qPrintable(page)) << page;
    }

    void links()
    {
        QFETCH(QString, page);
        const QString text = readPage(page);
        QVERIFY(!text.isEmpty());
        QVERIFY2(text.contains("<title>"_L1), "every page has a title");
        // A picture between paragraphs would split the text around it.
        static const QRegularExpression picture(u"(.{0,19})<img "_s);
        for (auto it = picture.globalMatch(text); it.hasNext();)
            QCOMPARE(it.next().captured(1), u"<p class=\"picture\">"_s);
        for (const QString &target : targets(text)) {
            const QString file = target.section(QLatin1Char('#'), 0, 0);
            const QString anchor = target.section(QLatin1Char('#'), 1);
            const QString path = file.isEmpty() ? page : file;
            QVERIFY2(QFileInfo(helpDir() + QLatin1Char('/') + path).isFile(),
                     qPrintable(page + u": no file "_s + target));
            if (!anchor.isEmpty())
                QVERIFY2(readPage(path).contains(u"id=\"%1\""_s.arg(anchor)),
                         qPrintable(page + u": no anchor "_s + target));
        }
    }

    void contentsReachEveryPage()
    {
        QSet<QString> seen;
        QStringList queue{u"contents.html"_s};
        while (!queue.isEmpty()) {
            const QString page = queue.takeFirst();
            if (seen.contains(page))
                continue;
            seen.insert(page);
            for (const QString &target : targets(readPage(page))) {
                const QString file = target.section(QLatin1Char('#'), 0, 0);
                if (file.endsWith(".html"_L1))
                    queue.append(file);
            }
        }
        for (const QString &page : pages())
            QVERIFY2(seen.contains(page), qPrintable(page + u" can't be reached from the contents"_s));
        for (int context : {3, 1005, 1014, 1016, 1020, 1026, 1030})
            QVERIFY2(seen.contains(u"topic-%1.html"_s.arg(context)),
                     qPrintable(u"no topic for help context %1"_s.arg(context)));
        QVERIFY(seen.contains(u"index.html"_s));
    }
};

QTEST_GUILESS_MAIN(TestHelpPages)
#include "test_helppages.moc"
