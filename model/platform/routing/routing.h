#pragma once

// The routing objects: route maps, process instances and vote tracking.
#include "platform/routing/map.h"
#include "platform/routing/processinstance.h"
#include "platform/routing/tracking.h"
