// Parsing the bytes of one XML part, on both reading paths.
//
// The fast path (ParseXmlFast) drives libexpat itself and builds an
// ooxml::dom::Document with exactly the nodes wxXmlDocument::Load would build
// from the same bytes: white-space-only text dropped, adjacent character data
// merged, CDATA sections, comments and processing instructions as nodes of
// their own, entities and encodings (UTF-8, UTF-16 with a byte order mark,
// declared ISO-8859-1 and the other encodings libexpat knows) decoded alike.
// The wxWidgets path (ParseXml) runs the same checks in a parse that builds
// nothing (CheckXml), then lets wxWidgets build its tree.
//
// The checks are made on the parser's own events, never by scanning bytes:
// nesting depth, elements and attributes per part, attributes per element, a
// document type declaration (refused unless Limits::allowDtd), encodings
// libexpat does not know (refused: guessing one would change the text), the
// same attribute written twice through two prefixes of one namespace, and, on
// the wxWidgets path only, the cost of its text merging.  A failure is a
// one-line problem ("XML nested deeper than 256 elements", "XML does not parse:
// mismatched tag at line 3"); nothing is logged.
#ifndef OOXML_OPC_XML_H
#define OOXML_OPC_XML_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <wx/string.h>

#include "ooxml/dom.h"
#include "ooxml/opc/package.h"

class wxXmlDocument;

namespace ooxml
{
namespace opc
{

// What one parse counted (elements and attributes of streamed elements included).
struct XmlCounts
{
    std::uint64_t elements = 0;
    std::uint64_t attributes = 0;
    std::uint64_t streamedElements = 0; // of `elements`, those inside streamed ones (freed as they end)
    std::size_t depth = 0;              // deepest element nesting
};

// Streaming: the elements whose path of local names from the root is
// `path` ({"worksheet", "sheetData", "row"}) are handed to `element` as each
// one ends, fully built but not linked into the tree, with the open elements
// above it (root first, each with its attributes); after the call the
// element's memory is released.  Returning false stops the parse (not an error).
struct XmlStream
{
    std::vector<wxString> path;
    std::function<bool(const std::vector<dom::Node*>& ancestors, dom::Node* element)> element;
};

// Parses into `document` (which must be new).  False with `problem` for XML
// that is not well-formed or fails a check of `limits`; true when a stream
// callback stopped the parse.
OOXML_API bool ParseXmlFast(const char* bytes, std::size_t size, const Limits& limits, dom::Document* document,
                            wxString* problem, XmlCounts* counts = nullptr, const XmlStream* stream = nullptr);

// A part read in blocks: each call points `block` at the next `size` bytes
// (valid until the next call) and sets `size` to 0 at the end.  False, with
// `problem`, when the bytes cannot be read; the parse then fails with it.
using XmlBlockReader = std::function<bool(const char** block, std::size_t* size, wxString* problem)>;

// ParseXmlFast over a part that arrives in blocks (a ZIP entry as it is
// inflated), so the whole part never has to be in memory at once.  The tree
// and every check are those of the parse of the same bytes held whole; when
// a stream callback stops the parse, the rest of the part is not read.
OOXML_API bool ParseXmlFast(const XmlBlockReader& read, const Limits& limits, dom::Document* document,
                            wxString* problem, XmlCounts* counts = nullptr, const XmlStream* stream = nullptr);

// The checks of ParseXmlFast without building anything, plus the bound on
// wxWidgets' text merging (Limits::maxTextCopyBytes).
OOXML_API bool CheckXml(const char* bytes, std::size_t size, const Limits& limits, wxString* problem,
                        XmlCounts* counts = nullptr);

// The wxWidgets path: CheckXml, then wxXmlDocument::Load.  An empty part is
// refused; a parse error is returned in `problem`, not logged.
OOXML_API bool ParseXml(const char* bytes, std::size_t size, const Limits& limits, wxXmlDocument* document,
                        wxString* problem, XmlCounts* counts = nullptr);

} // namespace opc
} // namespace ooxml

#endif // OOXML_OPC_XML_H
