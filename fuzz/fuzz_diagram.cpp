// Fuzzes the reading of a diagram data part into ooxml::dgm::CT_DataModel.
#include "fuzz_part.h"

#include "ooxml/drawingml/dgm.h"

OOXML_FUZZ_PART(ooxml::dgm::CT_DataModel)
