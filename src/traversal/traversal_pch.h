// Precompiled header of the traversal's sources: the wxWidgets and standard
// headers that every generated visit function needs, parsed once per build.
// Not installed.
#include <cstdint>
#include <typeinfo>
#include <vector>

#include <wx/any.h>
#include <wx/string.h>

#include "ooxml/ooxml.h"
