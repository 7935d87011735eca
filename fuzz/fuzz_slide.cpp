// Fuzzes the reading of a PresentationML slide into ooxml::pml::CT_Slide.
#include "fuzz_part.h"

#include "ooxml/presentationml/pml.h"

OOXML_FUZZ_PART(ooxml::pml::CT_Slide)
