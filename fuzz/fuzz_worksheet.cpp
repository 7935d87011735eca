// Fuzzes the reading of a SpreadsheetML worksheet into ooxml::sml::CT_Worksheet.
#include "fuzz_part.h"

#include "ooxml/spreadsheetml/sml.h"

OOXML_FUZZ_PART(ooxml::sml::CT_Worksheet)
