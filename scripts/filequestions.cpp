#include "scripts/filequestions.h"

#include "platform/com/routine.h"
#include "platform/ui/prompter.h"

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

bool confirmOverwrite(ui::Prompter &prompter, const QString &fileName)
{
    if (!QFileInfo(fileName).isFile())
        return true;
    return prompter.msgBox(fileName + QStringLiteral("\ralready exists. Overwrite?"), ui::Buttons::YesNo,
                           ui::Icon::Question, 2, QString()) != ui::Answer::No;
}

void showFileError(ui::Prompter &prompter, const com::ComError &e)
{
    prompter.msgBox(com::errorText(e, com::ErrorForm::Plain), ui::Buttons::OK, ui::Icon::Stop, 1, QString());
}

} // namespace scripts
