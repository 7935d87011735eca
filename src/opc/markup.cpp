// Markup compatibility (ECMA-376 Part 3) and Strict namespaces.
#include "ooxml/opc/markup.h"

#include <memory>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <wx/hashmap.h>
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

// The two trees the processing edits: wxWidgets' and the compact one of the
// fast path.  Both are edited in constant time per change (attributes are
// appended after a known last one and unlinked after a known previous one).
struct WxTree
{
    typedef wxXmlNode Node;
    typedef wxXmlAttribute Attribute;

    static bool MayDeclare(const Node*) { return true; }

    void SetValue(Attribute* attribute, const wxString& value) { attribute->SetValue(value); }
    Attribute* Append(Node*, Attribute* last, const wxString& name, const wxString& value)
    {
        Attribute* attribute = new wxXmlAttribute(name, value);
        last->SetNext(attribute);
        return attribute;
    }
    void AppendFirst(Node* element, const wxString& name, const wxString& value) { element->AddAttribute(name, value); }
    void Unlink(Node* element, Attribute* previous, Attribute* attribute)
    {
        if (previous)
            previous->SetNext(attribute->GetNext());
        else
            element->SetAttributes(attribute->GetNext());
        delete attribute;
    }
    void Insert(Node* parent, Node* child, Node* before) { parent->InsertChild(child, before); }
    void Remove(Node* parent, Node* child) { parent->RemoveChild(child); }
    void Delete(Node* parent, Node* child)
    {
        parent->RemoveChild(child);
        delete child;
    }
};

struct DomTree
{
    typedef dom::Node Node;
    typedef dom::Attribute Attribute;

    // The compact tree knows which elements declare namespaces.
    static bool MayDeclare(const Node* element) { return element->DeclaresNamespaces(); }

    void SetValue(Attribute* attribute, const wxString& value) { document.SetAttributeValue(attribute, value); }
    Attribute* Append(Node* element, Attribute* last, const wxString& name, const wxString& value)
    {
        return document.AppendAttribute(element, last, document.Intern(name), document.Encode(value));
    }
    void AppendFirst(Node* element, const wxString& name, const wxString& value) { Append(element, nullptr, name, value); }
    void Unlink(Node* element, Attribute* previous, Attribute* attribute)
    {
        document.UnlinkAttribute(element, previous, attribute);
    }
    void Insert(Node* parent, Node* child, Node* before) { document.InsertChild(parent, child, before); }
    void Remove(Node* parent, Node* child) { document.RemoveChild(parent, child); }
    void Delete(Node* parent, Node* child) { document.RemoveChild(parent, child); }

    dom::Document& document;
};

// The in-scope namespace declarations while the tree is walked: per prefix a
// stack of URIs, so that a lookup costs the same at any depth.
class Scopes
{
public:
    template <class Node>
    void Push(const Node* element)
    {
        m_marks.push_back(m_declared.size());
        for (const auto* a = element->GetAttributes(); a; a = a->GetNext())
        {
            const wxString& name = a->GetName();
            if (dom::IsNamespaceDeclaration(name))
            {
                const wxString prefix = name.length() > kXmlns.size() ? name.Mid(kXmlns.size() + 1) : wxString();
                m_bindings[prefix].push_back(a->GetValue());
                m_declared.push_back(prefix);
            }
        }
    }
    void Pop()
    {
        for (std::size_t i = m_marks.back(); i < m_declared.size(); ++i)
            m_bindings[m_declared[i]].pop_back();
        m_declared.resize(m_marks.back());
        m_marks.pop_back();
    }
    // The URI bound to a prefix ("" for the default namespace); empty if none.
    wxString Resolve(const wxString& prefix) const
    {
        const auto found = m_bindings.find(prefix);
        if (found != m_bindings.end() && !found->second.empty())
            return found->second.back();
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
    std::unordered_map<wxString, std::vector<wxString>, wxStringHash, wxStringEqual> m_bindings;
    std::vector<wxString> m_declared;   // the prefixes pushed, in order
    std::vector<std::size_t> m_marks;
};

wxString LocalName(const wxString& qualifiedName)
{
    return qualifiedName.AfterLast(':');
}

// The items of a space-separated attribute value, empty ones skipped.
wxArrayString Items(const wxString& value)
{
    wxArrayString items;
    for (const wxString& item : wxSplit(wxString(value).Strip(wxString::both), ' ', '\0'))
        if (!item.empty())
            items.push_back(item);
    return items;
}

// Namespaces declared ignorable and element names whose content is kept,
// as they accumulate from the root down.
struct Compatibility
{
    std::set<wxString> ignorable;                          // namespace URIs
    std::set<std::pair<wxString, wxString>> processContent; // (URI, local name or "*")
};

template <class Tree>
class MarkupProcessor
{
public:
    typedef typename Tree::Node Node;
    typedef typename Tree::Attribute Attribute;

    MarkupProcessor(Tree tree, PrepareStats& stats, wxString* problem, std::uint64_t copyBudget)
        : m_tree(tree), m_stats(stats), m_problem(problem), m_budget(copyBudget), m_limit(copyBudget)
    {
    }

    bool Process(Node* element, const Compatibility& compatibility)
    {
        m_scopes.Push(element);
        const bool ok = ProcessInScope(element, compatibility);
        m_scopes.Pop();
        return ok;
    }

    // For an element handed out while the part is still being parsed: its
    // ancestors' declarations and mc attributes are taken into account (and
    // left in place, for the processing of the whole part later), then the
    // content of `holder`, a stand-in for the element's parent, is processed.
    bool ProcessDetached(const std::vector<Node*>& ancestors, Node* holder)
    {
        Compatibility inherited;
        bool ok = true;
        for (const Node* ancestor : ancestors)
        {
            m_scopes.Push(ancestor);
            std::unique_ptr<Compatibility> own;
            ok = ok && ReadCompatibility(ancestor, inherited, own);
            if (own)
                inherited = *own;
        }
        ok = ok && ProcessChildren(holder, inherited);
        for (std::size_t i = 0; i < ancestors.size(); ++i)
            m_scopes.Pop();
        return ok;
    }

private:
    // Process() for an element whose declarations are already in scope.  The
    // element's own mc attributes extend what it inherits; the copy is made
    // only when they do, so that a long list of ignorable namespaces is not
    // copied for every element.
    bool ProcessInScope(Node* element, const Compatibility& inherited)
    {
        std::unique_ptr<Compatibility> own;
        return ReadCompatibilityAttributes(element, inherited, own) &&
               ProcessChildren(element, own ? *own : inherited);
    }

    bool IsMarkupCompatibility(const wxString& qualifiedName, bool attribute) const
    {
        const wxString uri = attribute ? m_scopes.AttributeNamespace(qualifiedName)
                                       : m_scopes.ElementNamespace(qualifiedName);
        return View(uri) == kMarkupCompatibility;
    }

    static bool Ignored(const wxString& uri, const Compatibility& compatibility)
    {
        return !uri.empty() && compatibility.ignorable.count(uri) && !IsUnderstoodNamespace(uri);
    }

    // Whether an attribute is a candidate for the mc and ignorable checks: a
    // prefixed name that is not a namespace declaration.
    static bool Prefixed(const wxString& name) { return name.Find(':') != wxNOT_FOUND && !dom::IsNamespaceDeclaration(name); }

    // Reads mc:Ignorable, mc:ProcessContent and mc:MustUnderstand of the
    // element, drops every mc attribute and the attributes of ignored namespaces.
    bool ReadCompatibilityAttributes(Node* element, const Compatibility& inherited,
                                     std::unique_ptr<Compatibility>& own)
    {
        if (!ReadCompatibility(element, inherited, own))
            return false;
        DropAttributes(element, own ? *own : inherited);
        return true;
    }

    // Extends what `inherited` says by the element's mc attributes (into
    // `own`, made when needed); false for a must-understand namespace that
    // is not understood.
    bool ReadCompatibility(const Node* element, const Compatibility& inherited, std::unique_ptr<Compatibility>& own)
    {
        auto extend = [&]() -> Compatibility& {
            if (!own)
                own.reset(new Compatibility(inherited));
            return *own;
        };
        for (const Attribute* a = element->GetAttributes(); a; a = a->GetNext())
        {
            const wxString& name = a->GetName();
            if (!Prefixed(name) || !IsMarkupCompatibility(name, true))
                continue;
            const std::wstring_view local = View(name).substr(View(name).find(L':') + 1);
            for (const wxString& item : Items(a->GetValue()))
            {
                if (local == L"Ignorable")
                {
                    const wxString uri = m_scopes.Resolve(item);
                    if (!uri.empty())
                        extend().ignorable.insert(uri);
                }
                else if (local == L"ProcessContent")
                {
                    const int colon = item.Find(':');
                    if (colon != wxNOT_FOUND)
                        extend().processContent.insert({m_scopes.Resolve(item.Left(colon)), item.Mid(colon + 1)});
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
        }
        return true;
    }

    // Drops the mc attributes and those of ignored namespaces.
    void DropAttributes(Node* element, const Compatibility& compatibility)
    {
        Attribute* previous = nullptr;
        for (Attribute* a = element->GetAttributes(); a;)
        {
            Attribute* next = a->GetNext();
            const wxString& name = a->GetName();
            bool drop = false;
            if (Prefixed(name))
            {
                drop = IsMarkupCompatibility(name, true);
                if (!compatibility.ignorable.empty() && Ignored(m_scopes.AttributeNamespace(name), compatibility))
                {
                    drop = true;
                    ++m_stats.ignoredAttributes;
                }
            }
            if (drop)
                m_tree.Unlink(element, previous, a);
            else
                previous = a;
            a = next;
        }
    }

    // Whether every prefix of a Choice's Requires names an understood
    // namespace (the Choice's own declarations in scope).
    bool Satisfied(const Node* choice) const
    {
        for (const wxString& prefix : Items(choice->GetAttribute(wxS("Requires"))))
            if (!IsUnderstoodNamespace(m_scopes.Resolve(prefix)))
                return false;
        return true;
    }

    // Adds the declarations an element does not make itself, after its last
    // attribute.  Every one added counts against the part's attribute limit:
    // nested wrappers with many declarations would otherwise multiply them.
    bool AddDeclarations(Node* element, const std::vector<std::pair<wxString, wxString>>& declarations)
    {
        std::unordered_set<wxString, wxStringHash, wxStringEqual> present;
        Attribute* last = nullptr;
        for (Attribute* a = element->GetAttributes(); a; a = a->GetNext())
        {
            present.insert(a->GetName());
            last = a;
        }
        for (const auto& declaration : declarations)
        {
            if (!present.insert(declaration.first).second)
                continue;
            if (m_budget == 0)
            {
                *m_problem = "markup compatibility would copy more than " + wxString::Format("%llu", m_limit) +
                             " namespace declarations (limit maxCopiedDeclarations)";
                return false;
            }
            --m_budget;
            if (last)
                last = m_tree.Append(element, last, declaration.first, declaration.second);
            else
            {
                m_tree.AppendFirst(element, declaration.first, declaration.second);
                last = element->GetAttributes();
            }
        }
        return true;
    }

    // Moves the children of `from` into `parent` in place of `at` (before it),
    // carrying the namespace declarations of `outer` (if any) and of `from`
    // onto the elements; `next` is the first moved node, or the node after `at`.
    bool Unwrap(Node* parent, Node* at, Node* from, const Node* outer, Node** next)
    {
        std::vector<std::pair<wxString, wxString>> declarations;
        for (const Node* holder : {outer, static_cast<const Node*>(from)})
            if (holder)
                for (const Attribute* a = holder->GetAttributes(); a; a = a->GetNext())
                    if (dom::IsNamespaceDeclaration(a->GetName()))
                        declarations.emplace_back(a->GetName(), a->GetValue());
        Node* first = nullptr;
        while (Node* child = from->GetChildren())
        {
            m_tree.Remove(from, child);
            if (child->GetType() == wxXML_ELEMENT_NODE)
            {
                if (!AddDeclarations(child, declarations))
                {
                    m_tree.Insert(from, child, from->GetChildren());
                    return false;
                }
                ++m_stats.recovered;
            }
            m_tree.Insert(parent, child, at);
            if (!first)
                first = child;
        }
        *next = first ? first : at->GetNext();
        return true;
    }

    bool ProcessChildren(Node* element, const Compatibility& compatibility)
    {
        Node* child = element->GetChildren();
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
                if (!ResolveAlternateContent(element, child, &child))
                    return false;
                continue;
            }
            if (!compatibility.ignorable.empty() && Ignored(uri, compatibility))
            {
                m_scopes.Pop();
                Node* next;
                if (compatibility.processContent.count({uri, local}) || compatibility.processContent.count({uri, "*"}))
                {
                    ++m_stats.unwrapped;
                    if (!Unwrap(element, child, child, nullptr, &next))
                        return false;
                }
                else
                {
                    ++m_stats.ignoredElements;
                    next = child->GetNext();
                }
                m_tree.Delete(element, child);
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
    // `next` is the node to go on with (the first node taken out, or the next).
    bool ResolveAlternateContent(Node* parent, Node* alternate, Node** next)
    {
        ++m_stats.alternateContent;
        m_scopes.Push(alternate);
        Node* selected = nullptr;
        for (Node* branch = alternate->GetChildren(); branch && !selected; branch = branch->GetNext())
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
        if (selected)
        {
            if (!Unwrap(parent, alternate, selected, alternate, next))
                return false;
        }
        else
            *next = alternate->GetNext();
        m_tree.Delete(parent, alternate);
        return true;
    }

    Tree m_tree;
    Scopes m_scopes;
    PrepareStats& m_stats;
    wxString* m_problem;
    std::uint64_t m_budget;
    unsigned long long m_limit;
};

// Rewrites the Strict namespace URIs of every declaration to transitional ones
// (when asked) and tells whether any declaration names the markup compatibility
// namespace. Without one nothing in the part is markup compatibility, and the
// processing that tracks every element's namespace scope can be skipped: on a
// large plain part it costs about as much as ReadXML itself.  A walk with its
// own stack: no recursion, whatever the nesting.
template <class Tree>
bool ScanDeclarations(Tree& tree, typename Tree::Node* root, bool rewriteStrict, PrepareStats& stats,
                      bool descend = true)
{
    bool markupCompatibility = false;
    std::vector<typename Tree::Node*> pending{root};
    while (!pending.empty())
    {
        typename Tree::Node* element = pending.back();
        pending.pop_back();
        for (auto* a = Tree::MayDeclare(element) ? element->GetAttributes() : nullptr; a; a = a->GetNext())
        {
            if (!dom::IsNamespaceDeclaration(a->GetName()))
                continue;
            wxString value = a->GetValue();
            if (rewriteStrict)
            {
                const wxString transitional = TransitionalUri(value);
                if (transitional != value)
                {
                    tree.SetValue(a, transitional);
                    value = transitional;
                    stats.strict = true;
                }
            }
            if (View(value) == kMarkupCompatibility)
                markupCompatibility = true;
        }
        for (auto* child = descend ? element->GetChildren() : nullptr; child; child = child->GetNext())
            if (child->GetType() == wxXML_ELEMENT_NODE)
                pending.push_back(child);
    }
    return markupCompatibility;
}

// The declarations of every element of the tree (ScanDeclarations); the compact
// tree lists the elements that have any, so only those are looked at.
bool ScanAllDeclarations(WxTree& tree, wxXmlNode* root, bool rewriteStrict, PrepareStats& stats)
{
    return ScanDeclarations(tree, root, rewriteStrict, stats);
}

bool ScanAllDeclarations(DomTree& tree, dom::Node*, bool rewriteStrict, PrepareStats& stats)
{
    bool markupCompatibility = false;
    for (dom::Node* element : tree.document.GetDeclaringElements())
        markupCompatibility |= ScanDeclarations(tree, element, rewriteStrict, stats, false);
    return markupCompatibility;
}

template <class Tree>
bool Prepare(Tree tree, typename Tree::Node* root, const ReadOptions& options, std::uint64_t copyBudget,
             wxString* problem, PrepareStats* stats)
{
    PrepareStats local;
    PrepareStats& s = stats ? *stats : local;
    if (!root)
        return true;
    if (!options.strict && !options.markupCompatibility)
        return true;
    const bool declaresMarkupCompatibility = ScanAllDeclarations(tree, root, options.strict, s);
    if (options.markupCompatibility && declaresMarkupCompatibility)
    {
        MarkupProcessor<Tree> processor(tree, s, problem, copyBudget);
        if (!processor.Process(root, Compatibility()))
            return false;
    }
    return true;
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

bool PrepareDocument(wxXmlDocument& document, const ReadOptions& options, wxString* problem, PrepareStats* stats,
                     std::uint64_t copyBudget)
{
    return Prepare(WxTree(), document.GetRoot(), options, copyBudget, problem, stats);
}

bool PrepareDocument(dom::Document& document, const ReadOptions& options, wxString* problem, PrepareStats* stats,
                     std::uint64_t copyBudget)
{
    return Prepare(DomTree{document}, document.GetRoot(), options, copyBudget, problem, stats);
}

bool PrepareElement(dom::Document& document, const std::vector<dom::Node*>& ancestors, dom::Node* element,
                    const ReadOptions& options, wxString* problem, PrepareStats* stats, std::uint64_t copyBudget,
                    std::vector<dom::Node*>* elements)
{
    PrepareStats local;
    PrepareStats& s = stats ? *stats : local;
    elements->clear();
    DomTree tree{document};
    bool markupCompatibility = false;
    if (options.strict || options.markupCompatibility)
    {
        for (dom::Node* ancestor : ancestors)
            markupCompatibility |= ScanDeclarations(tree, ancestor, options.strict, s, false);
        markupCompatibility |= ScanDeclarations(tree, element, options.strict, s);
    }
    if (!options.markupCompatibility || !markupCompatibility)
    {
        elements->push_back(element);
        return true;
    }
    dom::Node* holder = document.NewElement(document.Intern(wxS("holder")));
    document.AppendChild(holder, element);
    MarkupProcessor<DomTree> processor(tree, s, problem, copyBudget);
    if (!processor.ProcessDetached(ancestors, holder))
        return false;
    for (dom::Node* child = holder->GetChildren(); child; child = child->GetNext())
        if (child->GetType() == wxXML_ELEMENT_NODE)
            elements->push_back(child);
    return true;
}

} // namespace opc
} // namespace ooxml
