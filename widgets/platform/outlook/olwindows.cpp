#include "platform/outlook/olwindows.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace outlook {

ExplorerWindow::ExplorerWindow(const QString &folderName, const QString &folderPath,
                               const QList<ItemRow> &items)
    : QWidget(nullptr, Qt::Window), m_path(folderPath)
{
    setObjectName(QStringLiteral("olExplorer"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(folderName);
    resize(640, 400);

    auto *layout = new QVBoxLayout(this);
    auto *path = new QLabel(folderPath, this);
    path->setObjectName(QStringLiteral("FolderPath"));
    layout->addWidget(path);

    auto *grid = new QTableWidget(static_cast<int>(items.size()), 4, this);
    grid->setObjectName(QStringLiteral("Items"));
    grid->setHorizontalHeaderLabels({QStringLiteral("Subject"), QStringLiteral("From"),
                                     QStringLiteral("Received"), QStringLiteral("Message Class")});
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->verticalHeader()->hide();
    grid->horizontalHeader()->setStretchLastSection(true);
    for (int r = 0; r < items.size(); ++r) {
        const ItemRow &row = items.at(r);
        const QString cells[] = {row.subject, row.from, row.received, row.messageClass};
        for (int c = 0; c < 4; ++c)
            grid->setItem(r, c, new QTableWidgetItem(cells[c]));
    }
    grid->resizeColumnsToContents();
    layout->addWidget(grid);
}

QString accessText(int access)
{
    static const char *const names[] = {
        "modify", "read", "delete", "create subfolders", "create contents", "create associated contents"};
    QStringList words;
    for (int bit = 0; bit < 6; ++bit)
        if (access & (1 << bit))
            words << QString::fromLatin1(names[bit]);
    return words.isEmpty() ? QStringLiteral("none") : words.join(QStringLiteral(", "));
}

FolderPropertiesDialog::FolderPropertiesDialog(const FolderFacts &facts, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("olFolderProperties"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(facts.name + QStringLiteral(" Properties"));

    auto *layout = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    const auto add = [this, form](const char *name, const QString &label, const QString &value) {
        auto *field = new QLabel(value, this);
        field->setObjectName(QString::fromLatin1(name));
        field->setTextInteractionFlags(Qt::TextSelectableByMouse);
        form->addRow(label, field);
    };
    add("lblName", QStringLiteral("Name:"), facts.name);
    add("lblPath", QStringLiteral("Location:"), facts.path);
    add("lblItems", QStringLiteral("Items:"), QString::number(facts.items));
    add("lblHidden", QStringLiteral("Hidden items:"), QString::number(facts.hiddenItems));
    add("lblFolders", QStringLiteral("Subfolders:"), QString::number(facts.subfolders));
    add("lblRights", QStringLiteral("Your rights:"), accessText(facts.access));
    add("lblEventSource", QStringLiteral("Event source host:"),
        facts.eventSourceHost.isEmpty() ? QStringLiteral("(no event source)") : facts.eventSourceHost);
    layout->addLayout(form);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("cmdClose"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace outlook
