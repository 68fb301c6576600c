// Runs one scenario file against sorrelin-driver: "> command" lines go to
// the driver, and the check lines after one test its answer:
//   = PATH VALUE     the value at PATH equals the JSON VALUE
//   ~ PATH TEXT      the text at PATH contains TEXT (a JSON string if quoted)
//   # PATH COUNT     the list at PATH has COUNT members
//   ! PATH           there is nothing at PATH
//   < PATH {OBJECT}  the object at PATH has these members with these values
//   % A.{B,C}.D LIST  A.B.D and A.C.D equal the LIST's values in order
// Check lines between ":set NAME" and ":end" are kept, not run; ":check NAME"
// runs them there, so that a file names once what several steps must show;
// ":include FILE" runs the lines of FILE there (the settings many share).
// PATH is dotted (forms.frmMain.caption, prompts.0.text); a list member can
// be chosen by a member's value: tree[path=\Mailbox - Alice Admin\Inbox].image,
// and a member whose name holds dots or blanks is quoted:
// forms.frmMain.controls."tbToolBar.Agent Properties".enabled
// A check of several members alike names them in braces, and stands for one
// check a member: = forms.frmMain.controls.{mnuFileOpen,"tbToolBar.Open"}.enabled true
// A check whose path begins with a member the command's answer lacks tests
// the driver's state read right after the command (as "> state" would).
// A command answered with "ok":false fails the scenario unless a check line
// after it tests "ok" (= ok false): a refusal is only right where expected.
#include "driverprocess.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

struct Failure {
    QString text;
};

QStringList splitPath(const QString &path)
{
    QStringList parts;
    QString current;
    int depth = 0;
    bool quoted = false;
    for (const QChar c : path) {
        if (c == u'"' && depth == 0) {
            quoted = !quoted; // "tbToolBar.Agent Properties" is one member
            continue;
        }
        if (quoted) {
            current += c;
        } else if (c == u'[') {
            if (!current.isEmpty())
                parts << current;
            current = u"["_s;
            ++depth;
        } else if (c == u']') {
            current += c;
            parts << current;
            current.clear();
            --depth;
        } else if (c == u'.' && depth == 0) {
            if (!current.isEmpty())
                parts << current;
            current.clear();
        } else {
            current += c;
        }
    }
    if (!current.isEmpty())
        parts << current;
    return parts;
}

QString show(const QJsonValue &v)
{
    if (v.isUndefined())
        return u"(nothing)"_s;
    return QString::fromUtf8(QJsonDocument(QJsonArray{v}).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
}

QJsonValue lookup(const QJsonValue &root, const QString &path)
{
    QJsonValue v = root;
    for (const QString &part : splitPath(path)) {
        if (part.startsWith(u'[')) {
            const QString inner = part.mid(1, part.size() - 2);
            const qsizetype eq = inner.indexOf(u'=');
            const QString member = inner.left(eq);
            const QString wanted = inner.mid(eq + 1);
            QJsonValue found = QJsonValue::Undefined;
            for (const QJsonValue &item : v.toArray()) {
                const QJsonValue m = item.toObject().value(member);
                if ((m.isString() ? m.toString() : show(m)) == wanted) {
                    found = item;
                    break;
                }
            }
            v = found;
        } else if (v.isArray()) {
            bool ok = false;
            const int index = part.toInt(&ok);
            v = ok ? v.toArray().at(index) : QJsonValue(QJsonValue::Undefined);
        } else {
            v = v.toObject().value(part);
        }
        if (v.isUndefined())
            return v;
    }
    return v;
}

/// PATH and the rest of a check line.
std::pair<QString, QString> pathAndValue(const QString &rest)
{
    int depth = 0;
    bool quoted = false;
    for (int i = 0; i < rest.size(); ++i) {
        const QChar c = rest.at(i);
        if (c == u'"' && depth == 0)
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == u'[' || c == u'{')
            ++depth;
        else if (c == u']' || c == u'}')
            --depth;
        else if (c == u' ' && depth == 0)
            return {rest.left(i), rest.mid(i + 1)};
    }
    return {rest, QString()};
}

/// A check line whose path names members in braces, as one check line a
/// member: "= a.{b,"c d"}.e 1" is "= a.b.e 1" and "= a."c d".e 1".
QStringList expandMembers(const QString &line)
{
    const auto [path, value] = pathAndValue(line.mid(2));
    const qsizetype open = path.indexOf(u'{');
    const qsizetype close = path.indexOf(u'}', open);
    if (open < 0 || close < 0)
        return {line};
    QStringList members{QString()};
    bool quoted = false;
    for (const QChar c : path.mid(open + 1, close - open - 1)) {
        if (c == u'"')
            quoted = !quoted;
        if (c == u',' && !quoted)
            members << QString();
        else
            members.last() += c;
    }
    // "% a.{b,c}.d [1,2]" pairs the members with the list's values in order.
    const bool paired = line.startsWith(u'%');
    const QJsonArray values = QJsonDocument::fromJson(value.toUtf8()).array();
    if (paired && values.size() != members.size())
        return {line}; // refused where it runs
    QStringList lines;
    for (qsizetype i = 0; i < members.size(); ++i)
        lines << expandMembers((paired ? u"= "_s : line.left(2)) + path.left(open) + members.at(i).trimmed() +
                               path.mid(close + 1) + u' ' + (paired ? show(values.at(i)) : value));
    return lines;
}

/// A line to run and where it stands in the file ("file:12: ").
struct Line {
    QString where;
    QString text;
};

/// The file's lines without blanks and comments, each ":check NAME" replaced
/// by the lines of its set and each ":include FILE" by that file's lines.
bool expandSets(const QString &scenario, const QString &content, QList<Line> &lines,
                QHash<QString, QList<Line>> &sets, QTextStream &err)
{
    QString defining;
    int number = 0;
    for (QString text : content.split(u'\n')) {
        ++number;
        if (text.endsWith(u'\r'))
            text.chop(1);
        if (text.trimmed().isEmpty() || text.startsWith("//"_L1))
            continue;
        const QString where = u"%1:%2: "_s.arg(scenario).arg(number);
        if (text.startsWith(":include "_L1)) {
            QFile included(text.mid(9).trimmed());
            if (!defining.isEmpty() || !included.open(QIODevice::ReadOnly)) {
                err << where << "can't include " << included.fileName() << " here\n";
                return false;
            }
            if (!expandSets(included.fileName(), QString::fromUtf8(included.readAll()), lines, sets, err))
                return false;
        } else if (text.startsWith(":set "_L1)) {
            defining = text.mid(5).trimmed();
            sets[defining].clear();
        } else if (text == ":end"_L1) {
            defining.clear();
        } else if (text.startsWith(":check "_L1)) {
            const QString name = text.mid(7).trimmed();
            if (!sets.contains(name) || name == defining) {
                err << where << "no set of checks \"" << name << "\" before this line\n";
                return false;
            }
            QList<Line> &into = defining.isEmpty() ? lines : sets[defining];
            for (const Line &kept : sets.value(name))
                into << Line{where + kept.where, kept.text};
        } else if (!defining.isEmpty()) {
            if (text.startsWith("> "_L1)) {
                err << where << "a set holds check lines only\n";
                return false;
            }
            for (const QString &check : expandMembers(text))
                sets[defining] << Line{where, check};
        } else if (text.startsWith("> "_L1)) {
            lines << Line{where, text};
        } else {
            for (const QString &check : expandMembers(text))
                lines << Line{where, check};
        }
    }
    if (!defining.isEmpty()) {
        err << scenario << ": the set \"" << defining << "\" has no \":end\"\n";
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream err(stderr);
    if (argc != 3) {
        err << "usage: scenario-runner DRIVER SCENARIO\n";
        return 2;
    }
    const QString scenario = QString::fromLocal8Bit(argv[2]);
    QFile file(scenario);
    if (!file.open(QIODevice::ReadOnly)) {
        err << scenario << ": can't be read\n";
        return 2;
    }
    testsupport::DriverProcess driver(QStringList{QString::fromLocal8Bit(argv[1])});
    if (!driver.started()) {
        err << "the driver didn't start\n";
        return 2;
    }
    QJsonObject answer;
    std::optional<QJsonObject> stateAfter; // read at the first check that needs it
    int failures = 0;
    QString lastCommand;
    QString lastWhere;
    bool okChecked = true;
    // A refusal that no check line expected.
    const auto unexpectedRefusal = [&] {
        if (okChecked || answer.value(u"ok"_s).toBool())
            return;
        ++failures;
        err << lastWhere << "\"" << lastCommand << "\" was refused: " << answer.value(u"error"_s).toString()
            << "\n";
    };
    // "{pgport}" stands for the port of the PostgreSQL server the driver's
    // stores are made on, when there is one.
    QString text = QString::fromUtf8(file.readAll());
    if (const QString server = qEnvironmentVariable("SORRELIN_DRIVER_STORE_SERVER"); !server.isEmpty())
        text.replace("{pgport}"_L1, QString::number(QUrl(server).port()));
    QList<Line> lines;
    QHash<QString, QList<Line>> sets;
    if (!expandSets(scenario, text, lines, sets, err))
        return 2;
    for (const auto &[where, line] : lines) {
        if (line.startsWith("> "_L1)) {
            unexpectedRefusal();
            lastCommand = line.mid(2);
            lastWhere = where;
            okChecked = false;
            answer = driver.send(lastCommand);
            if (!driver.answered()) {
                err << where << "no answer to \"" << lastCommand << "\"\n";
                return 1;
            }
            stateAfter.reset();
            continue;
        }
        const QChar kind = line.at(0);
        const auto [path, expected] = pathAndValue(line.mid(2));
        const QString first = splitPath(path).value(0);
        if (!answer.contains(first) && lastCommand != "state"_L1 && !stateAfter) {
            stateAfter = driver.send(u"state"_s);
            if (!driver.answered()) {
                err << where << "no answer to \"state\"\n";
                return 1;
            }
        }
        const QJsonValue actual = lookup(answer.contains(first) || !stateAfter ? answer : *stateAfter, path);
        if (path == "ok"_L1)
            okChecked = true;
        bool ok = false;
        QString want;
        if (kind == u'=') {
            const QJsonDocument doc = QJsonDocument::fromJson("[" + expected.toUtf8() + "]");
            if (doc.isNull()) {
                err << where << "the value " << expected << " is no JSON\n";
                return 2;
            }
            want = expected;
            ok = doc.array().at(0) == actual;
        } else if (kind == u'~') {
            // A quoted text is a JSON string, so that it can hold "\r".
            QString part = expected;
            if (part.startsWith(u'"'))
                part = QJsonDocument::fromJson("[" + expected.toUtf8() + "]").array().at(0).toString();
            want = u"a text containing "_s + expected;
            ok = actual.isString() && actual.toString().contains(part);
        } else if (kind == u'!') {
            want = u"nothing"_s;
            ok = actual.isUndefined();
        } else if (kind == u'#') {
            want = u"a list of "_s + expected;
            ok = actual.isArray() && actual.toArray().size() == expected.toInt();
        } else if (kind == u'<') {
            const QJsonObject members = QJsonDocument::fromJson(expected.toUtf8()).object();
            if (members.isEmpty()) {
                err << where << "the members " << expected << " are no JSON object\n";
                return 2;
            }
            want = u"an object holding "_s + expected;
            ok = actual.isObject();
            for (auto m = members.begin(); ok && m != members.end(); ++m)
                ok = actual.toObject().value(m.key()) == m.value();
        } else if (kind == u'%') {
            err << where << "a paired check names as many members in braces as its list has values\n";
            return 2;
        } else {
            err << where << "a line begins with \">\", \"=\", \"~\", \"#\", \"!\", \"<\", \":\" or \"//\"\n";
            return 2;
        }
        if (!ok) {
            ++failures;
            err << where << "after \"" << lastCommand << "\": " << path << " is " << show(actual)
                << ", expected " << want << "\n";
            if (path != "ok"_L1 && answer.contains(u"error"_s))
                err << "    (the driver said: " << answer.value(u"error"_s).toString() << ")\n";
        }
    }
    unexpectedRefusal();
    // The driver ends with its input, whatever form is open.
    if (!driver.finishWithZero()) {
        ++failures;
        err << scenario << ": the driver didn't end by itself with 0 when its input ended\n";
    }
    if (failures)
        err << scenario << ": " << failures << " check(s) failed\n";
    return failures ? 1 : 0;
}
