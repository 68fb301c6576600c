#pragma once

#include "platform/ui/prompter.h"

namespace ui {

/// The prompter for people: Qt's message box, input dialog, file and font
/// dialogs, and the profile dialog.
class QtPrompter : public Prompter {
public:
    Answer msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                  const QString &title) override;
    QString inputBox(const QString &prompt, const QString &title, const QString &defaultText) override;
    bool showOpen(CommonDialogState &state) override;
    bool showSave(CommonDialogState &state) override;
    bool showFont(CommonDialogState &state) override;
    QString chooseProfile(const ProfileChoice &choice) override;
};

/// A classic filter ("Text (*.txt)|*.txt|All Files (*.*)|*.*") as Qt's name
/// filters ("Text (*.txt)", "All Files (*)").
QStringList qtNameFilters(const QString &filter);

/// A message's own line breaks (single carriage returns) as display lines.
QString displayText(const QString &text);

} // namespace ui
