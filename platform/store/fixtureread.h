#pragma once

#include "platform/com/comerror.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace store::fixture {

/// The error for a member that is wrong: "stores[0].folders[2].name: missing".
com::ComError badMember(const QString &path, const QString &what);

/// 8-bit text as JSON carries it: each character U+0000..U+00FF is one byte.
/// Raises, naming `path`, for a character above U+00FF.
QByteArray latin1(const QString &text, const QString &path);

/// The path of an element of a list: "stores[0].folders" and 2 give
/// "stores[0].folders[2]".
QString elementPath(const QString &list, int index);

/// The members of one object of a fixture, read with their checks. Every
/// error names the member's path. Unknown members are refused, so that a
/// misspelt one is not silently dropped.
class Reader {
public:
    Reader(const QJsonObject &object, QString path, const QStringList &known);

    /// The element `index` of `list`, which must be an object.
    static QJsonObject element(const QJsonArray &list, int index, const QString &listPath);

    /// "path.name", or "name" at the top.
    QString member(const QString &name) const;
    bool has(const QString &name) const { return m_object.contains(name); }
    const QString &path() const { return m_path; }

    /// A text member; `fallback` when absent (or an error when `required`).
    QString text(const QString &name, const QString &fallback = QString(), bool required = false) const;
    /// A text member that is 8-bit text.
    QByteArray bytes(const QString &name, const QString &fallback = QString()) const;
    /// A whole number from `low` to `high`.
    qint64 number(const QString &name, qint64 fallback, qint64 low, qint64 high) const;
    bool flag(const QString &name, bool fallback) const;
    /// A list member; empty when absent.
    QJsonArray list(const QString &name) const;
    /// An object member; empty when absent.
    QJsonObject object(const QString &name) const;
    /// A local time "YYYY-MM-DD HH:MM:SS".
    QString time(const QString &name, const QString &fallback) const;
    /// A time of day "HH:MM", as minutes after midnight.
    int clock(const QString &name, int fallback) const;

private:
    QJsonValue value(const QString &name) const { return m_object.value(name); }

    QJsonObject m_object;
    QString m_path;
};

} // namespace store::fixture
