#include "platform/ui/profiledialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace ui {

ProfileDialog::ProfileDialog(const ProfileChoice &choice, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("profileDialog"));
    setWindowTitle(QStringLiteral("Choose Profile"));
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(this);
    label->setWordWrap(true);
    layout->addWidget(label);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("profiles"));
    layout->addWidget(m_list);
    if (choice.offerDemo) {
        label->setText(
            QStringLiteral("There is no mail profile yet. Sorrelin can make the profile \"%1\" on a "
                           "demonstration store with mailboxes, public folders and agents to try "
                           "everything on.")
                .arg(choice.demoProfile));
        m_list->addItem(choice.demoProfile);
        m_list->setCurrentRow(0);
    } else {
        label->setText(QStringLiteral("Profile Name:"));
        m_list->addItems(choice.profiles);
        const int index = static_cast<int>(choice.profiles.indexOf(choice.defaultProfile));
        m_list->setCurrentRow(index >= 0 ? index : 0);
    }
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    buttons->button(QDialogButtonBox::Ok)->setEnabled(m_list->count() > 0);
}

QString ProfileDialog::profile() const
{
    const QListWidgetItem *item = m_list->currentItem();
    return item ? item->text() : QString();
}

} // namespace ui
