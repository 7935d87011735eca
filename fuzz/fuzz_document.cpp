// Fuzzes the reading of a WordprocessingML main document into ooxml::wml::CT_Document.
#include "fuzz_part.h"

#include "ooxml/wordprocessingml/wml.h"

OOXML_FUZZ_PART(ooxml::wml::CT_Document)
