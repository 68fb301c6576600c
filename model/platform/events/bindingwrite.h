#pragma once

namespace events {

struct BindingData;

/// Stores a binding as the event service does, in one transaction. A new
/// binding gets its row, its binding message (class
/// "IPC.Microsoft.EventBinding": Subject the name, the handler field in
/// memory-order hexadecimal, creator and last modifier the user) and its
/// state message ("IPC.Microsoft.ICS.EventBinding", with an empty log);
/// `data` then holds the new row and both identifiers. An existing binding
/// gets its row updated, and its binding message the name as Subject and
/// the handler field. Raises 0x8004010F when the binding has been removed.
void writeBinding(BindingData &data);

} // namespace events
