// Fuzzes the reading of a VML drawing part into ooxml::vml::CT_Group.
#include "fuzz_part.h"

#include "ooxml/vml/vml.h"

OOXML_FUZZ_PART(ooxml::vml::CT_Group)
