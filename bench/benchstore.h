#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTemporaryDir>

namespace ui {
class ScriptedPrompter;
}
namespace app {
struct Program;
}
class frmMain;
namespace store {
class Database;
}

namespace bench {

/// The store a benchmark runs on: the file named on its command line, or a
/// generated one in `dir`: 4 stores, `--folders N` folders (20,000 unless
/// given), `--agents M` agents (5,000), a tenth as many other hidden
/// messages as folders and as many ordinary messages as folders.
QString benchStore(int argc, char *argv[], const QTemporaryDir &dir);

/// Points the user's folders into `dir` and picks the offscreen platform,
/// unless one is set; before the application object is made.
void prepareEnvironment(const QTemporaryDir &dir);

/// Writes the profile "Bench" of Alice Admin on `storePath`, and has the
/// prompter take it when the program logs on.
void useBenchProfile(ui::ScriptedPrompter &prompter, const QString &storePath);

/// Starts the program on the profile "Bench" of `storePath` and lets its
/// main window settle; the main window, or null when the start failed.
frmMain *startOnBenchStore(ui::ScriptedPrompter &prompter, app::Program &program, const QString &storePath);

/// Notes the time on `timer` at which the form named `formName` shows and
/// the rows of its grid, and closes it as a user would. Installed on the
/// application for the command that opens the form.
class ShowWatch : public QObject {
public:
    ShowWatch(QString formName, const QElapsedTimer &timer) : m_name(std::move(formName)), m_timer(timer) {}
    double elapsed = 0; ///< milliseconds
    int rows = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QString m_name;
    const QElapsedTimer &m_timer;
};

/// The peak resident memory of this process, in megabytes.
long peakMemoryMB();

/// The machine's load average over the last minute, as `uptime` shows it.
double loadAverage();

/// The time of one plain SQL pass over the rows a refresh of the folder
/// tree reads: every folder with the user's rights, the hidden messages'
/// classes, and the binding messages with their handler field, each value
/// read and nothing built from it. In milliseconds, the median of 5.
double sqlPassMs(const store::Database &db, const QString &user);

} // namespace bench
