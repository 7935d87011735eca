// The preprocessing of a parsed part before ReadXML (ReadPartRoot applies it):
// markup compatibility (ECMA-376 Part 3: mc:AlternateContent, mc:Ignorable,
// mc:ProcessContent, mc:MustUnderstand) and ISO Strict namespace URIs.
//
// Markup compatibility keeps, for each mc:AlternateContent, the first
// mc:Choice whose Requires prefixes all name namespaces the library
// understands (the bound schemas of ooxml/namespaces.h), else the mc:Fallback,
// else nothing, in place of the wrapper; the namespace declarations of the
// wrapper and the branch move onto the elements taken out.  Elements and
// attributes of ignorable namespaces the library does not understand are
// dropped (an element named in mc:ProcessContent leaves its children in its
// place); a must-understand namespace it does not understand is an error.
// The mc attributes themselves are removed.
#ifndef OOXML_OPC_MARKUP_H
#define OOXML_OPC_MARKUP_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <wx/string.h>

#include "ooxml/dom.h"
#include "ooxml/opc/package.h"

class wxXmlDocument;

namespace ooxml
{
namespace opc
{

// What the preprocessing did to one document.
struct OOXML_API PrepareStats
{
    bool strict = false;                 // some namespace was a Strict one
    std::size_t alternateContent = 0;    // mc:AlternateContent elements resolved
    std::size_t choices = 0;             // ... by an mc:Choice
    std::size_t fallbacks = 0;           // ... by the mc:Fallback
    std::size_t recovered = 0;           // elements kept from a Choice, a Fallback or ProcessContent
    std::size_t ignoredElements = 0;     // elements of ignorable namespaces dropped
    std::size_t ignoredAttributes = 0;   // attributes of ignorable namespaces dropped
    std::size_t unwrapped = 0;           // ignorable elements whose content was kept (ProcessContent)
};

// Applies the steps that `options` asks for, in place: Strict namespace URIs
// first (so that markup compatibility sees transitional ones), then markup
// compatibility.  False with `problem` if a must-understand namespace is not
// understood.
// At most `copyBudget` namespace declarations are copied onto the elements
// taken out of wrappers (Limits::maxCopiedDeclarations).
OOXML_API bool PrepareDocument(wxXmlDocument& document, const ReadOptions& options, wxString* problem,
                               PrepareStats* stats = nullptr, std::uint64_t copyBudget = Limits().maxCopiedDeclarations);
// The same on the compact tree of the fast path.
OOXML_API bool PrepareDocument(dom::Document& document, const ReadOptions& options, wxString* problem,
                               PrepareStats* stats = nullptr, std::uint64_t copyBudget = Limits().maxCopiedDeclarations);

// For an element handed out by a streaming parse (ooxml/opc/xml.h) before the
// part is complete: Strict and markup compatibility applied to it as the whole
// part would have them, with the declarations and mc attributes of its
// `ancestors` (root first) in force.  `elements` receives what takes its place:
// the element itself, the content markup compatibility keeps of it, or nothing.
OOXML_API bool PrepareElement(dom::Document& document, const std::vector<dom::Node*>& ancestors, dom::Node* element,
                              const ReadOptions& options, wxString* problem, PrepareStats* stats,
                              std::uint64_t copyBudget, std::vector<dom::Node*>* elements);

// The transitional URI of a Strict namespace or relationship type
// ("http://purl.oclc.org/ooxml/..."), or the URI itself if it is not one.
OOXML_API wxString TransitionalUri(const wxString& uri);

// Whether the library understands a namespace (one of the bound schemas).
OOXML_API bool IsUnderstoodNamespace(const wxString& uri);

} // namespace opc
} // namespace ooxml

#endif // OOXML_OPC_MARKUP_H
