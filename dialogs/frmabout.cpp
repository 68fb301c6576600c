#include "dialogs/frmabout.h"

#include "app/images.h"
#include "app/program.h"
#include "app/version.h"
#include "dialogs/formbuild.h"
#include "dialogs/sysinfo.h"
#include "platform/com/routine.h"
#include "platform/mapi/session.h"
#include "platform/outlook/application.h"

#include <QBoxLayout>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

frmAbout::frmAbout(app::Program &program, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_program(program)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Sorrelin"));
    setModal(true);

    picIcon = dialogs::label("picIcon", QString(), this);
    picIcon->setPixmap(app::images::appIcon().pixmap(48, 48));
    lblTitle = dialogs::label("lblTitle", QStringLiteral("Kelverd Sorrelin for Microsoft Exchange"), this);
    QFont big = lblTitle->font();
    big.setPointSizeF(big.pointSizeF() * 1.4);
    big.setBold(true);
    lblTitle->setFont(big);

    auto *facts = new QGridLayout;
    const auto row = [&](int r, const char *caption, const char *name, QLabel *&value) {
        facts->addWidget(dialogs::label(QStringLiteral("lblCaption%1").arg(r).toLatin1().constData(),
                                        QString::fromLatin1(caption), this),
                         r, 0);
        value = dialogs::label(name, QString(), this);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        facts->addWidget(value, r, 1);
    };
    row(0, "Version:", "lblVersion", lblVersion);
    row(1, "Profile Name:", "lblProfile", lblProfile);
    row(2, "CDO Version:", "lblCDOVersion", lblCDOVersion);
    row(3, "Outlook Version:", "lblOLVersion", lblOLVersion);
    facts->setColumnStretch(1, 1);

    auto *line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    auto *lblDisclaimer = dialogs::label(
        "lblDisclaimer",
        QStringLiteral("Warning: this program changes the agents that a mail server runs. An agent that is "
                       "installed, changed or deleted here takes effect on the server at once."),
        this);
    lblDisclaimer->setWordWrap(true);
    auto *lblCopyright = dialogs::label(
        "lblCopyright", QStringLiteral("Copyright \u00a9 Kelverd. All rights reserved."), this);
    auto *lblTrademarks = dialogs::label(
        "lblTrademarks",
        QStringLiteral("Microsoft, Exchange and Outlook are trademarks of their owners, named here only to "
                       "say what this program works with."),
        this);
    lblTrademarks->setWordWrap(true);

    dialogs::okCancel(this, cmdOK, cmdSysInfo);
    cmdSysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    cmdSysInfo->setText(QStringLiteral("&System Info..."));

    auto *head = new QHBoxLayout;
    head->addWidget(picIcon, 0, Qt::AlignTop);
    auto *text = new QVBoxLayout;
    text->addWidget(lblTitle);
    text->addLayout(facts);
    head->addLayout(text, 1);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdSysInfo);
    buttons->addStretch();
    auto *foot = new QHBoxLayout;
    auto *notices = new QVBoxLayout;
    notices->addWidget(lblDisclaimer);
    notices->addWidget(lblCopyright);
    notices->addWidget(lblTrademarks);
    foot->addLayout(notices, 1);
    foot->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(line);
    layout->addLayout(foot);
    setMinimumWidth(fontMetrics().averageCharWidth() * 70);

    // OK is both the default and the cancel button.
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
    Form_Load();
}

void frmAbout::Form_Load()
{
    com::ResumeNext routine;
    const auto session = [this]() -> mapi::Session & {
        if (!m_program.gobjSession)
            throw com::ComError(91, QStringLiteral("Sorrelin"), QStringLiteral("Object variable not set"));
        return *m_program.gobjSession;
    };
    routine.step([&] {
        lblVersion->setText(QStringLiteral("%1.%2.%3")
                                .arg(app::kVersionMajor)
                                .arg(app::kVersionMinor)
                                .arg(app::kVersionRevision));
    });
    routine.step([&] { lblProfile->setText(session().Name()); });
    routine.step([&] {
        if (m_program.gobjOutlook)
            lblOLVersion->setText(m_program.gobjOutlook->Version());
    });
    routine.step([&] { lblCDOVersion->setText(session().Version()); });
}

void frmAbout::cmdSysInfo_Click()
{
    dialogs::StartSysInfo(registry::Registry::system(), m_program.prompter);
}
