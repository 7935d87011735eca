// Fuzzes the reading of the core properties part into ooxml::core_properties::CT_CoreProperties.
#include "fuzz_part.h"

#include "ooxml/package/core_properties.h"

OOXML_FUZZ_PART(ooxml::core_properties::CT_CoreProperties)
