// Generic traversal of any object tree of the library, without knowing its
// types: every generated class has a visit function (generated beside the
// classes, in ooxml/traversal/<schema>.h, not a member of the class) that
// reports its members in declaration order to a Visitor.
//
//   struct Printer : ooxml::traversal::Visitor {
//       void OnValue(const Member& m, const wxAny& value) override { ... m.xml, m.present ... }
//       void OnObject(const Member& m, const Node& child) override { Visit(child, *this); }
//   };
//   Printer printer;
//   ooxml::traversal::Visit(ooxml::traversal::NodeOf(worksheet), printer);
//
// A base class's members come first (a derived class reads only its own, but
// holds both).  Arrays are reported item by item with their index.
//
// AllClasses() lists every generated class with what it takes to create,
// read, visit and destroy an object of it without knowing its type, and the
// content types and root element of the parts that it reads.
#ifndef OOXML_TRAVERSAL_TRAVERSAL_H
#define OOXML_TRAVERSAL_TRAVERSAL_H

#include <cstddef>
#include <typeinfo>

#include <wx/any.h>

#include "ooxml/ooxml.h"

class wxXmlNode;

namespace ooxml
{
namespace traversal
{

class Visitor;

// What the generator knows of a class.
struct ClassInfo
{
    const char* name;          // "CT_Worksheet"
    const char* schema;        // the schema's short name ("sml"), as in ooxml/aliases.h
    const char* cppNamespace;  // "schemas_openxmlformats_org_spreadsheetml_x2006_main"
    void (*visit)(const void* object, Visitor& visitor);
    void* (*create)();                   // new object, as its default constructor makes it
    void (*destroy)(void* object);       // deletes an object that create() made
    bool (*read)(void* object, wxXmlNode* node, XMLNSContext* context);  // its ReadXML
    bool (*readDom)(void* object, ooxml::dom::Node* node, XMLNSContext* context);  // ... of the compact tree
    const std::type_info* type;          // typeid of the class
    const char* fullName;                // "sml::CT_Worksheet"
    const char* namespaceUri;            // the schema's namespace
    // For the class that reads a whole part: the root element that names it in
    // a part declared only as XML, and the content types of its parts
    // (null-terminated); both null for the other classes.
    const char* rootElement;
    const char* const* contentTypes;
    // The root elements ("{namespace URI}local name") that parts of those
    // content types may have (null-terminated); null: any.
    const char* const* partElements;
};

// Every generated class, schema by schema, each in declaration order.
struct ClassList
{
    const ClassInfo* const* items;
    std::size_t count;

    const ClassInfo* const* begin() const { return items; }
    const ClassInfo* const* end() const { return items + count; }
};
OOXML_API ClassList AllClasses();

// A reference to any generated object, with its class.
struct Node
{
    const void* object;
    const ClassInfo* info;

    explicit operator bool() const { return object != nullptr; }
};

// Kinds of member, by how the class stores them.
enum class MemberKind
{
    Attribute,       // an attribute value
    Text,            // the element's own text (simple content)
    ValueElement,    // a child element of simple type
    Child,           // a child element of complex type: an object
    Group,           // an element group or named group object
    Holder,          // a choice holder object (Data__)
    AttributeGroup,  // an attribute group object
};

// One member as a visitor sees it.
struct Member
{
    const char* name;      // C++ member name, as in Get<name>(): "ZoomScale", "R_id", "Data__1"
    const char* xml;       // compared name in mapped form ("zoomScale", "r:id"); "" for groups and holders
    MemberKind kind;
    unsigned bit;          // presence bit within its class
    bool present;          // Check<name>()
    bool repeated;         // an array: reported once per item, with `index`
    std::size_t index;     // position in the array (0 for single members)
    const ClassInfo* owner;  // the class that declares the member
};

class OOXML_API Visitor
{
public:
    virtual ~Visitor();

    // A value member (attribute, text, element of simple type), or one item
    // of an array of values.  Numbers arrive as long long, unsigned long long
    // or double, booleans as bool, text as wxString, unions as they were read.
    // Not called for an array that holds no item.
    virtual void OnValue(const Member& member, const wxAny& value) = 0;

    // A member holding an object, or one item of an array of objects (never
    // called for a null pointer).  Call Visit(child, *this) to go down.
    virtual void OnObject(const Member& member, const Node& child) = 0;

    // Called for a single object member that is null (absent); does nothing
    // unless overridden.
    virtual void OnAbsentObject(const Member& member);
};

// Reports the members of `node` to `visitor`.
inline void Visit(const Node& node, Visitor& visitor)
{
    if (node.object)
        node.info->visit(node.object, visitor);
}

} // namespace traversal
} // namespace ooxml

#endif // OOXML_TRAVERSAL_TRAVERSAL_H
