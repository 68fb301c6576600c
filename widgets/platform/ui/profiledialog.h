#pragma once

#include "platform/ui/prompter.h"

#include <QDialog>

class QLabel;
class QListWidget;
class QPushButton;

namespace ui {

/// "Choose Profile": the profiles of this user, or, before there is any,
/// the offer to make the demo profile. "New..." and "Properties..." open
/// the profile editor; a profile it records is listed and selected.
class ProfileDialog : public QDialog {
    Q_OBJECT

public:
    ProfileDialog(const ProfileChoice &choice, Prompter &prompter, QWidget *parent = nullptr);

    /// The chosen profile's name.
    QString profile() const;

private:
    void fill(const ProfileChoice &choice, const QString &selected);
    void edit(const QString &editing);

    Prompter &m_prompter;
    QLabel *m_label = nullptr;
    QListWidget *m_list = nullptr;
    QPushButton *m_ok = nullptr;
    QPushButton *m_properties = nullptr;
};

} // namespace ui
