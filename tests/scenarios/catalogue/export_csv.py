#!/usr/bin/env python3
"""The agent list export read back by Python's csv module, as a spreadsheet
program reads it: names with quotes, commas and letters outside Latin-1 come
back whole, and the header, the field order, CR LF and the bare flags stay."""
import csv
import json
import os
import subprocess
import sys
import tempfile

driver, source = sys.argv[1], sys.argv[2]
with tempfile.TemporaryDirectory() as home:
    out = os.path.join(home, "agents.csv")
    commands = [
        "fixture tests/fixtures/catalogue_names.json", "start", "state",
        "answer Yes", f"answer file:{out}", "menu mnuFileExport", "state", "quit",
    ]
    run = subprocess.run([driver], input="\n".join(commands) + "\n", capture_output=True,
                         text=True, cwd=source, timeout=120)
    answers = [json.loads(line) for line in run.stdout.splitlines() if line.startswith("{")]
    assert run.returncode == 0 and all(a.get("ok") for a in answers), run.stdout + run.stderr
    raw = open(out, "rb").read()
    with open(out, newline="", encoding="utf-8") as f:
        rows = list(csv.reader(f))

header = ["Name", "Folder", "Server", "Created", "Created By", "Last Modified", "Last Modified By",
          "Server", "Handler", "New", "Update", "Delete", "Scheduled"]
assert rows[0] == header, rows[0]
folder = "\\Mailbox - Alice Admin\\Inbox"
dates = ["2 Jan 2026 03:04:05", "Alice Admin", "4 Mar 2026 05:06:07"]
expected = [
    ["Say \"Hi\"", folder, "EXCH01", *dates, "Bob, Builder", "EXCH01", "Script Handler", "-1", "-1", "-1", "-1"],
    ["日本", folder, "EXCH01", *dates, "Bob Builder", "EXCH01", "Script Handler", "0", "0", "0", "0"],
    ["✓ Größe", folder, "EXCH01", *dates, "Bob Builder", "EXCH01", "Script Handler", "0", "0", "-1", "-1"],
]
assert sorted(rows[1:]) == sorted(expected), rows[1:]
lines = raw.split(b"\r\n")
assert lines[-1] == b"" and b"\n" not in raw.replace(b"\r\n", b""), raw
assert lines[0] == b",".join(b'"%s"' % h.encode() for h in header), lines[0]
assert all(line.endswith(b",-1,-1,-1,-1") or line.endswith(b",0,0,0,0") or line.endswith(b",0,0,-1,-1")
           for line in lines[1:-1]), lines
assert b'"Say ""Hi"""' in raw, raw
print("ok")
