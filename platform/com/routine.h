#pragma once

#include "platform/com/comerror.h"

#include <QString>

#include <optional>
#include <utility>

namespace com {

/// The program's routines that go on after a failing step: each step runs,
/// a step that raises is skipped and its error remembered, and only explicit
/// tests look at the error state.
class ResumeNext {
public:
    /// Runs one step; an error it raises is remembered, never thrown.
    template <class F> void step(F &&f) noexcept
    {
        try {
            std::forward<F>(f)();
        } catch (...) {
            m_error = fromCurrentException();
        }
    }

    /// Runs one step that gives a value; on error gives `fallback`.
    template <class T, class F> T value(F &&f, T fallback = T{}) noexcept
    {
        try {
            return std::forward<F>(f)();
        } catch (...) {
            m_error = fromCurrentException();
            return fallback;
        }
    }

    /// The test of a condition: when evaluating it raises, the condition
    /// counts as true, so that the steps it guards run.
    template <class F> bool test(F &&cond) noexcept
    {
        try {
            return static_cast<bool>(std::forward<F>(cond)());
        } catch (...) {
            m_error = fromCurrentException();
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

/// Routines with one handler: runs `body`; an error it raises ends it and is
/// handed to `handler`, which shows it and runs the closing steps.
template <class Body, class Handler> bool withHandler(Body &&body, Handler &&handler)
{
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        const ComError e = fromCurrentException();
        std::forward<Handler>(handler)(e);
        return false;
    }
}

} // namespace com
