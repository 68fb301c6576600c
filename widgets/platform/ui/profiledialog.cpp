#include "platform/ui/profiledialog.h"

#include "platform/com/comerror.h"
#include "platform/mapi/profiles.h"
#include "platform/ui/profileeditor.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace ui {

ProfileDialog::ProfileDialog(const ProfileChoice &choice, Prompter &prompter, QWidget *parent)
    : QDialog(parent), m_prompter(prompter)
{
    setObjectName(QStringLiteral("profileDialog"));
    setWindowTitle(QStringLiteral("Choose Profile"));
    auto *layout = new QVBoxLayout(this);
    m_label = new QLabel(this);
    m_label->setWordWrap(true);
    layout->addWidget(m_label);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("profiles"));
    layout->addWidget(m_list);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto *add = buttons->addButton(QStringLiteral("&New..."), QDialogButtonBox::ActionRole);
    add->setObjectName(QStringLiteral("cmdNew"));
    m_properties = buttons->addButton(QStringLiteral("&Properties..."), QDialogButtonBox::ActionRole);
    m_properties->setObjectName(QStringLiteral("cmdProperties"));
    m_ok = buttons->button(QDialogButtonBox::Ok);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    connect(add, &QPushButton::clicked, this, [this] { edit(QString()); });
    connect(m_properties, &QPushButton::clicked, this, [this] { edit(profile()); });
    fill(choice, choice.defaultProfile);
}

void ProfileDialog::fill(const ProfileChoice &choice, const QString &selected)
{
    m_list->clear();
    if (choice.offerDemo) {
        m_label->setText(
            QStringLiteral("There is no mail profile yet. Sorrelin can make the profile \"%1\" on a "
                           "demonstration store with mailboxes, public folders and agents to try "
                           "everything on.")
                .arg(choice.demoProfile));
        m_list->addItem(choice.demoProfile);
        m_list->setCurrentRow(0);
    } else {
        m_label->setText(QStringLiteral("Profile Name:"));
        m_list->addItems(choice.profiles);
        const int index = static_cast<int>(choice.profiles.indexOf(selected));
        m_list->setCurrentRow(index >= 0 ? index : 0);
    }
    m_ok->setEnabled(m_list->count() > 0);
    // The demo profile is only offered: there is nothing yet to edit.
    m_properties->setEnabled(!choice.offerDemo && m_list->count() > 0);
}

void ProfileDialog::edit(const QString &editing)
{
    try {
        ProfileEditor editor(m_prompter, editing, this);
        if (editor.exec() == QDialog::Accepted)
            fill(mapi::profileChoice(), editor.saved());
    } catch (const com::ComError &e) {
        // Another program removed the profile since the list was made.
        m_prompter.msgBox(e.description(), Buttons::OK, Icon::Exclamation, 1, QString());
        fill(mapi::profileChoice(), QString());
    }
}

QString ProfileDialog::profile() const
{
    const QListWidgetItem *item = m_list->currentItem();
    return item ? item->text() : QString();
}

} // namespace ui
