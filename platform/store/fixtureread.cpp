#include "platform/store/fixtureread.h"

#include <QDateTime>
#include <QTime>

#include <cmath>

namespace store::fixture {

namespace {
const QString kSource = QStringLiteral("Sorrelin.Store");
const QString kTimeFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");
} // namespace

com::ComError badMember(const QString &path, const QString &what)
{
    return com::ComError(com::err::InvalidParameter, kSource, path + QStringLiteral(": ") + what);
}

QByteArray latin1(const QString &text, const QString &path)
{
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text.at(i).unicode() > 0xFF)
            throw badMember(path, QStringLiteral("8-bit text holds only the characters U+0000 to U+00FF;"
                                                 " character %1 is U+%2")
                                      .arg(i + 1)
                                      .arg(QString::number(text.at(i).unicode(), 16).toUpper().rightJustified(4, QLatin1Char('0'))));
    return text.toLatin1();
}

QString elementPath(const QString &list, int index)
{
    return QStringLiteral("%1[%2]").arg(list).arg(index);
}

Reader::Reader(const QJsonObject &object, QString path, const QStringList &known)
    : m_object(object), m_path(std::move(path))
{
    for (auto it = object.begin(); it != object.end(); ++it)
        if (!known.contains(it.key()))
            throw badMember(member(it.key()), QStringLiteral("unknown member"));
}

QJsonObject Reader::element(const QJsonArray &list, int index, const QString &listPath)
{
    if (!list.at(index).isObject())
        throw badMember(elementPath(listPath, index), QStringLiteral("expected an object"));
    return list.at(index).toObject();
}

QString Reader::member(const QString &name) const
{
    return m_path.isEmpty() ? name : m_path + QLatin1Char('.') + name;
}

QString Reader::text(const QString &name, const QString &fallback, bool required) const
{
    const QJsonValue v = value(name);
    if (v.isUndefined()) {
        if (required)
            throw badMember(member(name), QStringLiteral("missing"));
        return fallback.isNull() ? QStringLiteral("") : fallback;
    }
    if (!v.isString())
        throw badMember(member(name), QStringLiteral("expected a text"));
    return v.toString();
}

QByteArray Reader::bytes(const QString &name, const QString &fallback) const
{
    return latin1(text(name, fallback), member(name));
}

qint64 Reader::number(const QString &name, qint64 fallback, qint64 low, qint64 high) const
{
    const QJsonValue v = value(name);
    if (v.isUndefined())
        return fallback;
    const double d = v.toDouble();
    if (!v.isDouble() || d != std::floor(d) || d < static_cast<double>(low) || d > static_cast<double>(high))
        throw badMember(member(name), QStringLiteral("expected a number from %1 to %2").arg(low).arg(high));
    return static_cast<qint64>(d);
}

bool Reader::flag(const QString &name, bool fallback) const
{
    const QJsonValue v = value(name);
    if (v.isUndefined())
        return fallback;
    if (!v.isBool())
        throw badMember(member(name), QStringLiteral("expected true or false"));
    return v.toBool();
}

QJsonArray Reader::list(const QString &name) const
{
    const QJsonValue v = value(name);
    if (v.isUndefined())
        return {};
    if (!v.isArray())
        throw badMember(member(name), QStringLiteral("expected a list"));
    return v.toArray();
}

QJsonObject Reader::object(const QString &name) const
{
    const QJsonValue v = value(name);
    if (v.isUndefined())
        return {};
    if (!v.isObject())
        throw badMember(member(name), QStringLiteral("expected an object"));
    return v.toObject();
}

QString Reader::time(const QString &name, const QString &fallback) const
{
    const QString t = text(name, fallback);
    if (!QDateTime::fromString(t, kTimeFormat).isValid())
        throw badMember(member(name), QStringLiteral("expected a time \"YYYY-MM-DD HH:MM:SS\""));
    return t;
}

int Reader::clock(const QString &name, int fallback) const
{
    if (!has(name))
        return fallback;
    const QTime t = QTime::fromString(text(name), QStringLiteral("HH:mm"));
    if (!t.isValid())
        throw badMember(member(name), QStringLiteral("expected a time of day \"HH:MM\""));
    return t.hour() * 60 + t.minute();
}

} // namespace store::fixture
