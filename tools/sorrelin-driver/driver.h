#pragma once

#include "app/program.h"
#include "platform/ui/scriptedprompter.h"

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
    /// A user's act (click, menu, press, ...); false for an unknown command.
    bool userAction(const QString &command, const QString &rest);
    /// `fail` and `act` for a command that was known: they give true.
    bool failed(const QString &error);
    bool acted(std::function<void()> action, bool menuAnswers = false);
    /// Refuses a user's act on `widget` that a modal form or an open menu
    /// keeps the user from: true when it was refused.
    bool unreachable(const QWidget *widget);

    // Commands.
    void fixture(const QString &path);
    void reg(const QString &rest, bool remove);
    void regGet(const QString &rest);
    QJsonObject state();
    QWidget *form(const QString &name);
    QWidget *mainForm();

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
