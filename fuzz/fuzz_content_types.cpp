// Fuzzes the reading of the content types stream into ooxml::content_types::CT_Types.
#include "fuzz_part.h"

#include "ooxml/package/content_types.h"

OOXML_FUZZ_PART(ooxml::content_types::CT_Types)
