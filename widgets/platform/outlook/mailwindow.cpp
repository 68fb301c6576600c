#include "platform/outlook/mailwindow.h"

#include "platform/outlook/mailitem.h"

#include <QApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

namespace outlook {

MailWindow::MailWindow(MailItem &item) : QDialog(QApplication::activeWindow()), m_item(item)
{
    setObjectName(QStringLiteral("olMailItem"));
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(true);
    setWindowTitle(item.Subject.isEmpty() ? QStringLiteral("Untitled - Message")
                                          : item.Subject + QStringLiteral(" - Message"));

    m_to = new QLineEdit(item.To, this);
    m_to->setObjectName(QStringLiteral("To"));
    m_subject = new QLineEdit(item.Subject, this);
    m_subject->setObjectName(QStringLiteral("Subject"));
    m_attachments = new QListWidget(this);
    m_attachments->setObjectName(QStringLiteral("Attachments"));
    m_attachments->setMaximumHeight(m_attachments->fontMetrics().height() * 4);
    for (const Attachment &a : item.Attachments().items())
        m_attachments->addItem(a.displayName);
    m_body = new QPlainTextEdit(this);
    m_body->setObjectName(QStringLiteral("Body"));
    m_body->setPlainText(item.Body);
    m_body->setMinimumSize(m_body->fontMetrics().averageCharWidth() * 60,
                           m_body->fontMetrics().height() * 10);

    auto *send = new QPushButton(QStringLiteral("&Send"), this);
    send->setObjectName(QStringLiteral("Send"));
    send->setAutoDefault(false);
    auto *close = new QPushButton(QStringLiteral("&Close"), this);
    close->setObjectName(QStringLiteral("Close"));
    close->setAutoDefault(false);

    m_error = new QLabel(this);
    m_error->setObjectName(QStringLiteral("Error"));
    m_error->setWordWrap(true);
    m_error->hide();

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(send);
    buttons->addStretch();
    buttons->addWidget(close);
    auto *fields = new QFormLayout;
    fields->addRow(QStringLiteral("&To:"), m_to);
    fields->addRow(QStringLiteral("S&ubject:"), m_subject);
    fields->addRow(QStringLiteral("&Attached:"), m_attachments);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addLayout(fields);
    layout->addWidget(m_body, 1);
    layout->addWidget(m_error);

    connect(m_to, &QLineEdit::textChanged, this, [this](const QString &t) { m_item.To = t; });
    connect(m_subject, &QLineEdit::textChanged, this, [this](const QString &t) { m_item.Subject = t; });
    connect(m_body, &QPlainTextEdit::textChanged, this, [this] { m_item.Body = m_body->toPlainText(); });
    connect(send, &QPushButton::clicked, this, &MailWindow::send);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
}

QString MailWindow::body() const
{
    return m_item.Body;
}

void MailWindow::send()
{
    try {
        m_item.Send();
    } catch (const com::ComError &e) {
        // The mail client's own word; the window stays for another try.
        m_error->setText(e.description());
        m_error->show();
        return;
    }
    accept();
}

} // namespace outlook
