#pragma once

#include <QString>

namespace controls {
class SSDBGrid;
}

namespace routing {

class Map;
class MapRow;

/// A map row's grid string: the row's number from 1, `ActivityID`,
/// `Action`, `Flags` and the arguments, with a tab between arguments only.
QString mapRowString(int index, const MapRow &row);

/// Copies every row of an opened map into `grid`, with the hourglass on. A
/// row that can't be read leaves blanks after its number.
void fillMapGrid(const Map &map, controls::SSDBGrid &grid);

} // namespace routing
