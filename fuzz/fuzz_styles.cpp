// Fuzzes the reading of a SpreadsheetML styles part (Part 4.2) into ooxml::sml::CT_Stylesheet.
#include "fuzz_part.h"

#include "ooxml/spreadsheetml/sml.h"

OOXML_FUZZ_PART(ooxml::sml::CT_Stylesheet)
