// Reading a package part into the class of its root element (found by the
// part's content type, or by the root element for parts declared as plain
// XML), without a common base class of the generated classes.
//
//   ooxml::opc::PartRoot root;
//   ooxml::opc::Error error;
//   if (!ooxml::opc::ReadPartRoot(package, "/xl/worksheets/sheet1.xml", &root, &error))
//       return Fail(error.ToString());           // not loaded: size, depth, XML, no root class
//   if (!root.ReadOk())
//       ...                                      // ReadXML returned false: the tree is partial
//   if (auto* sheet = root.Get<ooxml::sml::CT_Worksheet>())   // typed access
//       ...
//   ooxml::traversal::Visit(root.GetNode(), visitor);        // or untyped traversal
//
// The PartRoot owns the root object (and through it the whole tree).  Get<T>()
// returns it when T is its class and null otherwise; GetClass() names it.
#ifndef OOXML_OPC_PARTS_H
#define OOXML_OPC_PARTS_H

#include <functional>
#include <memory>
#include <typeinfo>
#include <vector>

#include <wx/string.h>

#include "ooxml/opc/markup.h"
#include "ooxml/opc/package.h"
#include "ooxml/traversal/traversal.h"

class wxXmlNode;

namespace ooxml
{
namespace opc
{

// The classes that read whole parts are entries of the class registry
// (traversal::AllClasses()): `fullName` ("sml::CT_Worksheet"), `type`,
// `create`, `read`, `destroy`, and the content types and root element of their parts.
using RootClass = traversal::ClassInfo;

// The root class for parts of a content type (the XML parts of ECMA-376 and
// the Microsoft extensions: workbook, worksheet, document, slide, theme,
// chart ...), or null.  Case and parameters (";charset=...") do not matter.
OOXML_API const RootClass* FindRootClassByContentType(const wxString& contentType);

// The root class for a root element, by its namespace URI and local name: for
// parts whose content type says only "XML" (custom XML items such as a
// bibliography), or null.
OOXML_API const RootClass* FindRootClassByElement(const wxString& namespaceUri, const wxString& localName);

// The root class of a part of `package`: by content type, by its name for the
// content types part, else null.  Does not read the part.  The part name may
// be written either way ("/xl/workbook.xml" or "xl/workbook.xml").
OOXML_API const RootClass* FindRootClass(const Package& package, const wxString& partName);

// Whether a part holds XML that ReadPartRoot would read: the content types part,
// relationships, a content type ending in "xml" (and VML drawings), or one
// with a root class.  Images, binaries and the like are not.
OOXML_API bool IsXmlPart(const Package& package, const Part& part);

// A part read into its root class.  Movable, not copyable.
class OOXML_API PartRoot
{
public:
    PartRoot();
    PartRoot(PartRoot&& other) noexcept;
    PartRoot& operator=(PartRoot&& other) noexcept;
    ~PartRoot();
    PartRoot(const PartRoot&) = delete;
    PartRoot& operator=(const PartRoot&) = delete;

    bool IsEmpty() const { return m_object == nullptr; }
    const RootClass* GetClass() const { return m_class; }
    bool ReadOk() const { return m_readOk; }           // what ReadXML returned
    traversal::Node GetNode() const;

    // The root object if it is a T, else null.  Ownership stays here.
    template <class T>
    T* Get() const
    {
        return m_object && *m_class->type == typeid(T) ? static_cast<T*>(m_object) : nullptr;
    }

    // Gives up the root object (the caller deletes it as its class).
    void* Release();

private:
    friend OOXML_API bool ReadPartXml(const RootClass&, wxXmlDocument&, PartRoot*);
    friend OOXML_API bool ReadPartXml(const RootClass&, dom::Document&, PartRoot*);
    // Replaces the object by a new one of `cls` read from the document's root.
    template <class Document>
    bool Read(const RootClass& cls, Document& document);

    const RootClass* m_class;
    void* m_object;
    bool m_readOk;
};

// Loads a part (within the package's limits) and reads it into its root
// class.  False with `error` if the package has no such part ("no part named
// /x/y.xml"), or it cannot be loaded, is not XML, or has no root class (then
// with error->noRootClass: a part that is not ours to read, not a broken one); true
// otherwise, with ReadXML's own result in root->ReadOk().  The part name may
// be written either way ("/xl/workbook.xml" or "xl/workbook.xml"); messages
// use the package's own spelling.
// The part is parsed on the fast path (ooxml/opc/xml.h) unless the package's
// ReadOptions ask for wxWidgets; the preprocessing follows the ReadOptions too.
// `stats`, if given, receives what it did.
OOXML_API bool ReadPartRoot(const Package& package, const wxString& partName, PartRoot* root, Error* error,
                        PrepareStats* stats = nullptr);

// Streaming: reads a part as ReadPartRoot does, except the elements at `path`
// (local names from the root element down: {"worksheet", "sheetData", "row"}),
// which are handed to `element` one at a time as the parser finishes each,
// with a namespace context in which their ancestors' declarations are in
// scope, markup compatibility and Strict already applied, and freed after the
// call; the part's other content is read into `root` as usual.  Memory stays
// that of one element plus the rest of the part, however many elements
// there are.  `element` returns false to stop early (the call still returns
// true, with what was read up to there).  Always the fast path.  An element
// at the path that markup compatibility replaces (an mc:AlternateContent in
// its place) is read with the rest of the part.
OOXML_API bool StreamPartRoot(const Package& package, const wxString& partName, const std::vector<wxString>& path,
                              const std::function<bool(dom::Node* element, XMLNSContext* context)>& element,
                              PartRoot* root, Error* error, PrepareStats* stats = nullptr);

// The same with each element read into a T (sml::CT_Row for the rows of a
// worksheet, sml::CT_Rst for the items of the shared strings table):
// `each(object, readOk)` gets the object, fully read, and what its ReadXML
// returned.
//
//   ooxml::opc::StreamPart<ooxml::sml::CT_Row>(package, "/xl/worksheets/sheet1.xml",
//       {"worksheet", "sheetData", "row"},
//       [&](ooxml::sml::CT_Row& row, bool ok) { ...; return true; }, &root, &error);
template <class T>
bool StreamPart(const Package& package, const wxString& partName, const std::vector<wxString>& path,
                const std::function<bool(T& object, bool readOk)>& each, PartRoot* root, Error* error,
                PrepareStats* stats = nullptr)
{
    return StreamPartRoot(
        package, partName, path,
        [&each](dom::Node* node, XMLNSContext* context) {
            T object;
            const bool ok = object.ReadXML(node, context);
            return each(object, ok);
        },
        root, error, stats);
}

// Reads an already loaded document's root element into a new object of `cls`.
OOXML_API bool ReadPartXml(const RootClass& cls, wxXmlDocument& document, PartRoot* root);
OOXML_API bool ReadPartXml(const RootClass& cls, dom::Document& document, PartRoot* root);

} // namespace opc
} // namespace ooxml

#endif // OOXML_OPC_PARTS_H
