// Fuzzes the reading of a DrawingML chart (Part 6.2) into ooxml::chart::CT_ChartSpace.
#include "fuzz_part.h"

#include "ooxml/drawingml/chart.h"

OOXML_FUZZ_PART(ooxml::chart::CT_ChartSpace)
