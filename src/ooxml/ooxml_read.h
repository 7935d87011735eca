// Internal to the library: the value converters and the small helpers that
// keep the generated readers short.  Not installed.
#ifndef OOXML_OOXML_READ_H
#define OOXML_OOXML_READ_H

#include <vector>

#include <wx/any.h>
#include <wx/arrstr.h>
#include <wx/string.h>
#include <wx/xml/xml.h>

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

namespace ooxml_detail
{

// The content of the node's first child if that is a text node, else null.
inline const wxString* FirstText(const wxXmlNode* node)
{
    const wxXmlNode* first = node->GetChildren();
    return first && first->GetType() == wxXML_TEXT_NODE ? &first->GetContent() : nullptr;
}

// A qualified name, mapped with one schema's map the first time it is compared.
class NameMatcher
{
public:
    NameMatcher(const wxString& name, XMLNSContext* context, const XMLNSMap& map)
        : m_name(&name), m_context(context), m_map(&map), m_mapped(false) {}

    // Whether the name, mapped on the first call, equals `mappedName`.
    bool Is(const wxString& mappedName);

protected:
    // For the readers, which set the name of each node they visit.
    NameMatcher(XMLNSContext* context, const XMLNSMap& map)
        : m_name(nullptr), m_context(context), m_map(&map), m_mapped(false) {}

    void Reset(const wxString& name)
    {
        m_name = &name;
        m_mapped = false;
    }

private:
    const wxString* m_name;
    XMLNSContext* m_context;
    const XMLNSMap* m_map;
    wxString m_mappedName;
    bool m_mapped;
};

// Walks an element's attributes in document order, before any child is read.
class AttributeReader : public NameMatcher
{
public:
    AttributeReader(wxXmlNode* node, XMLNSContext* context, const XMLNSMap& map)
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
    const wxString& Value() const { return m_attribute->GetValue(); }

private:
    wxXmlAttribute* m_attribute;
};

// Walks an element's child nodes in document order, after its attributes: each
// child is pushed on the context before it is looked at and popped after,
// on every path out, early returns included.
class ChildReader : public NameMatcher
{
public:
    ChildReader(wxXmlNode* node, XMLNSContext* context, const XMLNSMap& map)
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

    wxXmlNode* Node() const { return m_child; }
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
    wxXmlNode* m_child;
    XMLNSContext* m_context;
};

// Logs the attribute names of a namespace that the map does not know, for a
// reader that has no attribute to compare them with.
inline void CheckAttributeNames(const wxXmlNode* node, XMLNSContext* context, const XMLNSMap& map)
{
    for (const wxXmlAttribute* attribute = node->GetAttributes(); attribute; attribute = attribute->GetNext())
        context->CheckName(attribute->GetName(), map);
}

// Create-or-reuse a single child, then read it: a repeated element fills the
// same object again.
template <class T>
bool ReadSingle(T*& member, wxXmlNode* node, XMLNSContext* context)
{
    if (!member)
        member = new T;
    return member->ReadXML(node, context);
}

// Append a new child first, then read it: a failed child stays last, so the
// caller sees how far the read got.
template <class T>
bool ReadAppend(XMLPtrArray<T>& member, wxXmlNode* node, XMLNSContext* context)
{
    T* child = new T;
    member.push_back(child);
    return child->ReadXML(node, context);
}

// Groups and holders take the child through their SetProperty.
template <class T>
bool SetSingle(T*& member, const wxString& name, wxXmlNode* node, XMLNSContext* context)
{
    if (!member)
        member = new T;
    return member->SetProperty(name, node, context);
}

template <class T>
bool SetAppend(XMLPtrArray<T>& member, const wxString& name, wxXmlNode* node, XMLNSContext* context)
{
    T* holder = new T;
    member.push_back(holder);
    return holder->SetProperty(name, node, context);
}

// An attribute group takes the attribute through its SetProperty.
template <class T>
bool SetAttribute(T*& member, const wxString& name, const wxString& value, XMLNSContext* context)
{
    if (!member)
        member = new T;
    return member->SetProperty(name, value, context);
}

// The text of the node's first child, if it is a text node, converted into a
// single value; an element without such text leaves the value as it was.
template <class T>
bool ReadValue(T& member, const wxXmlNode* node, bool (*parse)(T*, const wxString&))
{
    const wxString* text = FirstText(node);
    return text ? parse(&member, *text) : true;
}

// One entry per element, converted from its text (empty text if it has none).
template <class T>
bool AppendValue(std::vector<T>& member, const wxXmlNode* node, bool (*parse)(T*, const wxString&))
{
    const wxString* text = FirstText(node);
    T item{};
    if (!parse(&item, text ? *text : wxString()))
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
