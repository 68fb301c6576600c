#pragma once

#include "platform/ui/prompter.h"

#include <QList>
#include <QQueue>
#include <QString>
#include <QVariantMap>

namespace ui {

/// One prompt as the user would have seen it, and the answer it got.
struct PromptRecord {
    QString kind; ///< msgbox, inputbox, open, save, font, profile
    QString text;
    QString title;
    QString icon;    ///< stop, question, exclamation, information, none
    QString buttons; ///< OK, OKCancel, YesNo, YesNoCancel
    QString defaultButton;
    QString answer;
    QVariantMap extra; ///< file dialogs: filter, fileName, ...; input boxes: default
};

/// The prompter of tests and the driver: answers come from a queue, every
/// prompt is recorded, and a prompt with no fitting answer queued is an
/// error of the run (it gets the safest answer: Cancel, No or nothing).
class ScriptedPrompter : public Prompter {
public:
    /// "Yes", "No", "OK", "Cancel", "text:...", "file:PATH",
    /// "font:NAME,SIZE,BOLD,ITALIC", or a profile's name.
    void enqueue(const QString &answer) { m_answers.enqueue(answer); }
    int pending() const { return static_cast<int>(m_answers.size()); }

    /// The profile the profile dialog takes when nothing is queued.
    void setDefaultProfile(const QString &name) { m_defaultProfile = name; }

    QList<PromptRecord> takePrompts();
    /// The errors since the last call, joined by "; "; empty when none.
    QString takeError();

    Answer msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                  const QString &title) override;
    QString inputBox(const QString &prompt, const QString &title, const QString &defaultText) override;
    bool showOpen(CommonDialogState &state) override;
    bool showSave(CommonDialogState &state) override;
    bool showFont(CommonDialogState &state) override;
    QString chooseProfile(const ProfileChoice &choice) override;

    static QString iconName(Icon icon);
    static QString buttonsName(Buttons buttons);
    static QStringList buttonNames(Buttons buttons);

private:
    bool fileDialog(const QString &kind, CommonDialogState &state);
    /// The next answer if one is queued; else records the error.
    bool next(PromptRecord &record, QString &answer);

    QQueue<QString> m_answers;
    QList<PromptRecord> m_prompts;
    QStringList m_errors;
    QString m_defaultProfile;
};

} // namespace ui
