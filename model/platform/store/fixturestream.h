#pragma once

#include "platform/com/comerror.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>

namespace store {

/// The objects of a fixture that a load takes member by member as they
/// come: the document, each store, each folder. Every other value comes
/// whole, as a QJsonValue; none of them grows with the store.
enum class FixtureLevel { Document, Store, Folder };

/// What a load is told as a fixture is read. A streamed object's list of
/// stores or subfolders comes as `beginList`, then each element as `begin`
/// ... `end`, then `endList`.
class FixtureEvents {
public:
    /// How a member of a streamed object is told: whole, as the number of
    /// elements of its list (a number, and nothing for a member that is no
    /// list), or not at all. What isn't told whole isn't built either.
    enum class Telling { Whole, Count, Nothing };

    virtual ~FixtureEvents() = default;
    /// How the member `key` of the innermost object is told.
    virtual Telling telling(FixtureLevel, const QString &) const { return Telling::Whole; }
    /// The `index`th store or folder of its list begins (the document: 0).
    virtual void begin(FixtureLevel level, int index) = 0;
    /// A member of the innermost object, other than its list.
    virtual void member(const QString &key, const QJsonValue &value) = 0;
    /// The innermost object's list of stores or folders begins, ends.
    virtual void beginList() = 0;
    virtual void endList() = 0;
    virtual void end() = 0;
    /// A list element that is no object, a list member that is no list, or
    /// a document that is no object.
    [[noreturn]] virtual void wrongShape(const QString &what) = 0;
};

/// A document that is no JSON: the error names the file, line and column.
struct FixtureSyntaxError {
    com::ComError error;
};

/// Reads the fixture file at `path` from front to back, telling `events`;
/// no depth of nesting costs stack. Raises FixtureSyntaxError, a ComError
/// for a file that can't be read, or what `events` raise.
void readFixtureFile(const QString &path, FixtureEvents &events);

/// The same for a document in memory.
void readFixtureText(const QByteArray &text, FixtureEvents &events);

} // namespace store
