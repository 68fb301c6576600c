// The script pane's own commands: the Edit menu, the caret line in the
// status bar, and the pane's font.
#include "app/frmmain.h"
#include "app/generaldate.h"

#include "platform/com/routine.h"
#include "platform/controls/sstree.h"
#include "scripts/fontladder.h"
#include "scripts/scriptmarker.h"
#include "scripts/scriptpane.h"

#include <QAction>
#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>
#include <QMimeData>

using namespace scripts;

namespace {

void setPaneSize(scripts::ScriptPane *pane, double size)
{
    QFont f = pane->font();
    f.setPointSizeF(size);
    pane->setFont(f);
}

} // namespace

void frmMain::UpdateStatus()
{
    // Characters just left out of the pane are told until the user moves on.
    const QStringList leftOut = txtPreview->leftOut();
    StatBar(leftOut.isEmpty()
                ? QStringLiteral("Line: %1/%2").arg(txtPreview->caretLine()).arg(txtPreview->lineCount())
                : scripts::leftOutText(leftOut));
}

void frmMain::txtPreview_KeyUp(int keyCode, int shift)
{
    Q_UNUSED(shift);
    UpdateStatus();
    const bool paneShown = action(app::Command::ViewPreview)->isChecked();
    const double size = txtPreview->font().pointSizeF();
    if (keyCode == 117) // F6
        setPaneSize(txtPreview, keyDecrease(size, paneShown));
    else if (keyCode == 118) // F7
        setPaneSize(txtPreview, keyIncrease(size, paneShown));
}

void frmMain::mnuEdit_Click()
{
    action(app::Command::EditUndo)->setEnabled(txtPreview->canUndo());
}

void frmMain::mnuEditUndo_Click()
{
    txtPreview->undo();
}

void frmMain::mnuEditCut_Click()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(txtPreview->selText());
    txtPreview->setSelText(QString());
}

void frmMain::mnuEditCopy_Click()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(txtPreview->selText());
}

void frmMain::mnuEditPaste_Click()
{
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    if (data && data->hasText())
        txtPreview->setSelText(data->text());
}

void frmMain::mnuEditSelectAll_Click()
{
    txtPreview->selectAll();
}

void frmMain::mnuEditTimeDate_Click()
{
    txtPreview->setSelText(generalDate(QDateTime::currentDateTime()));
}

void frmMain::mnuViewDecrease_Click()
{
    setPaneSize(txtPreview, menuDecrease(txtPreview->font().pointSizeF(),
                                         action(app::Command::ViewPreview)->isChecked()));
}

void frmMain::mnuViewIncrease_Click()
{
    setPaneSize(txtPreview, menuIncrease(txtPreview->font().pointSizeF()));
}

void frmMain::mnuViewSetFont()
{
    CommonDialog1.flags = 1027; // screen and printer fonts, 8-bit character sets
    const QFont current = txtPreview->font();
    CommonDialog1.fontName = current.family();
    CommonDialog1.fontBold = current.bold();
    CommonDialog1.fontItalic = current.italic();
    CommonDialog1.fontSize = current.pointSizeF();
    if (!prompter().showFont(CommonDialog1))
        return;
    QFont f = current;
    f.setFamily(CommonDialog1.fontName);
    f.setBold(CommonDialog1.fontBold);
    f.setItalic(CommonDialog1.fontItalic);
    f.setPointSizeF(CommonDialog1.fontSize);
    txtPreview->setFont(f);
}
