#pragma once

#include <QByteArray>

namespace testkit {

/// Two hosts, one open to every user and one with a list of authors; a
/// mailbox with three agents of three handlers, a folder without an event
/// source and an empty one; a mailbox on the restricted host; and a store
/// whose host the configuration doesn't know.
inline const QByteArray kEventsFixture = R"({
  "user": "Tess Tester",
  "hosts": [
    { "name": "H1", "handlers": [
        { "class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Script Handler" },
        { "class": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Routing Handler" } ] },
    { "name": "H2", "authors": [ "Someone Else" ], "handlers": [
        { "class": "{69E54151-B371-11D0-BCD9-00AA00C1AB1C}", "name": "Script Handler" } ] } ],
  "stores": [
    { "name": "Mailbox - Tess Tester", "host": "H1", "folders": [
      { "name": "Inbox", "agents": [
        { "name": "Auto Reply", "mask": 3, "script": "old script",
          "schedule": { "type": 1, "interval": 60, "start": "06:00", "end": "18:00", "days": 127, "at": "00:00" } },
        { "name": "Router", "handler": "{69E64151-B371-11D0-BCD9-00AA00C1AB1C}", "mask": 15 },
        { "name": "Clipper", "handler": "{11111111-2222-3333-4444-555555555555}", "mask": 4, "active": false } ] },
      { "name": "NoSource", "eventSource": false },
      { "name": "Empty" } ] },
    { "name": "Mailbox - Other", "host": "H2", "folders": [
      { "name": "Inbox", "agents": [ { "name": "Theirs", "script": "their script" } ] } ] },
    { "name": "Lost Host", "host": "H9", "folders": [ { "name": "Inbox" } ] } ] })";

} // namespace testkit
