#pragma once

/// True on the NT family of systems: the version query succeeds and names
/// platform 2. The editor and viewer rules read their class keys elsewhere.
bool IsWindowsNT();
