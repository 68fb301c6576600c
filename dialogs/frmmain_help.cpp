// The Help menu's way into the help pages.
#include "app/frmmain.h"
#include "platform/com/comerror.h"
#include "platform/os/helpviewer.h"

namespace {

/// Opens one view of the help viewer; a failure shows its description.
template <class Open> void openHelp(frmMain &form, const QString &noHelpText, Open open)
{
    if (form.helpFile.isEmpty()) {
        form.prompter().msgBox(noHelpText, ui::Buttons::OK, ui::Icon::Information, 1, form.windowTitle());
        return;
    }
    try {
        open(*os::HelpViewer::instance());
    } catch (const com::ComError &e) {
        form.prompter().msgBox(e.description(), ui::Buttons::OK, ui::Icon::Information, 1, QString());
    }
}

} // namespace

void frmMain::mnuHelpContents_Click()
{
    openHelp(
        *this,
        QStringLiteral("Unable to display Help Contents. There is no Help associated with this project."),
        [](os::HelpViewer &viewer) { viewer.showContents(); });
}

void frmMain::mnuHelpSearch_Click()
{
    openHelp(*this,
             QStringLiteral("Unable to display Help Index. There is no Help associated with this project."),
             [](os::HelpViewer &viewer) { viewer.showIndex(); });
}
