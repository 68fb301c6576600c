#pragma once

#include <QString>

#include <cstdint>
#include <exception>
#include <string>

namespace com {

/// Error numbers raised by the platform objects. The HRESULTs are kept as the
/// signed 32-bit numbers that a caller sees in an error's number.
namespace err {
inline constexpr int32_t UserCancel = static_cast<int32_t>(0x80040113u);  ///< logon dialog cancelled
inline constexpr int32_t NotFound = static_cast<int32_t>(0x8004010Fu);    ///< identifier names nothing
inline constexpr int32_t NoSupport = static_cast<int32_t>(0x80040102u);   ///< object can't do that
inline constexpr int32_t Corrupt = static_cast<int32_t>(0x80040115u);     ///< store damaged or unreadable
inline constexpr int32_t NotLoggedOn = static_cast<int32_t>(0x80040111u); ///< no session
inline constexpr int32_t NoAccess = static_cast<int32_t>(0x80070005u);    ///< read-only or unreadable
inline constexpr int32_t Busy = static_cast<int32_t>(0x8004010Bu);        ///< locked by another program
inline constexpr int32_t DiskFull = static_cast<int32_t>(0x8004010Du);    ///< no room left on the disk
inline constexpr int32_t InvalidParameter = static_cast<int32_t>(0x80070057u);
inline constexpr int32_t CallFailed = static_cast<int32_t>(0x80004005u);    ///< any other store failure
inline constexpr int32_t NoEventSource = static_cast<int32_t>(0x80041001u); ///< folder has no event source
inline constexpr int32_t PermissionDenied = 70;                             ///< refused binding write
inline constexpr int32_t FileNotFound = 53;
inline constexpr int32_t PathNotFound = 76;
inline constexpr int32_t FileAccess = 75;
inline constexpr int32_t ObjectRequired = 424;
inline constexpr int32_t ObjectNotSet = 91;
inline constexpr int32_t StoreLost = static_cast<int32_t>(0x80040200u); ///< the open store is gone
inline constexpr int32_t SubscriptOutOfRange = 9;
inline constexpr int32_t CommonDialogCancel = 32755;
} // namespace err

/// The error object of every platform member: a number, the object that
/// raised it and a text for people.
class ComError : public std::exception {
public:
    ComError() = default;
    ComError(int32_t number, QString source, QString description);

    int32_t number() const { return m_number; }
    const QString &source() const { return m_source; }
    const QString &description() const { return m_description; }

    const char *what() const noexcept override { return m_what.c_str(); }

private:
    int32_t m_number = 0;
    QString m_source;
    QString m_description;
    std::string m_what;
};

} // namespace com
