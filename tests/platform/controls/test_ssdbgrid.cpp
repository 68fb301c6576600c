// The grid of the report windows: what a saved file holds, and the caption
// band above the column captions.
#include "platform/controls/ssdbgrid.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestSSDBGrid : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_grid = std::make_unique<controls::SSDBGrid>();
        m_grid->setColumns({{u"Name"_s, -1, false},
                            {u"Folder"_s, 1488, false},
                            {u"New"_s, 900, true},
                            {u"Entry ID"_s, 0, false}});
    }

    void exportWritesVisibleColumns()
    {
        QTemporaryDir dir;
        m_grid->AddItem(u"Caf\u00e9\t\\Inbox\t-1\tID1"_s);
        m_grid->AddItem(u"B\t\t0\tID2"_s);
        // A tick shows no text; the cell keeps the row string's "-1".
        QCOMPARE(m_grid->item(0, 2)->text(), QString());
        const QString path = dir.filePath(u"out.txt"_s);
        m_grid->Export(0, 167, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("Name\tFolder\tNew\r\nCaf\xe9\t\\Inbox\t-1\r\nB\t\t0\r\n"));
    }

    void captionAboveColumns()
    {
        m_grid->AddItem(u"A"_s);
        m_grid->resize(300, 200);
        m_grid->show();
        QCoreApplication::processEvents();
        const int bare = m_grid->viewport()->geometry().top();
        m_grid->setCaption(u"Routing Map"_s);
        QCoreApplication::processEvents();
        // The band above the column captions pushes the rows down.
        QVERIFY(m_grid->viewport()->geometry().top() > bare + m_grid->fontMetrics().height());
        m_grid->setCaption(QString());
        QCoreApplication::processEvents();
        QCOMPARE(m_grid->viewport()->geometry().top(), bare);
    }

private:
    std::unique_ptr<controls::SSDBGrid> m_grid;
};

QTEST_MAIN(TestSSDBGrid)
#include "test_ssdbgrid.moc"
