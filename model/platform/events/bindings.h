#pragma once

#include "platform/events/binding.h"
#include "platform/events/sourceref.h"
#include "platform/mapi/sessionstate.h"

#include <memory>

namespace events {

/// The bindings of one event source, in the source's order. They are read
/// at the first use; `Add` and `Remove` change the collection at once.
/// Copies of a collection share it.
class Bindings {
public:
    Bindings(mapi::StatePtr state, SourceRef source);

    int Count() const;
    /// From 1; an index outside 1 to Count raises 9.
    Binding Item(int index) const;
    /// A new, empty binding at the end of the collection; it reaches the
    /// store with its own `SaveChanges`.
    Binding Add();
    /// Takes the binding out of the collection and the store at once; its
    /// binding and state messages stay for the caller to delete.
    void Remove(const Binding &binding);

private:
    struct Data;
    void load() const;

    std::shared_ptr<Data> d;
};

} // namespace events
