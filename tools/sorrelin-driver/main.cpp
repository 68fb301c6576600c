// sorrelin-driver: runs the program's real forms offscreen against a
// fixture, and takes one command a line on standard input.
#include "app/application.h"
#include "tools/sorrelin-driver/driver.h"

#include "platform/os/userfolders.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

/// Reads standard input on its own thread, so that the program's event
/// loops, modal ones included, keep running between lines.
class LineReader : public QThread {
    Q_OBJECT

public:
    using QThread::QThread;

Q_SIGNALS:
    void line(const QString &text);
    void ended();

protected:
    void run() override
    {
        std::string text;
        while (std::getline(std::cin, text))
            Q_EMIT line(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
        Q_EMIT ended();
    }
};

} // namespace

int main(int argc, char *argv[])
{
    QString keep;
    for (int i = 1; i + 1 < argc; ++i)
        if (QString::fromLocal8Bit(argv[i]) == QLatin1String("--keep"))
            keep = QString::fromLocal8Bit(argv[i + 1]);
    QTemporaryDir temporary;
    const QString home = keep.isEmpty() ? temporary.path() : QDir(keep).absolutePath();
    os::redirectUserFolders(home);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    app::Application app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    driver::Driver driver(home);
    QObject::connect(&driver, &driver::Driver::answered, &app, [](const QByteArray &line) {
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
        std::fputc('\n', stdout);
        std::fflush(stdout);
    });
    LineReader reader;
    QObject::connect(&reader, &LineReader::line, &driver, &driver::Driver::take, Qt::QueuedConnection);
    QObject::connect(&reader, &LineReader::ended, &driver, &driver::Driver::inputEnded, Qt::QueuedConnection);
    reader.start();
    const int code = QApplication::exec();
    reader.wait(100);
    if (reader.isRunning())
        reader.terminate(); // input still open after an exit of ours
    return code;
}

#include "main.moc"
