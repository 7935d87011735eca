// Fuzzes the reading of a SpreadsheetML styles part into ooxml::sml::CT_Stylesheet.
#include "fuzz_part.h"

#include "ooxml/spreadsheetml/sml.h"

OOXML_FUZZ_PART(ooxml::sml::CT_Stylesheet)
