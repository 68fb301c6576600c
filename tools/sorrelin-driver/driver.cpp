#include "tools/sorrelin-driver/driver.h"

#include "app/basregistry.h"
#include "app/frmmain.h"
#include "platform/com/escapes.h"
#include "platform/mapi/profiles.h"
#include "platform/os/applog.h"
#include "platform/store/database.h"
#include "platform/store/fixture.h"
#include "tools/sorrelin-driver/formreader.h"
#include "tools/sorrelin-driver/words.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMenu>
#include <QProcess>
#include <QTimer>
#include <QtEndian>

namespace driver {

namespace {

registry::HKEY rootKey(const QString &name)
{
    const QString n = name.toUpper();
    if (n == QLatin1String("HKEY_CLASSES_ROOT") || n == QLatin1String("HKCR"))
        return registry::HKEY_CLASSES_ROOT;
    if (n == QLatin1String("HKEY_LOCAL_MACHINE") || n == QLatin1String("HKLM"))
        return registry::HKEY_LOCAL_MACHINE;
    if (n == QLatin1String("HKEY_CURRENT_USER") || n == QLatin1String("HKCU"))
        return registry::HKEY_CURRENT_USER;
    return 0;
}

QJsonObject promptJson(const ui::PromptRecord &p)
{
    QJsonObject o{{QStringLiteral("kind"), p.kind},
                  {QStringLiteral("text"), p.text},
                  {QStringLiteral("title"), p.title},
                  {QStringLiteral("answer"), p.answer}};
    if (p.kind == QLatin1String("msgbox")) {
        o.insert(QStringLiteral("icon"), p.icon);
        o.insert(QStringLiteral("buttons"), p.buttons);
        o.insert(QStringLiteral("default"), p.defaultButton);
    }
    for (auto it = p.extra.constBegin(); it != p.extra.constEnd(); ++it)
        o.insert(it.key(), QJsonValue::fromVariant(it.value()));
    return o;
}

QJsonArray logLines(const QVector<os::LogRecord> &records, qsizetype from)
{
    QJsonArray lines;
    for (qsizetype i = from; i < records.size(); ++i)
        lines.append(QJsonObject{{QStringLiteral("type"), records.at(i).type},
                                 {QStringLiteral("text"), records.at(i).text}});
    return lines;
}

} // namespace

Driver::Driver(QString home) : m_home(std::move(home))
{
    qApp->installEventFilter(this);
}

Driver::~Driver()
{
    qApp->removeEventFilter(this);
}

void Driver::take(const QString &line)
{
    // "{home}" stands for the driver's temporary folder.
    m_lines.enqueue(QString(line).replace(QLatin1String("{home}"), m_home));
    if (!m_busy)
        next();
}

void Driver::inputEnded()
{
    m_inputEnded = true;
    if (!m_busy && m_lines.isEmpty())
        QCoreApplication::exit(0);
}

void Driver::next()
{
    while (!m_busy && !m_lines.isEmpty()) {
        const QString line = m_lines.dequeue();
        if (line.trimmed().isEmpty() || line.trimmed().startsWith(QLatin1Char('#')))
            continue;
        run(line);
    }
    if (!m_busy && m_lines.isEmpty() && m_inputEnded)
        QCoreApplication::exit(0);
}

void Driver::reply(QJsonObject answer)
{
    const QString error = m_prompter.takeError();
    if (!error.isEmpty() && answer.value(QStringLiteral("ok")).toBool()) {
        answer.insert(QStringLiteral("ok"), false);
        answer.insert(QStringLiteral("error"), error);
    }
    Q_EMIT answered(QJsonDocument(answer).toJson(QJsonDocument::Compact));
}

void Driver::fail(const QString &error)
{
    m_prompter.takeError();
    Q_EMIT answered(
        QJsonDocument(QJsonObject{{QStringLiteral("ok"), false}, {QStringLiteral("error"), error}})
            .toJson(QJsonDocument::Compact));
}

bool Driver::eventFilter(QObject *watched, QEvent *event)
{
    // A modal form that opens while a user's act runs answers that act: the
    // user sees the form and goes on with it. So does the context menu that
    // a right-button click opens.
    if (event->type() == QEvent::Show && m_pending && !m_pending->answered && watched->isWidgetType()) {
        auto *w = static_cast<QWidget *>(watched);
        if (w->isWindow() && (w->isModal() || (m_pending->menuAnswers && qobject_cast<QMenu *>(w)))) {
            const std::shared_ptr<Pending> pending = m_pending;
            QTimer::singleShot(0, this, [this, pending] { answer(pending); });
        }
    }
    return QObject::eventFilter(watched, event);
}

void Driver::answer(const std::shared_ptr<Pending> &pending)
{
    if (pending->answered)
        return;
    pending->answered = true;
    if (pending->error.isEmpty())
        reply(QJsonObject{{QStringLiteral("ok"), true}});
    else
        fail(pending->error);
    m_busy = false;
    next();
}

void Driver::act(std::function<void()> action, bool menuAnswers)
{
    m_busy = true;
    auto pending = std::make_shared<Pending>();
    pending->menuAnswers = menuAnswers;
    m_pending = pending;
    QTimer::singleShot(0, this, [this, pending, action = std::move(action)] {
        const QWidget *modal = QApplication::activeModalWidget();
        ++m_running;
        QString error;
        try {
            action();
        } catch (const std::exception &e) {
            error = QString::fromLocal8Bit(e.what());
        }
        --m_running;
        if (pending->answered) {
            if (!error.isEmpty())
                qWarning("sorrelin-driver: %s", qPrintable(error));
            // The act that opened a form has gone on to its end after the
            // form closed: the command that closed it is answered now.
            if (m_pending && m_pending->deferred)
                answer(m_pending);
            return;
        }
        pending->error = error;
        // This closed a modal form whose opener still runs: as a user sees
        // the outcome only when the opener is done, the answer waits for it
        // (or for the next modal form it opens).
        if (m_running > 0 && QApplication::activeModalWidget() != modal) {
            pending->deferred = true;
            return;
        }
        answer(pending);
    });
}

QWidget *Driver::form(const QString &name)
{
    return FormReader::findForm(name);
}

QWidget *Driver::mainForm()
{
    return m_program ? static_cast<QWidget *>(m_program->gfrmMain.data()) : nullptr;
}

void Driver::fixture(const QString &rest)
{
    const QString path = rest.trimmed();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("the fixture %1 can't be read").arg(path));
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    const QString profile = root.value(QStringLiteral("profile")).toString(QStringLiteral("Demo"));
    // With a server given, each fixture is a new database there.
    const QString server = qEnvironmentVariable("SORRELIN_DRIVER_STORE_SERVER");
    static int fixtures = 0;
    m_storePath = m_home + QStringLiteral("/") + profile + QStringLiteral(".db");
    QFile::remove(m_storePath);
    try {
        if (!server.isEmpty())
            m_storePath = store::Connection::createDatabase(
                store::Location::parse(server),
                QStringLiteral("scenario_%1_%2").arg(QCoreApplication::applicationPid()).arg(++fixtures));
        store::loadFixture(path, m_storePath);
        mapi::writeProfile(
            mapi::Profile{profile, root.value(QStringLiteral("user")).toString(), m_storePath});
    } catch (const com::ComError &e) {
        return fail(e.description());
    }
    m_prompter.setDefaultProfile(profile);
    reply(QJsonObject{{QStringLiteral("ok"), true}, {QStringLiteral("store"), m_storePath}});
}

void Driver::reg(const QString &rest)
{
    setRegistryValue(rest, false);
}

void Driver::regDelete(const QString &rest)
{
    setRegistryValue(rest, true);
}

void Driver::setRegistryValue(const QString &rest, bool remove)
{
    const QStringList w = words(rest, remove ? 2 : 3);
    if (w.size() < (remove ? 2 : 3))
        return fail(
            QStringLiteral("expected ROOT\\KEY NAME%1").arg(remove ? QString() : QStringLiteral(" VALUE")));
    const qsizetype slash = w.at(0).indexOf(QLatin1Char('\\'));
    const registry::HKEY root = rootKey(w.at(0).left(slash));
    if (!root || slash < 0)
        return fail(QStringLiteral("unknown root key in %1").arg(w.at(0)));
    const QString key = w.at(0).mid(slash + 1);
    const QString name = w.at(1) == QLatin1String("@") ? QString() : w.at(1);
    registry::Registry &r = registry::Registry::system();
    if (remove) {
        registry::HKEY h = 0;
        if (r.RegOpenKeyEx(root, key, &h) == registry::ERROR_SUCCESS) {
            r.RegDeleteValue(h, name);
            r.RegCloseKey(h);
        }
    } else {
        basRegistry::SetKeyValue(r, root, key, name, com::unescapeLine(w.at(2)), registry::REG_SZ);
    }
    reply(QJsonObject{{QStringLiteral("ok"), true}});
}

void Driver::clipboard(const QString &rest)
{
    // Another program copies a text (a word, or one in double quotes).
    QGuiApplication::clipboard()->setText(com::unescapeLine(words(rest, 2).value(0)));
    reply(QJsonObject{{QStringLiteral("ok"), true}});
}

void Driver::regGet(const QString &rest)
{
    const QStringList w = words(rest, 2);
    const qsizetype slash = w.value(0).indexOf(QLatin1Char('\\'));
    const registry::HKEY root = rootKey(w.value(0).left(slash));
    if (w.size() < 2 || !root || slash < 0)
        return fail(QStringLiteral("expected ROOT\\KEY NAME"));
    registry::Registry &r = registry::Registry::system();
    registry::HKEY h = 0;
    QJsonObject answer{{QStringLiteral("ok"), true}, {QStringLiteral("value"), QJsonValue::Null}};
    if (r.RegOpenKeyEx(root, w.at(0).mid(slash + 1), &h) == registry::ERROR_SUCCESS) {
        uint32_t type = 0, size = 0;
        QByteArray data;
        const QString name = w.at(1) == QLatin1String("@") ? QString() : w.at(1);
        if (r.RegQueryValueEx(h, name, &type, nullptr, &size) == registry::ERROR_SUCCESS &&
            r.RegQueryValueEx(h, name, nullptr, &data, &size) == registry::ERROR_SUCCESS) {
            answer.insert(QStringLiteral("type"), static_cast<int>(type));
            if (type == registry::REG_DWORD && data.size() == 4)
                answer.insert(QStringLiteral("value"), qFromLittleEndian<qint32>(data.constData()));
            else
                answer.insert(QStringLiteral("value"), QString::fromUtf8(data));
        }
        r.RegCloseKey(h);
    }
    reply(answer);
}

QJsonObject Driver::state()
{
    QJsonObject s{{QStringLiteral("ok"), true}};
    s.insert(QStringLiteral("forms"), m_ended ? QJsonObject() : FormReader::forms());
    if (auto *main = qobject_cast<frmMain *>(mainForm()); main && !m_ended) {
        s.insert(QStringLiteral("status"), main->statusText());
        s.insert(QStringLiteral("storeNotice"), main->storeNotice());
        s.insert(QStringLiteral("dirty"), main->blnDirty);
        s.insert(QStringLiteral("strEntryID"), main->strEntryID);
        s.insert(QStringLiteral("strStoreID"), main->strStoreID);
        s.insert(QStringLiteral("helpFile"), main->helpFile);
        s.insert(QStringLiteral("tree"), FormReader::nodes(main->treOutl));
    }
    QJsonArray prompts;
    for (const ui::PromptRecord &p : m_prompter.takePrompts())
        prompts.append(promptJson(p));
    s.insert(QStringLiteral("prompts"), prompts);
    const QVector<os::LogRecord> records = os::ApplicationLog().read();
    s.insert(QStringLiteral("log"), logLines(records, m_logSeen));
    m_logSeen = records.size();
    return s;
}

const QHash<QString, Driver::Command> &Driver::commands()
{
    static const QHash<QString, Command> table{
        {QStringLiteral("fixture"), &Driver::fixture},
        {QStringLiteral("reg"), &Driver::reg},
        {QStringLiteral("reg-delete"), &Driver::regDelete},
        {QStringLiteral("reg-get"), &Driver::regGet},
        {QStringLiteral("answer"), &Driver::queueAnswer},
        {QStringLiteral("clipboard"), &Driver::clipboard},
        {QStringLiteral("state"), &Driver::stateCommand},
        {QStringLiteral("printer"), &Driver::printer},
        {QStringLiteral("store"), &Driver::storeDump},
        {QStringLiteral("file"), &Driver::file},
        {QStringLiteral("pdftext"), &Driver::pdftext},
        {QStringLiteral("screenshot"), &Driver::screenshot},
        {QStringLiteral("log"), &Driver::log},
        {QStringLiteral("start"), &Driver::start},
        {QStringLiteral("quit"), &Driver::quit},
        {QStringLiteral("click"), &Driver::click},
        {QStringLiteral("rclick"), &Driver::rclick},
        {QStringLiteral("select"), &Driver::select},
        {QStringLiteral("menu"), &Driver::menu},
        {QStringLiteral("toolbar"), &Driver::toolbar},
        {QStringLiteral("tab"), &Driver::tab},
        {QStringLiteral("press"), &Driver::press},
        {QStringLiteral("key"), &Driver::key},
        {QStringLiteral("type"), &Driver::type},
        {QStringLiteral("choose"), &Driver::choose},
        {QStringLiteral("grid"), &Driver::grid},
        {QStringLiteral("dblclick"), &Driver::dblclick},
        {QStringLiteral("resize"), &Driver::resize},
        {QStringLiteral("maximize"), &Driver::maximize},
        {QStringLiteral("close"), &Driver::close},
    };
    return table;
}

void Driver::run(const QString &line)
{
    const QStringList parts = words(line, 2);
    const Command command = commands().value(parts.value(0));
    if (!command) {
        QStringList known = commands().keys();
        known.sort();
        return fail(QStringLiteral("unknown command \"%1\"; the commands are %2")
                        .arg(parts.value(0), known.join(QStringLiteral(", "))));
    }
    (this->*command)(parts.value(1));
}

void Driver::queueAnswer(const QString &rest)
{
    m_prompter.enqueue(com::unescapeLine(rest));
    reply(QJsonObject{{QStringLiteral("ok"), true}});
}

void Driver::stateCommand(const QString &)
{
    reply(state());
}

void Driver::printer(const QString &rest)
{
    m_prompter.setPrintFile(rest.trimmed());
    reply(QJsonObject{{QStringLiteral("ok"), true}});
}

void Driver::storeDump(const QString &)
{
    try {
        const std::unique_ptr<store::Database> db = store::Database::open(m_storePath);
        reply(QJsonObject{{QStringLiteral("ok"), true}, {QStringLiteral("store"), store::dumpStore(*db)}});
    } catch (const com::ComError &e) {
        fail(e.description());
    }
}

void Driver::file(const QString &rest)
{
    QFile file(rest.trimmed());
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("%1: %2").arg(rest.trimmed(), file.errorString()));
    reply(QJsonObject{{QStringLiteral("ok"), true},
                      {QStringLiteral("text"), QString::fromLatin1(file.readAll())}});
}

void Driver::pdftext(const QString &rest)
{
    // A printed PDF's text, as pdftotext reads it, page breaks as form feeds.
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"),
                    {QStringLiteral("-layout"), rest.trimmed(), QStringLiteral("-")});
    if (!pdftotext.waitForFinished(30000) || pdftotext.exitCode() != 0)
        return fail(QStringLiteral("pdftotext %1: %2")
                        .arg(rest.trimmed(), QString::fromLocal8Bit(pdftotext.readAllStandardError())));
    reply(QJsonObject{{QStringLiteral("ok"), true},
                      {QStringLiteral("text"), QString::fromUtf8(pdftotext.readAllStandardOutput())}});
}

void Driver::screenshot(const QString &rest)
{
    const QStringList w = words(rest, 2);
    QWidget *f = form(w.value(0));
    if (!f)
        return fail(QStringLiteral("no form %1").arg(w.value(0)));
    if (!f->grab().save(w.value(1).trimmed()))
        return fail(QStringLiteral("%1 could not be written").arg(w.value(1)));
    reply(QJsonObject{{QStringLiteral("ok"), true}});
}

void Driver::log(const QString &)
{
    reply(QJsonObject{{QStringLiteral("ok"), true},
                      {QStringLiteral("lines"), logLines(os::ApplicationLog().read(), 0)}});
}

} // namespace driver
