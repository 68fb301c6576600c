#include "platform/ui/scriptedprompter.h"
#include "platform/ui/printchoice.h"

#include "platform/mapi/profiles.h"
#include "platform/ui/commondialogflags.h"
#include "platform/ui/profileeditor.h"

#include <QFileInfo>
#include <QPrinter>

namespace ui {

namespace {

const QString kCancel = QStringLiteral("Cancel");

QString titleOf(const QString &title)
{
    return title.isEmpty() ? QStringLiteral("Sorrelin") : title;
}

bool isTrue(const QString &word)
{
    const QString w = word.trimmed();
    return w == QLatin1String("1") || w.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
}

bool isBoolean(const QString &word)
{
    const QString w = word.trimmed();
    return isTrue(w) || w == QLatin1String("0") ||
           w.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0;
}

} // namespace

QString ScriptedPrompter::iconName(Icon icon)
{
    switch (icon) {
    case Icon::Stop:
        return QStringLiteral("stop");
    case Icon::Question:
        return QStringLiteral("question");
    case Icon::Exclamation:
        return QStringLiteral("exclamation");
    case Icon::Information:
        return QStringLiteral("information");
    case Icon::None:
        break;
    }
    return QStringLiteral("none");
}

QString ScriptedPrompter::buttonsName(Buttons buttons)
{
    switch (buttons) {
    case Buttons::OK:
        return QStringLiteral("OK");
    case Buttons::OKCancel:
        return QStringLiteral("OKCancel");
    case Buttons::YesNo:
        return QStringLiteral("YesNo");
    case Buttons::YesNoCancel:
        return QStringLiteral("YesNoCancel");
    }
    return QString();
}

QStringList ScriptedPrompter::buttonNames(Buttons buttons)
{
    switch (buttons) {
    case Buttons::OK:
        return {QStringLiteral("OK")};
    case Buttons::OKCancel:
        return {QStringLiteral("OK"), kCancel};
    case Buttons::YesNo:
        return {QStringLiteral("Yes"), QStringLiteral("No")};
    case Buttons::YesNoCancel:
        return {QStringLiteral("Yes"), QStringLiteral("No"), kCancel};
    }
    return {};
}

QList<PromptRecord> ScriptedPrompter::takePrompts()
{
    QList<PromptRecord> prompts;
    prompts.swap(m_prompts);
    return prompts;
}

QString ScriptedPrompter::takeError()
{
    const QString error = m_errors.join(QStringLiteral("; "));
    m_errors.clear();
    return error;
}

bool ScriptedPrompter::next(PromptRecord &r, QString &answer)
{
    if (!m_answers.isEmpty()) {
        answer = m_answers.dequeue();
        return true;
    }
    const QString what = r.text.isEmpty() ? r.title : r.text;
    r.error = QStringLiteral("no answer queued for the %1 \"%2\"").arg(r.kind, what);
    m_errors << r.error;
    return false;
}

void ScriptedPrompter::fail(PromptRecord &r, const QString &error, const QString &safest)
{
    r.error = error;
    r.answer = safest;
    m_errors << error;
}

Answer ScriptedPrompter::msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                                const QString &title)
{
    return msgBoxDetail(text, QString(), buttons, icon, defaultButton, title);
}

Answer ScriptedPrompter::msgBoxDetail(const QString &text, const QString &detail, Buttons buttons, Icon icon,
                                      int defaultButton, const QString &title)
{
    PromptRecord r;
    r.kind = QStringLiteral("msgbox");
    if (!detail.isEmpty())
        r.extra.insert(QStringLiteral("detail"), detail);
    r.text = text;
    r.title = titleOf(title);
    r.icon = iconName(icon);
    r.buttons = buttonsName(buttons);
    const QStringList names = buttonNames(buttons);
    r.defaultButton = names.value(qBound(1, defaultButton, static_cast<int>(names.size())) - 1);
    const QString safest = names.contains(kCancel)                ? kCancel
                           : names.contains(QStringLiteral("No")) ? QStringLiteral("No")
                                                                  : QStringLiteral("OK");
    if (!next(r, r.answer))
        r.answer = safest;
    else if (!names.contains(r.answer))
        fail(r, QStringLiteral("the answer \"%1\" is no button of the message \"%2\"").arg(r.answer, text),
             safest);
    record(r);
    if (r.answer == QLatin1String("Yes"))
        return Answer::Yes;
    if (r.answer == QLatin1String("No"))
        return Answer::No;
    if (r.answer == kCancel)
        return Answer::Cancel;
    return Answer::OK;
}

QString ScriptedPrompter::inputBox(const QString &prompt, const QString &title, const QString &defaultText)
{
    PromptRecord r;
    r.kind = QStringLiteral("inputbox");
    r.text = prompt;
    r.title = titleOf(title);
    r.extra.insert(QStringLiteral("default"), defaultText);
    QString result;
    if (!next(r, r.answer)) {
        r.answer = kCancel;
    } else if (r.answer.startsWith(QLatin1String("text:"))) {
        result = r.answer.mid(5);
    } else if (r.answer == QLatin1String("OK")) {
        result = defaultText;
    } else if (r.answer != kCancel) {
        fail(r, QStringLiteral("the answer \"%1\" doesn't fit the input box \"%2\"").arg(r.answer, prompt),
             kCancel);
    }
    record(r);
    return result;
}

bool ScriptedPrompter::fileDialog(const QString &kind, CommonDialogState &state)
{
    PromptRecord r;
    r.kind = kind;
    r.title = state.dialogTitle;
    r.extra.insert(QStringLiteral("filter"), state.filter);
    r.extra.insert(QStringLiteral("filterIndex"), state.filterIndex);
    r.extra.insert(QStringLiteral("fileName"), state.fileName);
    r.extra.insert(QStringLiteral("initDir"), state.initDir);
    r.extra.insert(QStringLiteral("flags"), state.flags);
    if (state.executableFilter > 0)
        r.extra.insert(QStringLiteral("executableFilter"), state.executableFilter);
    bool chosen = false;
    if (!next(r, r.answer)) {
        r.answer = kCancel;
    } else if (r.answer.startsWith(QLatin1String("file:")) ||
               (r.answer == QLatin1String("OK") && !state.fileName.isEmpty())) {
        const QString path = r.answer == QLatin1String("OK") ? state.fileName : r.answer.mid(5);
        // "File must exist" holds for open dialogs only.
        if (kind == QLatin1String("open") && (state.flags & kFileMustExist) && !QFileInfo::exists(path)) {
            fail(r,
                 QStringLiteral("the file \"%1\" doesn't exist and the dialog takes only existing files")
                     .arg(path),
                 kCancel);
        } else {
            state.fileName = path;
            state.fileTitle = QFileInfo(path).fileName();
            if (state.filterIndex < 1 && !state.filter.isEmpty())
                state.filterIndex = 1;
            chosen = true;
        }
    } else if (r.answer != kCancel) {
        fail(r, QStringLiteral("the answer \"%1\" doesn't fit the %2 dialog").arg(r.answer, kind), kCancel);
    }
    record(r);
    return chosen;
}

bool ScriptedPrompter::showOpen(CommonDialogState &state)
{
    return fileDialog(QStringLiteral("open"), state);
}

bool ScriptedPrompter::showSave(CommonDialogState &state)
{
    return fileDialog(QStringLiteral("save"), state);
}

bool ScriptedPrompter::showFont(CommonDialogState &state)
{
    PromptRecord r;
    r.kind = QStringLiteral("font");
    r.title = state.dialogTitle;
    r.extra.insert(QStringLiteral("fontName"), state.fontName);
    r.extra.insert(QStringLiteral("fontSize"), state.fontSize);
    r.extra.insert(QStringLiteral("fontBold"), state.fontBold);
    r.extra.insert(QStringLiteral("fontItalic"), state.fontItalic);
    r.extra.insert(QStringLiteral("flags"), state.flags);
    if (state.executableFilter > 0)
        r.extra.insert(QStringLiteral("executableFilter"), state.executableFilter);
    bool chosen = false;
    if (!next(r, r.answer)) {
        r.answer = kCancel;
    } else if (r.answer.startsWith(QLatin1String("font:"))) {
        const QStringList parts = r.answer.mid(5).split(QLatin1Char(','));
        bool ok = parts.size() == 4 && !parts.at(0).trimmed().isEmpty() && isBoolean(parts.at(2)) &&
                  isBoolean(parts.at(3));
        const double size = ok ? parts.at(1).trimmed().toDouble(&ok) : 0;
        if (ok && size > 0) {
            state.fontName = parts.at(0).trimmed();
            state.fontSize = size;
            state.fontBold = isTrue(parts.at(2));
            state.fontItalic = isTrue(parts.at(3));
            chosen = true;
        } else {
            fail(r, QStringLiteral("the font answer \"%1\" is not NAME,SIZE,BOLD,ITALIC").arg(r.answer),
                 kCancel);
        }
    } else if (r.answer != kCancel) {
        fail(r, QStringLiteral("the answer \"%1\" doesn't fit the font dialog").arg(r.answer), kCancel);
    }
    record(r);
    return chosen;
}

QString ScriptedPrompter::chooseProfile(const ProfileChoice &first)
{
    ProfileChoice choice = first;
    QString made; // the profile the editor recorded last
    for (;;) {
        PromptRecord r;
        r.kind = QStringLiteral("profile");
        r.text = choice.profiles.join(QLatin1Char('\n'));
        r.title = QStringLiteral("Choose Profile");
        r.extra.insert(QStringLiteral("default"), choice.defaultProfile);
        r.extra.insert(QStringLiteral("offerDemo"), choice.offerDemo);
        const QStringList listed = choice.offerDemo ? QStringList{choice.demoProfile} : choice.profiles;
        // With nothing queued, or "OK", the dialog takes the profile it
        // offers: the one just made in the editor, if any.
        const QString offered = !made.isEmpty()               ? made
                                : !m_defaultProfile.isEmpty() ? m_defaultProfile
                                : choice.offerDemo            ? choice.demoProfile
                                                              : choice.defaultProfile;
        const auto listedAs = [&listed](const QString &name) {
            for (const QString &p : listed) {
                if (p.compare(name, Qt::CaseInsensitive) == 0)
                    return p;
            }
            return QString();
        };
        QString chosen;
        const bool queued = !m_answers.isEmpty();
        r.answer = queued ? m_answers.dequeue() : QStringLiteral("OK");
        const bool properties = r.answer.startsWith(QLatin1String("Properties "));
        if (r.answer == QLatin1String("New") || properties) {
            // The editor opens over the chooser; when it closes the chooser
            // is asked again.
            const QString editing = properties ? listedAs(r.answer.mid(11).trimmed()) : QString();
            if (properties && (editing.isEmpty() || choice.offerDemo)) {
                fail(r,
                     QStringLiteral("the profile dialog has no profile \"%1\" to edit").arg(r.answer.mid(11)),
                     kCancel);
                record(r);
                return QString();
            }
            record(r);
            ProfileEditor editor(*this, editing, nullptr);
            if (editor.exec() == QDialog::Accepted)
                made = editor.saved();
            choice = mapi::profileChoice();
            continue;
        }
        if (r.answer == QLatin1String("OK"))
            chosen = offered;
        else if (r.answer != kCancel && (chosen = listedAs(r.answer)).isEmpty())
            fail(r, QStringLiteral("the profile dialog offers no profile \"%1\"").arg(r.answer), kCancel);
        if (!queued)
            r.answer = chosen;
        record(r);
        return chosen;
    }
}

bool ScriptedPrompter::printDialog(const QString &kind, QPrinter &printer)
{
    PromptRecord r;
    r.kind = kind;
    r.extra.insert(QStringLiteral("outputFileName"), printer.outputFileName());
    bool accepted = false;
    if (!next(r, r.answer))
        r.answer = kCancel;
    else if (r.answer == QLatin1String("OK"))
        accepted = true;
    else if (r.answer != kCancel)
        fail(r, QStringLiteral("the answer \"%1\" doesn't fit the %2 dialog").arg(r.answer, kind), kCancel);
    record(r);
    return accepted;
}

bool ScriptedPrompter::pageSetup(QPrinter &printer)
{
    return printDialog(QStringLiteral("pagesetup"), printer);
}

bool ScriptedPrompter::print(QPrinter &printer)
{
    return printDialog(QStringLiteral("print"), printer);
}

bool ScriptedPrompter::choosePrinter(QPrinter &printer, const QString &title)
{
    if (m_printFile.isEmpty())
        return printToDocuments(printer, title);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_printFile);
    return false;
}

} // namespace ui
