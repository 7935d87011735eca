// Fuzzes the reading of a relationships part into ooxml::relationships::CT_Relationships.
#include "fuzz_part.h"

#include "ooxml/package/relationships.h"

OOXML_FUZZ_PART(ooxml::relationships::CT_Relationships)
