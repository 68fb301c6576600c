#pragma once

#include <QString>

#include <optional>

namespace com {
class ComError;
}
namespace ui {
class Prompter;
struct CommonDialogState;
} // namespace ui

namespace scripts {

/// The filter of the dialogs that save a script or a table as text.
inline const QString kTextFilesFilter =
    QStringLiteral("Text Files (*.txt)|*.txt|VBScript Files (*.vbs)|*.vbs|All Files (*.*)|*.*");

/// The common dialog as the file commands set it up before they show it:
/// Cancel raises, flags 4100 (hide read-only, the file must exist), and the
/// filter, its index, the offered name and the start folder given.
void setUpFileDialog(ui::CommonDialogState &dialog, const QString &filter, int filterIndex,
                     const QString &fileName, const QString &initDir);

/// The save dialog set up so, then the overwrite question: the chosen name,
/// or nothing when the user cancelled the dialog or said No.
std::optional<QString> askSaveFile(ui::Prompter &prompter, ui::CommonDialogState &dialog,
                                   const QString &filter, int filterIndex, const QString &fileName,
                                   const QString &initDir);

/// Before a file is written over: asks the name, a carriage return and
/// "already exists. Overwrite?" (question, Yes and No, No the default) when
/// a file of that name exists. False when the user said No.
bool confirmOverwrite(ui::Prompter &prompter, const QString &fileName);

/// Before the pane's text is written as a script: when it has characters
/// that a script can't hold, names them (exclamation icon, OK) and gives
/// true, so that nothing is written and the text stays as it is.
bool refuseUnkeptCharacters(ui::Prompter &prompter, const QString &text);

/// A failed file or list command: "Error#: ", the number, a carriage return
/// and the description (stop icon, OK).
void showFileError(ui::Prompter &prompter, const com::ComError &e);

} // namespace scripts
