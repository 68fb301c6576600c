#pragma once

#include "platform/controls/ssdbgrid.h"
#include "platform/ui/cancelbutton.h"

#include <QDialog>
#include <QHash>
#include <QList>
#include <QRect>
#include <QString>

class QLabel;
class QPushButton;
class frmMain;

namespace catalogue {

/// One button of a report window's row: its name, caption, left position
/// in twips before any resize, and its own help context (0: the form's).
struct ReportButton {
    QString name;
    QString caption;
    int left = 0;
    int helpContext = 0;
};

/// Whose caption heads a printed page.
enum class PrintTitle { FormCaption, GridCaption };

/// What sets one report window apart from the others.
struct ReportSetup {
    QString formName;
    QString designCaption;
    int clientWidth = 0; ///< twips
    int clientHeight = 0;
    int gridWidth = 0;
    int gridHeight = 0;
    int buttonTop = 0;
    QList<ReportButton> buttons; ///< left to right
    /// A sizable border: the layout follows the window down to its least width.
    bool resizes = false;
    bool fontKeys = false; ///< F6 and F7 make the grid's font smaller and larger
    double printMargins = 0.5;
    bool printSwitch12 = false;
    PrintTitle printTitle = PrintTitle::FormCaption;
    QString saveAsBase{}; ///< "Routing Map": the window has Save As
    QString defaultButton{};
    int helpContext = 0;
};

/// The four report windows, as the table of their differences sets them.
const ReportSetup &frmScriptsSetup();
const ReportSetup &frmMapSetup();
const ReportSetup &frmMessagesSetup();
const ReportSetup &frmTrackingSetup();

/// A modal window with one read-only grid, `SSDBGrid1`, filled by its caller
/// before it shows, and a row of buttons below it: print, close, help, and
/// the buttons of its use. A form that needs more (Go To, the map, the
/// tracking window, its own page header) connects to the buttons and the
/// grid's signals, and may rewrite `SSDBGrid1_PrintInitialize`'s result
/// through `printInitialized`.
class ReportWindow : public QDialog, public ui::CancelButton {
    Q_OBJECT

public:
    ReportWindow(const ReportSetup &setup, frmMain &main, QWidget *parent = nullptr);

    controls::SSDBGrid *SSDBGrid1 = nullptr;
    /// The folder the rows come from, as the print's header names it.
    QString strFolderPath;
    /// A button of the row by name ("cmdGoTo"), or null.
    QPushButton *button(const QString &name) const;
    const ReportSetup &setup() const { return m_setup; }
    /// Adds a label to the window, placed in twips like the other controls.
    QLabel *addLabel(const QString &name, const QString &caption, int left, int top, int width, int height);
    /// Where the window last placed a control of its own, in twips (a pixel
    /// is 15 twips, and the layout's lengths aren't multiples of it); a null
    /// rectangle for one it never placed.
    QRect placedTwips(const QWidget *control) const { return m_twips.value(control); }
    /// Close: Esc closes the window as it does.
    const QPushButton *cancelButton() const override;

    void Form_Resize();
    void cmdPrint_Click();
    void cmdClose_Click();
    void cmdHelp_Click();
    void cmdSaveAs_Click();
    void SSDBGrid1_PrintInitialize(controls::PrintInfo &info);
    void SSDBGrid1_KeyUp(int keyCode, int shift);

Q_SIGNALS:
    /// After the window's own print settings, for a form that adds its own.
    void printInitialized(controls::PrintInfo &info);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void place(QWidget *control, int left, int top, int width, int height);

    QHash<const QWidget *, QRect> m_twips;
    const ReportSetup &m_setup;
    frmMain &m_main;
};

} // namespace catalogue
