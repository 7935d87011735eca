// Fuzzes the reading of a DrawingML chart into ooxml::chart::CT_ChartSpace.
#include "fuzz_part.h"

#include "ooxml/drawingml/chart.h"

OOXML_FUZZ_PART(ooxml::chart::CT_ChartSpace)
