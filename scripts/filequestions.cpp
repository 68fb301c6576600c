#include "scripts/filequestions.h"

#include "platform/com/routine.h"
#include "platform/ui/prompter.h"
#include "scripts/scriptmarker.h"

#include <QFileInfo>

namespace scripts {

void setUpFileDialog(ui::CommonDialogState &dialog, const QString &filter, int filterIndex,
                     const QString &fileName, const QString &initDir)
{
    dialog.cancelError = true;
    dialog.flags = 4100;
    dialog.filter = filter;
    dialog.filterIndex = filterIndex;
    dialog.fileName = fileName;
    dialog.initDir = initDir;
}

std::optional<QString> askSaveFile(ui::Prompter &prompter, ui::CommonDialogState &dialog,
                                   const QString &filter, int filterIndex, const QString &fileName,
                                   const QString &initDir)
{
    setUpFileDialog(dialog, filter, filterIndex, fileName, initDir);
    if (!prompter.showSave(dialog) || !confirmOverwrite(prompter, dialog.fileName))
        return std::nullopt;
    return dialog.fileName;
}

bool confirmOverwrite(ui::Prompter &prompter, const QString &fileName)
{
    if (!QFileInfo(fileName).isFile())
        return true;
    return prompter.msgBox(fileName + QStringLiteral("\ralready exists. Overwrite?"), ui::Buttons::YesNo,
                           ui::Icon::Question, 2, QString()) != ui::Answer::No;
}

bool refuseUnkeptCharacters(ui::Prompter &prompter, const QString &text)
{
    const QStringList unkept = unkeptCharacters(text);
    if (unkept.isEmpty())
        return false;
    prompter.msgBox(QStringLiteral("The script can't hold these characters: ") +
                        unkept.join(QLatin1Char(' ')) + QStringLiteral("\rReplace them, then save again."),
                    ui::Buttons::OK, ui::Icon::Exclamation, 1, QString());
    return true;
}

void showFileError(ui::Prompter &prompter, const com::ComError &e)
{
    prompter.msgBox(com::errorText(e, com::ErrorForm::Plain), ui::Buttons::OK, ui::Icon::Stop, 1, QString());
}

} // namespace scripts
