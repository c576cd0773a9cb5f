#pragma once

#include "fit/evidence.h"
#include "fit/workers.h"

#include <vector>

/// For each title of the evidence the place that it and its neighbours ask for, whatever
/// the others do. One title alone would be at home in too many places.
std::vector<std::int32_t> OwnPlaces(const Evidence& evidence, const Stop& stop);
