#include "platform/controls/ssdbgrid.h"

#include <QtTest>

class TestSSDBGrid : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowsKeepTheirText();
    void exportWritesVisibleColumns();
    void captionAboveColumns();
};

namespace {

void setUp(controls::SSDBGrid &grid)
{
    grid.setColumns({{QStringLiteral("Name"), -1, false},
                     {QStringLiteral("Folder"), 1488, false},
                     {QStringLiteral("New"), 900, true},
                     {QStringLiteral("Entry ID"), 0, false}});
}

} // namespace

void TestSSDBGrid::rowsKeepTheirText()
{
    controls::SSDBGrid grid;
    setUp(grid);
    grid.AddItem(QStringLiteral("A\t\\Inbox\t-1\tID1\textra"));
    grid.AddItem(QStringLiteral("B"));
    QCOMPARE(grid.Rows(), 2);
    QCOMPARE(grid.rowCells(0), (QStringList{"A", "\\Inbox", "-1", "ID1"}));
    QCOMPARE(grid.rowCells(1), (QStringList{"B", "", "", ""}));
    // A tick shows no text; the cell keeps the row string's "-1".
    QCOMPARE(grid.item(0, 2)->text(), QString());
    QCOMPARE(grid.cellText(5, 0), QString());
}

void TestSSDBGrid::exportWritesVisibleColumns()
{
    QTemporaryDir dir;
    controls::SSDBGrid grid;
    setUp(grid);
    grid.AddItem(QStringLiteral("Caf\u00e9\t\\Inbox\t-1\tID1"));
    grid.AddItem(QStringLiteral("B\t\t0\tID2"));
    const QString path = dir.filePath(QStringLiteral("out.txt"));
    grid.Export(0, 167, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("Name\tFolder\tNew\r\nCaf\xe9\t\\Inbox\t-1\r\nB\t\t0\r\n"));
}

void TestSSDBGrid::captionAboveColumns()
{
    controls::SSDBGrid grid;
    setUp(grid);
    grid.AddItem(QStringLiteral("A"));
    grid.resize(300, 200);
    grid.show();
    QCoreApplication::processEvents();
    const int bare = grid.viewport()->geometry().top();
    grid.setCaption(QStringLiteral("Routing Map"));
    QCoreApplication::processEvents();
    // The band above the column captions pushes the rows down.
    QVERIFY(grid.viewport()->geometry().top() > bare + grid.fontMetrics().height());
    grid.setCaption(QString());
    QCoreApplication::processEvents();
    QCOMPARE(grid.viewport()->geometry().top(), bare);
}

QTEST_MAIN(TestSSDBGrid)
#include "test_ssdbgrid.moc"
