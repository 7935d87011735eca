// Fuzzes the reading of a DrawingML theme into ooxml::dml::CT_OfficeStyleSheet.
#include "fuzz_part.h"

#include "ooxml/drawingml/dml.h"

OOXML_FUZZ_PART(ooxml::dml::CT_OfficeStyleSheet)
