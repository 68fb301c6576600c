#include "dialogs/frmlocation.h"

#include "dialogs/formbuild.h"
#include "platform/com/routine.h"
#include "platform/controls/folderlists.h"

#include <QBoxLayout>
#include <QLineEdit>
#include <QPushButton>

frmLocation::frmLocation(QLineEdit &target, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_target(target)
{
    setObjectName(QStringLiteral("frmLocation"));
    setWindowTitle(QStringLiteral("Modify Location"));
    setModal(true);
    Drive1 = new controls::DriveListBox(this);
    Drive1->setObjectName(QStringLiteral("Drive1"));
    Dir1 = new controls::DirListBox(this);
    Dir1->setObjectName(QStringLiteral("Dir1"));
    Dir1->setMinimumSize(Dir1->fontMetrics().averageCharWidth() * 40, Dir1->fontMetrics().height() * 12);
    dialogs::okCancel(this, cmdOK, cmdCancel);

    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addStretch();
    auto *lists = new QVBoxLayout;
    lists->addWidget(Dir1, 1);
    lists->addWidget(Drive1);
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(lists, 1);
    layout->addLayout(buttons);

    connect(Drive1, &controls::DriveListBox::Change, this, &frmLocation::Drive1_Change);
    connect(cmdOK, &QPushButton::clicked, this, &frmLocation::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmLocation::cmdCancel_Click);
}

void frmLocation::Drive1_Change()
{
    // A drive that can't be read leaves the folder list where it was.
    com::ResumeNext routine;
    routine.step([&] { Dir1->setPath(Drive1->Drive()); });
}

void frmLocation::cmdOK_Click()
{
    m_target.setText(Dir1->Path());
    accept();
}

void frmLocation::cmdCancel_Click()
{
    reject();
}
