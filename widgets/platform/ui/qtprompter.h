#pragma once

#include "platform/ui/prompter.h"

namespace ui {

/// The prompter for people: Qt's message box, input dialog, file, font and
/// print dialogs, and the profile dialog, each modal over the active window.
class QtPrompter : public Prompter {
public:
    Answer msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                  const QString &title) override;
    Answer msgBoxDetail(const QString &text, const QString &detail, Buttons buttons, Icon icon,
                        int defaultButton, const QString &title) override;
    QString inputBox(const QString &prompt, const QString &title, const QString &defaultText) override;
    bool showOpen(CommonDialogState &state) override;
    bool showSave(CommonDialogState &state) override;
    bool showFont(CommonDialogState &state) override;
    QString chooseProfile(const ProfileChoice &choice) override;
    bool pageSetup(QPrinter &printer) override;
    bool print(QPrinter &printer) override;
    bool choosePrinter(QPrinter &printer, const QString &title) override;
};

} // namespace ui
