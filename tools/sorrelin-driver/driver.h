#pragma once

#include "app/program.h"
#include "platform/ui/scriptedprompter.h"

#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QQueue>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace driver {

/// Runs the program's real forms and answers one command a line. A command
/// that acts as a user would runs from the event loop, and is answered when
/// it returns or as soon as it opens a modal form; the commands after it are
/// then taken inside that form's own loop, as a user goes on clicking.
class Driver : public QObject {
    Q_OBJECT

public:
    explicit Driver(QString home);
    ~Driver() override;

    /// One line of input.
    void take(const QString &line);
    /// The input has ended: quit once every command has been answered.
    void inputEnded();

Q_SIGNALS:
    void answered(const QByteArray &line);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void next();
    void reply(QJsonObject answer);
    struct Pending;
    /// Answers a user's act, once, and goes on with the next command.
    void answer(const std::shared_ptr<Pending> &pending);
    void fail(const QString &error);
    /// Runs `action` as a user's act. It is answered when it returns, when
    /// a modal form opens, or with `menuAnswers` when a context menu opens.
    void act(std::function<void()> action, bool menuAnswers = false);
    void run(const QString &line);
    /// Refuses a user's act on `widget` that a modal form or an open menu
    /// keeps the user from: true when it was refused.
    bool unreachable(const QWidget *widget);
    QWidget *form(const QString &name);
    QWidget *mainForm();
    QJsonObject state();

    /// One command: its arguments are the rest of the line.
    using Command = void (Driver::*)(const QString &rest);
    /// Every command by its name.
    static const QHash<QString, Command> &commands();

    // Commands that answer at once.
    void fixture(const QString &rest);
    void reg(const QString &rest);
    void regDelete(const QString &rest);
    void regGet(const QString &rest);
    void queueAnswer(const QString &rest);
    void clipboard(const QString &rest);
    void stateCommand(const QString &rest);
    void printer(const QString &rest);
    void storeDump(const QString &rest);
    void file(const QString &rest);
    void pdftext(const QString &rest);
    void screenshot(const QString &rest);
    void log(const QString &rest);
    // A user's acts: they run from the event loop.
    void start(const QString &rest);
    void quit(const QString &rest);
    void click(const QString &rest);
    void rclick(const QString &rest);
    /// A left or right click on the main tree's node at `path`.
    void clickTreeNode(const QString &path, bool right);
    void select(const QString &rest);
    void menu(const QString &rest);
    void toolbar(const QString &rest);
    void tab(const QString &rest);
    void press(const QString &rest);
    void key(const QString &rest);
    void type(const QString &rest);
    void choose(const QString &rest);
    void grid(const QString &rest);
    void dblclick(const QString &rest);
    void resize(const QString &rest);
    void maximize(const QString &rest);
    void close(const QString &rest);

    void setRegistryValue(const QString &rest, bool remove);

    QString m_home;
    ui::ScriptedPrompter m_prompter;
    std::unique_ptr<app::Program> m_program;
    QString m_storePath;
    qsizetype m_logSeen = 0;
    QQueue<QString> m_lines;
    bool m_busy = false;
    bool m_inputEnded = false;
    bool m_started = false;
    bool m_ended = false;
    struct Pending {
        bool answered = false;
        bool menuAnswers = false;
        bool deferred = false; ///< done, waiting for the act that opened the form it closed
        QString error;
    };
    std::shared_ptr<Pending> m_pending;
    /// User's acts that have begun and not yet returned (nested in modal forms).
    int m_running = 0;
};

} // namespace driver
