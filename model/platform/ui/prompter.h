#pragma once

#include <QString>
#include <QStringList>

class QPrinter;

namespace ui {

enum class Icon { None, Stop, Question, Exclamation, Information };
enum class Buttons { OK, OKCancel, YesNo, YesNoCancel };

/// The button a message box was closed with; the numbers of the classic
/// message box results.
enum class Answer { OK = 1, Cancel = 2, Yes = 6, No = 7 };

/// The one common dialog's properties. They stay as the last use left them,
/// so a caller keeps one of these for the whole program.
struct CommonDialogState {
    QString dialogTitle;
    QString filter; ///< "Text (*.txt)|*.txt|All Files (*.*)|*.*"
    int filterIndex = 0;
    QString fileName;  ///< full path after a dialog; the offered name before one
    QString fileTitle; ///< the chosen file's name without its folder
    QString initDir;
    QString defaultExt;
    int flags = 0;
    int executableFilter = 0; ///< the filter (from 1) that lists only files the user may run; 0: none
    bool cancelError = false;
    QString fontName;
    double fontSize = 0;
    bool fontBold = false;
    bool fontItalic = false;
};

/// What the profile dialog offers.
struct ProfileChoice {
    QStringList profiles;   ///< known profile names
    QString defaultProfile; ///< selected at first; may be empty
    bool offerDemo = false; ///< no profile yet: the dialog offers to make the demo profile
    QString demoProfile;    ///< the demo profile's name, when offered
};

/// Everything that asks the user something goes through here: a Qt
/// implementation for people, a scripted one for tests and the driver.
class Prompter {
public:
    virtual ~Prompter() = default;

    /// `defaultButton` counts from 1, left to right, as the classic flags do.
    virtual Answer msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                          const QString &title) = 0;

    /// A message with a second, smaller text beneath it that says more (the
    /// file and the cause of a failure, say).
    virtual Answer msgBoxDetail(const QString &text, const QString &detail, Buttons buttons, Icon icon,
                                int defaultButton, const QString &title) = 0;

    /// The typed text, or the empty text when the user cancels.
    virtual QString inputBox(const QString &prompt, const QString &title, const QString &defaultText) = 0;

    /// False when the user cancels; on OK, `state` holds the choice.
    virtual bool showOpen(CommonDialogState &state) = 0;
    virtual bool showSave(CommonDialogState &state) = 0;
    virtual bool showFont(CommonDialogState &state) = 0;

    /// The chosen profile's name, or the empty text on Cancel.
    virtual QString chooseProfile(const ProfileChoice &choice) = 0;

    /// The page setup and print dialogs of a print: false when the user
    /// cancels; on OK, `printer` holds the choice.
    virtual bool pageSetup(QPrinter &printer) = 0;
    virtual bool print(QPrinter &printer) = 0;

    /// Where a print goes before its dialogs: the default printer, or with
    /// none set up a PDF file named after `title` in the user's documents;
    /// true in that last case, so that the caller can say where it went.
    virtual bool choosePrinter(QPrinter &printer, const QString &title) = 0;
};

} // namespace ui
