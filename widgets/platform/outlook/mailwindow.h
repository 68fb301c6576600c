#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace outlook {

class MailItem;

/// The compose window `olMailItem`: `To`, `Subject` and `Body` to edit,
/// `Attachments` by their names, and the buttons `Send` and `Close`. What
/// the user types goes back to the item; Send files it and closes.
class MailWindow : public QDialog {
    Q_OBJECT

public:
    explicit MailWindow(MailItem &item);

    /// The item's body: as the item gave it, line ends and all, until the
    /// user types in it.
    QString body() const;

private:
    void send();

    MailItem &m_item;
    QLineEdit *m_to;
    QLineEdit *m_subject;
    QPlainTextEdit *m_body;
    QListWidget *m_attachments;
    QLabel *m_error;
};

} // namespace outlook
