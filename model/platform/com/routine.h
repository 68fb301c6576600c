#pragma once

#include "platform/com/comerror.h"

#include <QString>

#include <optional>
#include <utility>

namespace com {

/// The object that an earlier step was to set, for a step that goes on
/// with it: raises "object variable not set" when that step failed, so that
/// every step on the object fails too, as a call on an unset object does.
template <class T> T &object(std::optional<T> &o)
{
    if (!o)
        throw ComError(err::ObjectNotSet, QStringLiteral("Sorrelin"),
                       QStringLiteral("Object variable or With block variable not set"));
    return *o;
}

/// The program's routines that go on after a failing step: each step runs,
/// a step that raises a ComError is skipped and its error remembered, and
/// only explicit tests look at the error state. Any other exception is a
/// fault of the program and goes on up.
class ResumeNext {
public:
    /// Runs one step; a ComError it raises is remembered, not thrown.
    template <class F> void step(F &&f)
    {
        try {
            std::forward<F>(f)();
        } catch (const ComError &e) {
            m_error = e;
        }
    }

    /// Runs one step that gives a value; on a ComError gives `fallback`.
    template <class T, class F> T value(F &&f, T fallback = T{})
    {
        try {
            return std::forward<F>(f)();
        } catch (const ComError &e) {
            m_error = e;
            return fallback;
        }
    }

    /// The test of a condition: when evaluating it raises a ComError, the
    /// condition counts as true, so that the steps it guards run.
    template <class F> bool test(F &&cond)
    {
        try {
            return static_cast<bool>(std::forward<F>(cond)());
        } catch (const ComError &e) {
            m_error = e;
            return true;
        }
    }

    bool failed() const { return m_error.has_value(); }
    int32_t number() const { return m_error ? m_error->number() : 0; }
    const std::optional<ComError> &error() const { return m_error; }
    void clear() { m_error.reset(); }

private:
    std::optional<ComError> m_error;
};

/// The two texts in which a routine's handler shows an error.
enum class ErrorForm {
    Description, ///< "Error# n" CR "Description: text" (information icon)
    Plain,       ///< "Error#: n" CR "text" (stop icon)
};

QString errorText(const ComError &e, ErrorForm form);

/// Routines with one handler: runs `body`; a ComError it raises ends it and
/// is handed to `handler`, which shows it and runs the closing steps. Any
/// other exception is a fault of the program and goes on up.
template <class Body, class Handler> bool withHandler(Body &&body, Handler &&handler)
{
    try {
        std::forward<Body>(body)();
        return true;
    } catch (const ComError &e) {
        std::forward<Handler>(handler)(e);
        return false;
    }
}

} // namespace com
