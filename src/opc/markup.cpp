// Markup compatibility (ECMA-376 Part 3) and Strict namespaces.
#include "ooxml/opc/markup.h"

#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include <wx/xml/xml.h>

#include "ooxml/namespaces.h"

namespace ooxml
{
namespace opc
{

namespace
{

// Wide constants: comparing a wxString with a narrow literal converts the
// literal through the C library on every call, which dominated the walk.
const std::wstring_view kMarkupCompatibility = L"http://schemas.openxmlformats.org/markup-compatibility/2006";
const std::wstring_view kStrictBase = L"http://purl.oclc.org/ooxml/";
const wxString kTransitionalBase = wxS("http://schemas.openxmlformats.org/");
const std::wstring_view kXmlns = L"xmlns";

std::wstring_view View(const wxString& text)
{
    return std::wstring_view(text.wx_str(), text.length());
}

// Strict URIs whose transitional form is not the regular one.
const std::pair<const char*, const char*> kIrregular[] = {
    {"http://purl.oclc.org/ooxml/officeDocument/extendedProperties",
     "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties"},
    {"http://purl.oclc.org/ooxml/officeDocument/customProperties",
     "http://schemas.openxmlformats.org/officeDocument/2006/custom-properties"},
    {"http://purl.oclc.org/ooxml/officeDocument/relationships/extendedProperties",
     "http://schemas.openxmlformats.org/officeDocument/2006/relationships/extended-properties"},
    {"http://purl.oclc.org/ooxml/officeDocument/relationships/customProperties",
     "http://schemas.openxmlformats.org/officeDocument/2006/relationships/custom-properties"},
    {"http://purl.oclc.org/ooxml/officeDocument/relationships/metadata/thumbnail",
     "http://schemas.openxmlformats.org/package/2006/relationships/metadata/thumbnail"},
};

bool IsNamespaceDeclaration(const wxString& name)
{
    const std::wstring_view view = View(name);
    return view.substr(0, kXmlns.size()) == kXmlns && (view.size() == kXmlns.size() || view[kXmlns.size()] == L':');
}

// The in-scope namespace declarations while the tree is walked.
class Scopes
{
public:
    void Push(const wxXmlNode* element)
    {
        m_marks.push_back(m_bindings.size());
        for (const wxXmlAttribute* a = element->GetAttributes(); a; a = a->GetNext())
        {
            const wxString& name = a->GetName();
            if (IsNamespaceDeclaration(name))
                m_bindings.emplace_back(name.length() > kXmlns.size() ? name.Mid(kXmlns.size() + 1) : wxString(),
                                        a->GetValue());
        }
    }
    void Pop()
    {
        m_bindings.resize(m_marks.back());
        m_marks.pop_back();
    }
    // The URI bound to a prefix ("" for the default namespace); empty if none.
    wxString Resolve(const wxString& prefix) const
    {
        for (auto i = m_bindings.rbegin(); i != m_bindings.rend(); ++i)
            if (i->first == prefix)
                return i->second;
        if (View(prefix) == L"xml")
            return wxS("http://www.w3.org/XML/1998/namespace");
        return wxString();
    }
    wxString ElementNamespace(const wxString& qualifiedName) const
    {
        const int colon = qualifiedName.Find(':');
        return Resolve(colon == wxNOT_FOUND ? wxString() : qualifiedName.Left(colon));
    }
    // Attributes without a prefix are in no namespace.
    wxString AttributeNamespace(const wxString& qualifiedName) const
    {
        const int colon = qualifiedName.Find(':');
        return colon == wxNOT_FOUND ? wxString() : Resolve(qualifiedName.Left(colon));
    }

private:
    std::vector<std::pair<wxString, wxString>> m_bindings;
    std::vector<std::size_t> m_marks;
};

wxString LocalName(const wxString& qualifiedName)
{
    return qualifiedName.AfterLast(':');
}

// Namespaces declared ignorable and element names whose content is kept,
// as they accumulate from the root down.
struct Compatibility
{
    std::set<wxString> ignorable;                          // namespace URIs
    std::set<std::pair<wxString, wxString>> processContent; // (URI, local name or "*")
};

class MarkupProcessor
{
public:
    MarkupProcessor(PrepareStats& stats, wxString* problem) : m_stats(stats), m_problem(problem) {}

    bool Process(wxXmlNode* element, Compatibility compatibility)
    {
        m_scopes.Push(element);
        const bool ok = ProcessInScope(element, compatibility);
        m_scopes.Pop();
        return ok;
    }

private:
    // Process() for an element whose declarations are already in scope.
    bool ProcessInScope(wxXmlNode* element, Compatibility compatibility)
    {
        return ReadCompatibilityAttributes(element, compatibility) && ProcessChildren(element, compatibility);
    }

    bool IsMarkupCompatibility(const wxString& qualifiedName, bool attribute) const
    {
        const wxString uri = attribute ? m_scopes.AttributeNamespace(qualifiedName)
                                       : m_scopes.ElementNamespace(qualifiedName);
        return View(uri) == kMarkupCompatibility;
    }

    bool Ignored(const wxString& uri, const Compatibility& compatibility) const
    {
        return !uri.empty() && compatibility.ignorable.count(uri) && !IsUnderstoodNamespace(uri);
    }

    // Reads mc:Ignorable, mc:ProcessContent and mc:MustUnderstand of the
    // element, drops every mc attribute and the attributes of ignored namespaces.
    bool ReadCompatibilityAttributes(wxXmlNode* element, Compatibility& compatibility)
    {
        std::vector<wxString> drop;
        for (const wxXmlAttribute* a = element->GetAttributes(); a; a = a->GetNext())
        {
            const wxString& name = a->GetName();
            if (name.Find(':') == wxNOT_FOUND || IsNamespaceDeclaration(name) || !IsMarkupCompatibility(name, true))
                continue;
            const std::wstring_view local = View(name).substr(View(name).find(L':') + 1);
            const wxArrayString items = wxSplit(a->GetValue().Strip(wxString::both), ' ', '\0');
            for (const wxString& item : items)
            {
                if (item.empty())
                    continue;
                if (local == L"Ignorable")
                {
                    const wxString uri = m_scopes.Resolve(item);
                    if (!uri.empty())
                        compatibility.ignorable.insert(uri);
                }
                else if (local == L"ProcessContent")
                {
                    const int colon = item.Find(':');
                    if (colon != wxNOT_FOUND)
                        compatibility.processContent.insert({m_scopes.Resolve(item.Left(colon)), item.Mid(colon + 1)});
                }
                else if (local == L"MustUnderstand")
                {
                    const wxString uri = m_scopes.Resolve(item);
                    if (!IsUnderstoodNamespace(uri))
                    {
                        *m_problem = "mc:MustUnderstand names a namespace the library does not understand: " +
                                     (uri.empty() ? "prefix " + item + " (unbound)" : uri);
                        return false;
                    }
                }
            }
            drop.push_back(name);
        }
        for (const wxXmlAttribute* a = element->GetAttributes(); a && !compatibility.ignorable.empty(); a = a->GetNext())
        {
            const wxString& name = a->GetName();
            if (name.Find(':') != wxNOT_FOUND && !IsNamespaceDeclaration(name) &&
                Ignored(m_scopes.AttributeNamespace(name), compatibility))
            {
                drop.push_back(name);
                ++m_stats.ignoredAttributes;
            }
        }
        for (const wxString& name : drop)
            element->DeleteAttribute(name);
        return true;
    }

    // Whether every prefix of a Choice's Requires names an understood
    // namespace (the Choice's own declarations in scope).
    bool Satisfied(const wxXmlNode* choice) const
    {
        for (const wxString& prefix : wxSplit(choice->GetAttribute(wxS("Requires")).Strip(wxString::both), ' ', '\0'))
            if (!prefix.empty() && !IsUnderstoodNamespace(m_scopes.Resolve(prefix)))
                return false;
        return true;
    }

    // Moves the children of `from` into `parent` in place of `at` (before it),
    // carrying the namespace declarations of `from` and of `outer` (if any)
    // onto the elements; returns the first moved node, or the node after `at`.
    wxXmlNode* Unwrap(wxXmlNode* parent, wxXmlNode* at, wxXmlNode* from, const wxXmlNode* outer)
    {
        std::vector<std::pair<wxString, wxString>> declarations;
        for (const wxXmlNode* holder : {outer, static_cast<const wxXmlNode*>(from)})
            if (holder)
                for (const wxXmlAttribute* a = holder->GetAttributes(); a; a = a->GetNext())
                    if (IsNamespaceDeclaration(a->GetName()))
                        declarations.emplace_back(a->GetName(), a->GetValue());
        wxXmlNode* first = nullptr;
        while (wxXmlNode* child = from->GetChildren())
        {
            from->RemoveChild(child);
            if (child->GetType() == wxXML_ELEMENT_NODE)
            {
                for (const auto& declaration : declarations)
                {
                    wxString existing;
                    if (!child->GetAttribute(declaration.first, &existing))
                        child->AddAttribute(declaration.first, declaration.second);
                }
                ++m_stats.recovered;
            }
            parent->InsertChild(child, at);
            if (!first)
                first = child;
        }
        return first ? first : at->GetNext();
    }

    bool ProcessChildren(wxXmlNode* element, const Compatibility& compatibility)
    {
        wxXmlNode* child = element->GetChildren();
        while (child)
        {
            if (child->GetType() != wxXML_ELEMENT_NODE)
            {
                child = child->GetNext();
                continue;
            }
            // The child's own declarations are in scope while it is looked at
            // and processed, pushed once.
            m_scopes.Push(child);
            const wxString uri = m_scopes.ElementNamespace(child->GetName());
            const wxString local = LocalName(child->GetName());
            if (View(uri) == kMarkupCompatibility && View(local) == L"AlternateContent")
            {
                m_scopes.Pop();
                child = ResolveAlternateContent(element, child);
                continue;
            }
            if (!compatibility.ignorable.empty() && Ignored(uri, compatibility))
            {
                m_scopes.Pop();
                wxXmlNode* next;
                if (compatibility.processContent.count({uri, local}) || compatibility.processContent.count({uri, "*"}))
                {
                    ++m_stats.unwrapped;
                    next = Unwrap(element, child, child, nullptr);
                }
                else
                {
                    ++m_stats.ignoredElements;
                    next = child->GetNext();
                }
                element->RemoveChild(child);
                delete child;
                child = next;
                continue;
            }
            const bool ok = ProcessInScope(child, compatibility);
            m_scopes.Pop();
            if (!ok)
                return false;
            child = child->GetNext();
        }
        return true;
    }

    // Replaces an mc:AlternateContent by the content of its selected branch;
    // returns the node to go on with (the first node taken out, or the next).
    wxXmlNode* ResolveAlternateContent(wxXmlNode* parent, wxXmlNode* alternate)
    {
        ++m_stats.alternateContent;
        m_scopes.Push(alternate);
        wxXmlNode* selected = nullptr;
        for (wxXmlNode* branch = alternate->GetChildren(); branch && !selected; branch = branch->GetNext())
        {
            if (branch->GetType() != wxXML_ELEMENT_NODE)
                continue;
            m_scopes.Push(branch);
            const bool mc = View(m_scopes.ElementNamespace(branch->GetName())) == kMarkupCompatibility;
            const wxString local = LocalName(branch->GetName());
            if (mc && View(local) == L"Choice" && Satisfied(branch))
            {
                selected = branch;
                ++m_stats.choices;
            }
            else if (mc && View(local) == L"Fallback")
            {
                selected = branch;
                ++m_stats.fallbacks;
            }
            m_scopes.Pop();
        }
        m_scopes.Pop();
        wxXmlNode* next = selected ? Unwrap(parent, alternate, selected, alternate) : alternate->GetNext();
        parent->RemoveChild(alternate);
        delete alternate;
        return next;
    }

    Scopes m_scopes;
    PrepareStats& m_stats;
    wxString* m_problem;
};

// Rewrites the Strict namespace URIs of every declaration to transitional ones
// (when asked) and tells whether any declaration names the markup compatibility
// namespace. Without one nothing in the part is markup compatibility, and the
// processing that tracks every element's namespace scope can be skipped: on a
// large plain part it costs about as much as ReadXML itself.
bool ScanDeclarations(wxXmlNode* element, bool rewriteStrict, PrepareStats& stats)
{
    bool markupCompatibility = false;
    for (wxXmlAttribute* a = element->GetAttributes(); a; a = a->GetNext())
    {
        if (!IsNamespaceDeclaration(a->GetName()))
            continue;
        if (rewriteStrict)
        {
            const wxString transitional = TransitionalUri(a->GetValue());
            if (transitional != a->GetValue())
            {
                a->SetValue(transitional);
                stats.strict = true;
            }
        }
        if (View(a->GetValue()) == kMarkupCompatibility)
            markupCompatibility = true;
    }
    for (wxXmlNode* child = element->GetChildren(); child; child = child->GetNext())
        if (child->GetType() == wxXML_ELEMENT_NODE && ScanDeclarations(child, rewriteStrict, stats))
            markupCompatibility = true;
    return markupCompatibility;
}

} // namespace

wxString TransitionalUri(const wxString& uri)
{
    if (View(uri).substr(0, kStrictBase.size()) != kStrictBase)
        return uri;
    for (const auto& irregular : kIrregular)
        if (uri == wxString::FromAscii(irregular.first))
            return wxString::FromAscii(irregular.second);
    // http://purl.oclc.org/ooxml/<first>/<rest> -> http://schemas.openxmlformats.org/<first>/2006/<rest>
    const wxString path = uri.Mid(kStrictBase.size());
    const int slash = path.Find('/');
    if (slash == wxNOT_FOUND)
        return uri;
    return kTransitionalBase + path.Left(slash) + wxS("/2006") + path.Mid(slash);
}

bool IsUnderstoodNamespace(const wxString& uri)
{
    static const std::set<wxString> understood = [] {
        std::set<wxString> uris;
        for (std::size_t i = 0; i < OOXMLSchemaCount; ++i)
            uris.insert(wxString::FromAscii(OOXMLSchemas[i].uri));
        return uris;
    }();
    return understood.count(uri) != 0;
}

bool PrepareDocument(wxXmlDocument& document, const ReadOptions& options, wxString* problem, PrepareStats* stats)
{
    PrepareStats local;
    PrepareStats& s = stats ? *stats : local;
    wxXmlNode* root = document.GetRoot();
    if (!root)
        return true;
    if (!options.strict && !options.markupCompatibility)
        return true;
    const bool declaresMarkupCompatibility = ScanDeclarations(root, options.strict, s);
    if (options.markupCompatibility && declaresMarkupCompatibility)
    {
        MarkupProcessor processor(s, problem);
        if (!processor.Process(root, Compatibility()))
            return false;
    }
    return true;
}

} // namespace opc
} // namespace ooxml
