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

namespace {

QString helpDir()
{
    return testsupport::sourceDir() + QStringLiteral("/share/help");
}

QString readPage(const QString &name)
{
    QFile file(helpDir() + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The targets of a page's links and pictures, without outside addresses.
QStringList targets(const QString &page)
{
    static const QRegularExpression ref(QStringLiteral("(?:href|src)=\"([^\"]*)\""));
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
    return QDir(helpDir()).entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name);
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
        QVERIFY2(text.contains(QLatin1String("<title>")), "every page has a title");
        for (const QString &target : targets(text)) {
            const QString file = target.section(QLatin1Char('#'), 0, 0);
            const QString anchor = target.section(QLatin1Char('#'), 1);
            const QString path = file.isEmpty() ? page : file;
            QVERIFY2(QFileInfo(helpDir() + QLatin1Char('/') + path).isFile(),
                     qPrintable(page + QStringLiteral(": no file ") + target));
            if (!anchor.isEmpty())
                QVERIFY2(readPage(path).contains(QStringLiteral("id=\"%1\"").arg(anchor)),
                         qPrintable(page + QStringLiteral(": no anchor ") + target));
        }
    }

    void contentsReachEveryPage()
    {
        QSet<QString> seen;
        QStringList queue{QStringLiteral("contents.html")};
        while (!queue.isEmpty()) {
            const QString page = queue.takeFirst();
            if (seen.contains(page))
                continue;
            seen.insert(page);
            for (const QString &target : targets(readPage(page))) {
                const QString file = target.section(QLatin1Char('#'), 0, 0);
                if (file.endsWith(QLatin1String(".html")))
                    queue.append(file);
            }
        }
        for (const QString &page : pages())
            QVERIFY2(seen.contains(page),
                     qPrintable(page + QStringLiteral(" can't be reached from the contents")));
        for (int context : {3, 1005, 1014, 1016, 1020, 1026, 1030})
            QVERIFY2(seen.contains(QStringLiteral("topic-%1.html").arg(context)),
                     qPrintable(QStringLiteral("no topic for help context %1").arg(context)));
        QVERIFY(seen.contains(QStringLiteral("index.html")));
    }
};

QTEST_GUILESS_MAIN(TestHelpPages)
#include "test_helppages.moc"
