#include "app/application.h"

namespace app {

Application::Application(int &argc, char **argv) : QApplication(argc, argv) {}

bool Application::notify(QObject *receiver, QEvent *event)
{
    if (m_depth == 0)
        Q_EMIT actBegins();
    struct Depth {
        int &depth;
        explicit Depth(int &d) : depth(d) { ++depth; }
        ~Depth() { --depth; }
    } depth(m_depth);
    com::ComError escaped;
    try {
        return QApplication::notify(receiver, event);
    } catch (const com::ComError &e) {
        escaped = e;
    } catch (const std::exception &e) {
        escaped =
            com::ComError(com::err::CallFailed, QStringLiteral("Sorrelin"), QString::fromLocal8Bit(e.what()));
    }
    qWarning("Sorrelin: %s", escaped.what());
    if (showEscaped)
        showEscaped(escaped);
    return false;
}

} // namespace app
