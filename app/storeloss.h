#pragma once

class QObject;

namespace app {

struct Program;

/// From now on, as long as `context` lives: the first failure of each act of
/// the user because the store is gone (its server lost) is told in words,
/// each act may try once to reach the store again, and an error that
/// escaped every handler is shown instead of ending the program.
void watchStoreLoss(Program &program, QObject *context);

} // namespace app
