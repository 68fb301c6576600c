#pragma once

#include "platform/ui/prompter.h"

#include <QDialog>

class QListWidget;

namespace ui {

/// "Choose Profile": the profiles of this user, or, before there is any,
/// the offer to make the demo profile.
class ProfileDialog : public QDialog {
    Q_OBJECT

public:
    explicit ProfileDialog(const ProfileChoice &choice, QWidget *parent = nullptr);

    /// The chosen profile's name.
    QString profile() const;

private:
    QListWidget *m_list = nullptr;
};

} // namespace ui
