#pragma once

#include "platform/ui/prompter.h"

namespace storetool {

/// The store's command line asks nobody: a message box takes its default
/// button, and every dialog is cancelled.
class NoPrompts : public ui::Prompter {
public:
    ui::Answer msgBox(const QString &, ui::Buttons buttons, ui::Icon, int defaultButton,
                      const QString &) override
    {
        return answer(buttons, defaultButton);
    }
    ui::Answer msgBoxDetail(const QString &, const QString &, ui::Buttons buttons, ui::Icon,
                            int defaultButton, const QString &) override
    {
        return answer(buttons, defaultButton);
    }
    QString inputBox(const QString &, const QString &, const QString &) override { return QString(); }
    bool showOpen(ui::CommonDialogState &) override { return false; }
    bool showSave(ui::CommonDialogState &) override { return false; }
    bool showFont(ui::CommonDialogState &) override { return false; }
    QString chooseProfile(const ui::ProfileChoice &) override { return QString(); }
    bool pageSetup(QPrinter &) override { return false; }
    bool print(QPrinter &) override { return false; }
    bool choosePrinter(QPrinter &, const QString &) override { return false; }

private:
    static ui::Answer answer(ui::Buttons buttons, int defaultButton)
    {
        switch (buttons) {
        case ui::Buttons::OK:
            return ui::Answer::OK;
        case ui::Buttons::OKCancel:
            return defaultButton == 2 ? ui::Answer::Cancel : ui::Answer::OK;
        case ui::Buttons::YesNo:
            return defaultButton == 2 ? ui::Answer::No : ui::Answer::Yes;
        case ui::Buttons::YesNoCancel:
            return defaultButton == 3   ? ui::Answer::Cancel
                   : defaultButton == 2 ? ui::Answer::No
                                        : ui::Answer::Yes;
        }
        return ui::Answer::Cancel;
    }
};

} // namespace storetool
