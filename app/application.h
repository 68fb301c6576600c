#pragma once

#include "platform/com/comerror.h"

#include <QApplication>

#include <functional>

namespace app {

/// The program's application object. An error that no handler caught is
/// shown and the program goes on; and each act of the user (an event that
/// the loop takes up outside any other) is announced before it runs.
class Application : public QApplication {
    Q_OBJECT

public:
    Application(int &argc, char **argv);

    bool notify(QObject *receiver, QEvent *event) override;

    /// Shows an error that escaped every handler; without one it is only
    /// written to the error channel.
    std::function<void(const com::ComError &error)> showEscaped;

Q_SIGNALS:
    void actBegins();

private:
    int m_depth = 0;
};

} // namespace app
