#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace ui {

class Prompter;

/// "New Profile" and "Profile Properties" (the form frmProfile): a profile's
/// name, its user, and its store, a file or a database on a PostgreSQL
/// server. OK records the profile only once it has been checked and its
/// store opened; a refusal says why and leaves the form as it was typed.
class ProfileEditor : public QDialog {
    Q_OBJECT

public:
    /// `editing` names the profile to edit; empty for a new one.
    ProfileEditor(Prompter &prompter, const QString &editing, QWidget *owner);

    /// The name the profile was recorded under; empty until OK succeeds.
    const QString &saved() const { return m_saved; }

    void optFile_Toggled();
    void cmdBrowse_Click();
    void cmdOK_Click();

    QLineEdit *txtName = nullptr;
    QLineEdit *txtUser = nullptr;
    QRadioButton *optFile = nullptr;
    QRadioButton *optServer = nullptr;
    QLineEdit *txtStore = nullptr;
    QPushButton *cmdBrowse = nullptr;
    QLineEdit *txtHost = nullptr;
    QLineEdit *txtPort = nullptr;
    QLineEdit *txtDatabase = nullptr;
    QLineEdit *txtLogin = nullptr;
    QLabel *lblPassword = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    Prompter &m_prompter;
    QString m_editing;
    QString m_saved;
    QList<QWidget *> m_fileFields;
    QList<QWidget *> m_serverFields;
};

} // namespace ui
