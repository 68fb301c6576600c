#pragma once

#include <QString>

namespace com {
class ComError;
}
namespace ui {
class Prompter;
}

namespace scripts {

/// Before a file is written over: asks the name, a carriage return and
/// "already exists. Overwrite?" (question, Yes and No, No the default) when
/// a file of that name exists. False when the user said No.
bool confirmOverwrite(ui::Prompter &prompter, const QString &fileName);

/// A failed file or list command: "Error#: ", the number, a carriage return
/// and the description (stop icon, OK).
void showFileError(ui::Prompter &prompter, const com::ComError &e);

} // namespace scripts
