// Precompiled header of the library's sources: the wxWidgets and standard
// headers that every generated source needs, parsed once per build (they cost
// more than the generated code of a source).  Not installed.
#include <cstdint>
#include <limits>
#include <map>
#include <vector>

#include <wx/any.h>
#include <wx/arrstr.h>
#include <wx/string.h>
#include <wx/xml/xml.h>

#include "ooxml/ooxml.h"
#include "ooxml/ooxml_read.h"
