#pragma once

#include "platform/ui/prompter.h"

#include <QList>
#include <QQueue>
#include <QString>
#include <QVariantMap>

namespace ui {

/// One prompt as the user would have seen it, and the answer it got.
struct PromptRecord {
    QString kind; ///< msgbox, inputbox, open, save, font, profile, pagesetup, print
    QString text;
    QString title;
    QString icon;    ///< stop, question, exclamation, information, none (message boxes)
    QString buttons; ///< OK, OKCancel, YesNo, YesNoCancel (message boxes)
    QString defaultButton;
    QString answer; ///< what the prompt was answered with, as queued ("Yes", "text:...", ...)
    QString error;  ///< why the queued answer didn't do, when it didn't; then `answer` is the safest one
    /// File dialogs: filter, filterIndex, fileName, initDir, flags, as they
    /// were when the dialog opened; font dialogs: the font and flags; input
    /// boxes: default; the profile dialog: default, offerDemo.
    QVariantMap extra;
};

/// The prompter of tests and the driver: answers come from a queue, every
/// prompt is recorded, and a prompt with no fitting answer queued is an
/// error of the run. Such a prompt gets the safest answer (Cancel where the
/// prompt has it, else No, else OK; the empty text; no file or font) and
/// never waits.
class ScriptedPrompter : public Prompter {
public:
    /// "Yes", "No", "OK", "Cancel" for message boxes; "text:..." (or "OK"
    /// for the default text, "Cancel") for input boxes; "file:PATH" (or
    /// "OK" for the offered name, "Cancel") for file dialogs;
    /// "font:NAME,SIZE,BOLD,ITALIC" (BOLD and ITALIC 1/0 or true/false, or
    /// "Cancel") for the font dialog; a profile's name, "OK" or "Cancel" for
    /// the profile dialog; "OK" or "Cancel" for the print dialogs.
    void enqueue(const QString &answer) { m_answers.enqueue(answer); }
    int pending() const { return static_cast<int>(m_answers.size()); }

    /// The profile the profile dialog takes when nothing is queued (else
    /// the one it offers).
    void setDefaultProfile(const QString &name) { m_defaultProfile = name; }
    /// Prints go to this PDF file, or, when it is empty, where they go for
    /// people.
    void setPrintFile(const QString &path) { m_printFile = path; }

    /// The prompts since the last call, oldest first.
    QList<PromptRecord> takePrompts();
    /// The errors since the last call, joined by "; "; empty when none.
    QString takeError();

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

    static QString iconName(Icon icon);
    static QString buttonsName(Buttons buttons);
    /// The buttons of a box by name, left to right.
    static QStringList buttonNames(Buttons buttons);

private:
    bool fileDialog(const QString &kind, CommonDialogState &state);
    bool printDialog(const QString &kind, QPrinter &printer);
    /// Takes the next answer; with none queued, records the error.
    bool next(PromptRecord &record, QString &answer);
    /// Records why an answer didn't do; the prompt then gets `safest`.
    void fail(PromptRecord &record, const QString &error, const QString &safest);
    void record(const PromptRecord &record) { m_prompts << record; }

    QQueue<QString> m_answers;
    QList<PromptRecord> m_prompts;
    QStringList m_errors;
    QString m_defaultProfile;
    QString m_printFile;
};

} // namespace ui
