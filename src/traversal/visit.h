// Internal to the package library: the helpers that the generated visit
// functions and class infos call, one per kind of member or operation.
#ifndef OOXML_TRAVERSAL_VISIT_H
#define OOXML_TRAVERSAL_VISIT_H

#include <vector>

#include <wx/any.h>
#include <wx/string.h>

#include "ooxml/traversal/traversal.h"

class wxXmlNode;

namespace ooxml
{
namespace traversal
{

// The typed operations of a ClassInfo.
template <class T>
void* Create()
{
    return new T;
}

template <class T>
void Destroy(void* object)
{
    delete static_cast<T*>(object);
}

template <class T, class XmlNode>
bool Read(void* object, XmlNode* node, XMLNSContext* context)
{
    return static_cast<T*>(object)->ReadXML(node, context);
}

// Values reach the visitor as long long, unsigned long long, double, bool,
// wxString, or the wxAny of a union as it was read.
inline wxAny ToAny(bool v) { return wxAny(v); }
inline wxAny ToAny(char v) { return wxAny(static_cast<long long>(v)); }
inline wxAny ToAny(short v) { return wxAny(static_cast<long long>(v)); }
inline wxAny ToAny(int v) { return wxAny(static_cast<long long>(v)); }
inline wxAny ToAny(long long v) { return wxAny(v); }
inline wxAny ToAny(unsigned char v) { return wxAny(static_cast<unsigned long long>(v)); }
inline wxAny ToAny(unsigned short v) { return wxAny(static_cast<unsigned long long>(v)); }
inline wxAny ToAny(unsigned int v) { return wxAny(static_cast<unsigned long long>(v)); }
inline wxAny ToAny(unsigned long long v) { return wxAny(v); }
inline wxAny ToAny(float v) { return wxAny(static_cast<double>(v)); }
inline wxAny ToAny(double v) { return wxAny(v); }
inline wxAny ToAny(const wxString& v) { return wxAny(v); }
inline const wxAny& ToAny(const wxAny& v) { return v; }

template <class T>
void VisitValue(Visitor& visitor, const Member& member, const T& value)
{
    visitor.OnValue(member, ToAny(value));
}

template <class T>
void VisitValues(Visitor& visitor, Member member, const std::vector<T>& items)
{
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        member.index = i;
        visitor.OnValue(member, ToAny(T(items[i])));
    }
}

template <class T>
void VisitObject(Visitor& visitor, const Member& member, const T* child, const ClassInfo& info)
{
    if (child)
        visitor.OnObject(member, Node{child, &info});
    else
        visitor.OnAbsentObject(member);
}

template <class T>
void VisitObjects(Visitor& visitor, Member member, const XMLPtrArray<T>& items, const ClassInfo& info)
{
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        member.index = i;
        if (items[i])
            visitor.OnObject(member, Node{items[i], &info});
    }
}

} // namespace traversal
} // namespace ooxml

#endif // OOXML_TRAVERSAL_VISIT_H
