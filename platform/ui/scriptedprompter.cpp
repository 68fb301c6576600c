#include "platform/ui/scriptedprompter.h"

#include <QFileInfo>

namespace ui {

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
        return {QStringLiteral("OK"), QStringLiteral("Cancel")};
    case Buttons::YesNo:
        return {QStringLiteral("Yes"), QStringLiteral("No")};
    case Buttons::YesNoCancel:
        return {QStringLiteral("Yes"), QStringLiteral("No"), QStringLiteral("Cancel")};
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

bool ScriptedPrompter::next(PromptRecord &record, QString &answer)
{
    if (m_answers.isEmpty()) {
        m_errors << QStringLiteral("no answer queued for the %1 \"%2\"").arg(record.kind, record.text);
        return false;
    }
    answer = m_answers.dequeue();
    return true;
}

Answer ScriptedPrompter::msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                                const QString &title)
{
    PromptRecord r;
    r.kind = QStringLiteral("msgbox");
    r.text = text;
    r.title = title.isEmpty() ? QStringLiteral("Sorrelin") : title;
    r.icon = iconName(icon);
    r.buttons = buttonsName(buttons);
    const QStringList names = buttonNames(buttons);
    r.defaultButton = names.value(qBound(1, defaultButton, static_cast<int>(names.size())) - 1);
    QString answer;
    // The safest answer when nothing fits: Cancel where there is one, else No, else OK.
    const QString safest = names.contains(QStringLiteral("Cancel")) ? QStringLiteral("Cancel")
                           : names.contains(QStringLiteral("No"))   ? QStringLiteral("No")
                                                                    : QStringLiteral("OK");
    if (!next(r, answer)) {
        answer = safest;
    } else if (!names.contains(answer)) {
        m_errors << QStringLiteral("the answer \"%1\" is no button of the message \"%2\"").arg(answer, text);
        answer = safest;
    }
    r.answer = answer;
    m_prompts << r;
    if (answer == QLatin1String("Yes"))
        return Answer::Yes;
    if (answer == QLatin1String("No"))
        return Answer::No;
    if (answer == QLatin1String("Cancel"))
        return Answer::Cancel;
    return Answer::OK;
}

QString ScriptedPrompter::inputBox(const QString &prompt, const QString &title, const QString &defaultText)
{
    PromptRecord r;
    r.kind = QStringLiteral("inputbox");
    r.text = prompt;
    r.title = title;
    r.extra.insert(QStringLiteral("default"), defaultText);
    QString answer;
    QString result;
    if (next(r, answer)) {
        if (answer.startsWith(QLatin1String("text:")))
            result = answer.mid(5);
        else if (answer == QLatin1String("OK"))
            result = defaultText;
        else if (answer != QLatin1String("Cancel"))
            m_errors
                << QStringLiteral("the answer \"%1\" doesn't fit the input box \"%2\"").arg(answer, prompt);
    } else {
        answer = QStringLiteral("Cancel");
    }
    r.answer = answer;
    m_prompts << r;
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
    QString answer;
    bool chosen = false;
    if (next(r, answer)) {
        if (answer.startsWith(QLatin1String("file:"))) {
            const QString path = answer.mid(5);
            // "File must exist" (0x1000) holds for open dialogs only.
            if (kind == QLatin1String("open") && (state.flags & 0x1000) && !QFileInfo::exists(path)) {
                m_errors << QStringLiteral(
                                "the file \"%1\" doesn't exist and the dialog takes only existing files")
                                .arg(path);
            } else {
                state.fileName = path;
                state.fileTitle = QFileInfo(path).fileName();
                chosen = true;
            }
        } else if (answer != QLatin1String("Cancel")) {
            m_errors << QStringLiteral("the answer \"%1\" doesn't fit the %2 dialog").arg(answer, kind);
        }
    } else {
        answer = QStringLiteral("Cancel");
    }
    r.answer = answer;
    m_prompts << r;
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
    r.extra.insert(QStringLiteral("fontName"), state.fontName);
    r.extra.insert(QStringLiteral("fontSize"), state.fontSize);
    r.extra.insert(QStringLiteral("fontBold"), state.fontBold);
    r.extra.insert(QStringLiteral("fontItalic"), state.fontItalic);
    r.extra.insert(QStringLiteral("flags"), state.flags);
    QString answer;
    bool chosen = false;
    if (next(r, answer)) {
        if (answer.startsWith(QLatin1String("font:"))) {
            const QStringList parts = answer.mid(5).split(QLatin1Char(','));
            bool ok = parts.size() == 4;
            const double size = ok ? parts.at(1).trimmed().toDouble(&ok) : 0;
            if (ok) {
                state.fontName = parts.at(0).trimmed();
                state.fontSize = size;
                state.fontBold =
                    parts.at(2).trimmed() == QLatin1String("1") ||
                    parts.at(2).trimmed().compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
                state.fontItalic =
                    parts.at(3).trimmed() == QLatin1String("1") ||
                    parts.at(3).trimmed().compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
                chosen = true;
            } else {
                m_errors << QStringLiteral("the font answer \"%1\" is not NAME,SIZE,BOLD,ITALIC").arg(answer);
            }
        } else if (answer != QLatin1String("Cancel")) {
            m_errors << QStringLiteral("the answer \"%1\" doesn't fit the font dialog").arg(answer);
        }
    } else {
        answer = QStringLiteral("Cancel");
    }
    r.answer = answer;
    m_prompts << r;
    return chosen;
}

QString ScriptedPrompter::chooseProfile(const ProfileChoice &choice)
{
    PromptRecord r;
    r.kind = QStringLiteral("profile");
    r.text = choice.profiles.join(QLatin1Char('\n'));
    r.extra.insert(QStringLiteral("default"), choice.defaultProfile);
    r.extra.insert(QStringLiteral("offerDemo"), choice.offerDemo);
    // With nothing queued, or "OK", the dialog takes the profile it offers.
    const QString offered = !m_defaultProfile.isEmpty() ? m_defaultProfile
                            : choice.offerDemo          ? choice.demoProfile
                                                        : choice.defaultProfile;
    QString answer = m_answers.isEmpty() ? offered : m_answers.dequeue();
    r.answer = answer;
    m_prompts << r;
    if (answer == QLatin1String("Cancel"))
        return QString();
    return answer == QLatin1String("OK") ? offered : answer;
}

} // namespace ui
