// Internal to the library: the value converters and the small helpers that
// keep the generated readers short.  Not installed.
#ifndef OOXML_OOXML_READ_H
#define OOXML_OOXML_READ_H

#include <vector>

#include <wx/any.h>
#include <wx/arrstr.h>
#include <wx/string.h>
#include <wx/xml/xml.h>

#include "ooxml/dom.h"
#include "ooxml/ooxml.h"

// -- Value converters -----------------------------------------------------------
// Each writes the destination and returns true, or returns false and leaves it
// untouched.  Base 10, C locale, the whole text must be consumed.  The 8- and
// 16-bit ones parse a 32-bit value and keep its low bits without a range check.
bool ParseInt8(char* dest, const wxString& text);
bool ParseUInt8(unsigned char* dest, const wxString& text);
bool ParseInt16(short* dest, const wxString& text);
bool ParseUInt16(unsigned short* dest, const wxString& text);
bool ParseInt32(int* dest, const wxString& text);
bool ParseUInt32(unsigned int* dest, const wxString& text);
bool ParseInt64(long long* dest, const wxString& text);
bool ParseUInt64(unsigned long long* dest, const wxString& text);
bool ParseFloat(float* dest, const wxString& text);
bool ParseDouble(double* dest, const wxString& text);
bool ParseBool(bool* dest, const wxString& text);
bool ParseString(wxString* dest, const wxString& text);
// A 64-bit integer if the whole text is one, else a double, else the text.
bool ParseVariant(wxAny* dest, const wxString& text);

// The same conversions of UTF-8 text from the compact tree, with the same
// results: ASCII text is converted in place (no wide string is made for a
// number), other text through its wxString.
bool ParseInt8(char* dest, const ooxml::dom::Text& text);
bool ParseUInt8(unsigned char* dest, const ooxml::dom::Text& text);
bool ParseInt16(short* dest, const ooxml::dom::Text& text);
bool ParseUInt16(unsigned short* dest, const ooxml::dom::Text& text);
bool ParseInt32(int* dest, const ooxml::dom::Text& text);
bool ParseUInt32(unsigned int* dest, const ooxml::dom::Text& text);
bool ParseInt64(long long* dest, const ooxml::dom::Text& text);
bool ParseUInt64(unsigned long long* dest, const ooxml::dom::Text& text);
bool ParseFloat(float* dest, const ooxml::dom::Text& text);
bool ParseDouble(double* dest, const ooxml::dom::Text& text);
bool ParseBool(bool* dest, const ooxml::dom::Text& text);
bool ParseString(wxString* dest, const ooxml::dom::Text& text);
bool ParseVariant(wxAny* dest, const ooxml::dom::Text& text);

// Splits at single spaces (backslash escapes a space) and converts each piece,
// appending to `dest`; stops at the first piece that fails, keeping the items
// appended before it.
template <class T>
bool ParseList(std::vector<T>* dest, const wxString& text, bool (*parseItem)(T*, const wxString&))
{
    const wxArrayString pieces = wxSplit(text, ' ', '\\');
    for (const wxString& piece : pieces)
    {
        T item{};
        if (!parseItem(&item, piece))
            return false;
        dest->push_back(item);
    }
    return true;
}

template <class T>
bool ParseList(std::vector<T>* dest, const ooxml::dom::Text& text, bool (*parseItem)(T*, const wxString&))
{
    return ParseList(dest, text.ToString(), parseItem);
}

namespace ooxml_detail
{

// What the readers need of the two trees they read: a wxWidgets tree
// (wxXmlNode) and the compact tree of the fast path (ooxml::dom::Node).  Each
// reader body is written once over `Node` and compiled for both.
template <class Node>
struct NodeTraits;

template <>
struct NodeTraits<wxXmlNode>
{
    typedef wxXmlAttribute Attribute;
    typedef wxString Text;
    static const wxString& Value(const wxXmlAttribute* attribute) { return attribute->GetValue(); }
    static const wxString& Content(const wxXmlNode* node) { return node->GetContent(); }
};

template <>
struct NodeTraits<ooxml::dom::Node>
{
    typedef ooxml::dom::Attribute Attribute;
    typedef ooxml::dom::Text Text;
    static ooxml::dom::Text Value(const ooxml::dom::Attribute* attribute) { return attribute->GetText(); }
    static ooxml::dom::Text Content(const ooxml::dom::Node* node) { return node->GetText(); }
};

template <class Node>
using TextOf = typename NodeTraits<Node>::Text;

// Whether the node's first child is a text node; if so its content goes to `text`.
template <class Node>
bool FirstText(const Node* node, TextOf<Node>* text)
{
    const Node* first = node->GetChildren();
    if (!first || first->GetType() != wxXML_TEXT_NODE)
        return false;
    *text = NodeTraits<Node>::Content(first);
    return true;
}

// A qualified name, mapped with one schema's map the first time it is compared.
class NameMatcher
{
public:
    NameMatcher(const wxString& name, XMLNSContext* context, const XMLNSMap& map)
        : m_name(&name), m_context(context), m_map(&map), m_mapped(nullptr) {}

    // Whether the name, mapped on the first call, equals `mappedName`.
    bool Is(const wxString& mappedName);

protected:
    // For the readers, which set the name of each node they visit.
    NameMatcher(XMLNSContext* context, const XMLNSMap& map)
        : m_name(nullptr), m_context(context), m_map(&map), m_mapped(nullptr) {}

    void Reset(const wxString& name)
    {
        m_name = &name;
        m_mapped = nullptr;
    }

private:
    const wxString* m_name;
    XMLNSContext* m_context;
    const XMLNSMap* m_map;
    wxString m_mappedName;            // the mapped name, when the context does not keep it
    const wxString* m_mapped;         // the mapped name, once mapped
};

// Walks an element's attributes in document order, before any child is read.
template <class Node>
class AttributeReader : public NameMatcher
{
public:
    AttributeReader(Node* node, XMLNSContext* context, const XMLNSMap& map)
        : NameMatcher(context, map), m_attribute(node->GetAttributes())
    {
        if (m_attribute)
            Reset(m_attribute->GetName());
    }

    explicit operator bool() const { return m_attribute != nullptr; }

    void Next()
    {
        m_attribute = m_attribute->GetNext();
        if (m_attribute)
            Reset(m_attribute->GetName());
    }

    const wxString& Name() const { return m_attribute->GetName(); }
    decltype(auto) Value() const { return NodeTraits<Node>::Value(m_attribute); }

private:
    typename NodeTraits<Node>::Attribute* m_attribute;
};

// Walks an element's child nodes in document order, after its attributes: each
// child is pushed on the context before it is looked at and popped after,
// on every path out, early returns included.
template <class XmlNode>
class ChildReader : public NameMatcher
{
public:
    ChildReader(XmlNode* node, XMLNSContext* context, const XMLNSMap& map)
        : NameMatcher(context, map), m_child(node->GetChildren()), m_context(context)
    {
        Enter();
    }
    ~ChildReader()
    {
        if (m_child)
            m_context->PopStack();
    }
    ChildReader(const ChildReader&) = delete;
    ChildReader& operator=(const ChildReader&) = delete;

    explicit operator bool() const { return m_child != nullptr; }

    void Next()
    {
        m_context->PopStack();
        m_child = m_child->GetNext();
        Enter();
    }

    XmlNode* Node() const { return m_child; }
    const wxString& Name() const { return m_child->GetName(); }

private:
    void Enter()
    {
        if (m_child)
        {
            m_context->PushStack(m_child);
            Reset(m_child->GetName());
        }
    }
    XmlNode* m_child;
    XMLNSContext* m_context;
};

// Logs the attribute names of a namespace that the map does not know, for a
// reader that has no attribute to compare them with.
template <class Node>
void CheckAttributeNames(const Node* node, XMLNSContext* context, const XMLNSMap& map)
{
    for (auto* attribute = node->GetAttributes(); attribute; attribute = attribute->GetNext())
        context->CheckName(attribute->GetName(), map);
}

// Create-or-reuse a single child, then read it: a repeated element fills the
// same object again.
template <class T, class Node>
bool ReadSingle(T*& member, Node* node, XMLNSContext* context)
{
    if (!member)
        member = new T;
    return member->ReadXML(node, context);
}

// Append a new child first, then read it: a failed child stays last, so the
// caller sees how far the read got.
template <class T, class Node>
bool ReadAppend(XMLPtrArray<T>& member, Node* node, XMLNSContext* context)
{
    T* child = new T;
    member.push_back(child);
    return child->ReadXML(node, context);
}

// Groups and holders take the child through their SetProperty.
template <class T, class Node>
bool SetSingle(T*& member, const wxString& name, Node* node, XMLNSContext* context)
{
    if (!member)
        member = new T;
    return member->SetProperty(name, node, context);
}

template <class T, class Node>
bool SetAppend(XMLPtrArray<T>& member, const wxString& name, Node* node, XMLNSContext* context)
{
    T* holder = new T;
    member.push_back(holder);
    return holder->SetProperty(name, node, context);
}

// An attribute group takes the attribute through its SetProperty.
template <class T, class Text>
bool SetAttribute(T*& member, const wxString& name, const Text& value, XMLNSContext* context)
{
    if (!member)
        member = new T;
    return member->SetProperty(name, value, context);
}

// The text of the node's first child, if it is a text node, converted into a
// single value; an element without such text leaves the value as it was.
template <class T, class Node>
bool ReadValue(T& member, const Node* node, bool (*parse)(T*, const TextOf<Node>&))
{
    TextOf<Node> text;
    return FirstText(node, &text) ? parse(&member, text) : true;
}

// One entry per element, converted from its text (empty text if it has none).
template <class T, class Node>
bool AppendValue(std::vector<T>& member, const Node* node, bool (*parse)(T*, const TextOf<Node>&))
{
    TextOf<Node> text;
    FirstText(node, &text);
    T item{};
    if (!parse(&item, text))
        return false;
    member.push_back(item);
    return true;
}

// Owned objects of a destructor: every element of a pointer array (null
// entries are fine).
template <class T>
void DeleteAll(XMLPtrArray<T>& member)
{
    for (T* p : member)
        delete p;
}

} // namespace ooxml_detail

#endif // OOXML_OOXML_READ_H
