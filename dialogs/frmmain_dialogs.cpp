// The program's own dialogs: Options and About.
#include "app/frmmain.h"
#include "app/program.h"
#include "dialogs/frmabout.h"
#include "dialogs/frmoptions.h"

void frmMain::mnuViewOptions_Click()
{
    frmOptions form(*this);
    form.exec();
}

void frmMain::mnuHelpAbout_Click()
{
    frmAbout form(m_program, this);
    form.exec();
}
