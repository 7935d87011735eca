// Fuzzes the reading of a SpreadsheetML worksheet (Part 4.1) into ooxml::sml::CT_Worksheet.
#include "fuzz_part.h"

#include "ooxml/spreadsheetml/sml.h"

OOXML_FUZZ_PART(ooxml::sml::CT_Worksheet)
