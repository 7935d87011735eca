// Finding the class that reads a part (by content type, or by root element for
// parts declared as plain XML) in the class registry, and reading a part into it.
#include "ooxml/opc/parts.h"

#include <map>
#include <utility>

#include <wx/xml/xml.h>

#include "ooxml/opc/markup.h"
#include "ooxml/opc/xml.h"

namespace ooxml
{
namespace opc
{

namespace
{

// A registry entry's ReadXML for either tree.
bool ReadWith(const RootClass& cls, void* object, wxXmlNode* node, XMLNSContext* context)
{
    return cls.read(object, node, context);
}

bool ReadWith(const RootClass& cls, void* object, dom::Node* node, XMLNSContext* context)
{
    return cls.readDom(object, node, context);
}

// The registry's roots, indexed once: content types lower-cased (they compare
// without case), root elements by namespace and local name.
struct RootIndex
{
    std::map<wxString, const RootClass*> byContentType;
    std::map<std::pair<wxString, wxString>, const RootClass*> byElement;

    RootIndex()
    {
        for (const RootClass* cls : traversal::AllClasses())
        {
            for (const char* const* type = cls->contentTypes; type && *type; ++type)
                byContentType[wxString(*type).Lower()] = cls;
            if (cls->rootElement)
                byElement[std::make_pair(wxString(cls->namespaceUri), wxString(cls->rootElement))] = cls;
        }
    }
};

const RootIndex& Roots()
{
    static const RootIndex index;
    return index;
}

const char* const kContentTypesNamespace = "http://schemas.openxmlformats.org/package/2006/content-types";

} // namespace

const RootClass* FindRootClassByContentType(const wxString& contentType)
{
    // Parameters (";charset=...") do not change the class.
    const auto found = Roots().byContentType.find(contentType.BeforeFirst(';').Strip(wxString::both).Lower());
    return found == Roots().byContentType.end() ? nullptr : found->second;
}

const RootClass* FindRootClassByElement(const wxString& namespaceUri, const wxString& localName)
{
    const auto found = Roots().byElement.find(std::make_pair(namespaceUri, localName));
    return found == Roots().byElement.end() ? nullptr : found->second;
}

const RootClass* FindRootClass(const Package& package, const wxString& partName)
{
    if (Package::NormalPartName(partName).CmpNoCase("/[Content_Types].xml") == 0)
        return FindRootClassByElement(kContentTypesNamespace, "Types");
    return FindRootClassByContentType(package.GetContentType(partName));
}

bool IsXmlPart(const Package& package, const Part& part)
{
    const wxString type = part.contentType.Lower();
    return part.name.CmpNoCase("/[Content_Types].xml") == 0 || type.EndsWith("xml") ||
           type == "application/vnd.openxmlformats-officedocument.vmldrawing" ||
           FindRootClass(package, part.name) != nullptr;
}

// -- PartRoot ----------------------------------------------------------------------------

PartRoot::PartRoot() : m_class(nullptr), m_object(nullptr), m_readOk(false) {}

PartRoot::PartRoot(PartRoot&& other) noexcept
    : m_class(other.m_class), m_object(other.m_object), m_readOk(other.m_readOk)
{
    other.m_object = nullptr;
}

PartRoot& PartRoot::operator=(PartRoot&& other) noexcept
{
    if (this != &other)
    {
        if (m_object)
            m_class->destroy(m_object);
        m_class = other.m_class;
        m_object = other.m_object;
        m_readOk = other.m_readOk;
        other.m_object = nullptr;
    }
    return *this;
}

PartRoot::~PartRoot()
{
    if (m_object)
        m_class->destroy(m_object);
}

traversal::Node PartRoot::GetNode() const
{
    return traversal::Node{m_object, m_object ? m_class : nullptr};
}

void* PartRoot::Release()
{
    void* object = m_object;
    m_object = nullptr;
    return object;
}

template <class Document>
bool PartRoot::Read(const RootClass& cls, Document& document)
{
    *this = PartRoot();
    m_class = &cls;
    m_object = cls.create();
    XMLNSContext context(&document);
    m_readOk = ReadWith(cls, m_object, document.GetRoot(), &context);
    return m_readOk;
}

bool ReadPartXml(const RootClass& cls, wxXmlDocument& document, PartRoot* root)
{
    return root->Read(cls, document);
}

bool ReadPartXml(const RootClass& cls, dom::Document& document, PartRoot* root)
{
    return root->Read(cls, document);
}

namespace
{

// The namespace URI of a root element, from its own declarations.
template <class Node>
wxString RootNamespace(const Node* element)
{
    const wxString prefix = element->GetName().Find(':') == wxNOT_FOUND ? wxString() : element->GetName().BeforeFirst(':');
    wxString uri;
    element->GetAttribute(prefix.empty() ? wxString("xmlns") : "xmlns:" + prefix, &uri);
    return uri;
}

// Whether the root element is one the content type promises (a worksheet part
// whose root is not a worksheet would otherwise read as an empty worksheet,
// with success).  Strict namespaces count as their transitional equivalents
// whatever the options: reading them without the rewrite is a choice, not a lie.
template <class Node>
bool RootElementFits(const RootClass& cls, const Node* element, wxString* problem)
{
    if (!cls.partElements)
        return true;
    const wxString local = element->GetName().AfterLast(':');
    const wxString written = RootNamespace(element);
    const wxString name = "{" + TransitionalUri(written) + "}" + local;
    wxString expected;
    for (const char* const* fits = cls.partElements; *fits; ++fits)
    {
        if (name == *fits)
            return true;
        expected << (expected.empty() ? "" : " or ") << wxString(*fits).AfterLast('}');
    }
    *problem = "root element " + local + " of " + (written.empty() ? wxString("(no namespace)") : written) +
               " is not what the content type holds (" + expected + ")";
    return false;
}

// What ReadPartRoot does once the part is parsed, on either tree: the class
// by the root element if the content type did not say, the preprocessing,
// the read.
template <class Document>
bool ReadParsed(const Package& package, const wxString& partName, const RootClass* cls, Document& document,
                PartRoot* root, Error* error, PrepareStats* stats)
{
    wxString problem;
    if (!cls)
    {
        // Generic XML: the root element decides (a Strict bibliography
        // names its transitional class too, unless Strict reading is off).
        const auto* element = document.GetRoot();
        const wxString local = element->GetName().AfterLast(':');
        const wxString written = RootNamespace(element);
        cls = FindRootClassByElement(package.GetOptions().strict ? TransitionalUri(written) : written, local);
        if (!cls)
        {
            *error = Error{package.GetPath(), partName,
                           "no root class for root element " + local + " of " +
                               (written.empty() ? wxString("(no namespace)") : written),
                           true};
            return false;
        }
    }
    else if (!RootElementFits(*cls, document.GetRoot(), &problem))
    {
        *error = Error{package.GetPath(), partName, problem};
        return false;
    }
    if (!PrepareDocument(document, package.GetOptions(), &problem, stats, package.GetLimits().maxCopiedDeclarations))
    {
        *error = Error{package.GetPath(), partName, problem};
        return false;
    }
    ReadPartXml(*cls, document, root);
    return true;
}

} // namespace

namespace
{

// The part of that name and the class that reads it (null for generic XML,
// which its root element decides); false with `error` if there is no such
// part or no class can read it.
bool FindPartClass(const Package& package, const wxString& name, const Part** part, const RootClass** cls,
                   Error* error)
{
    // Checked first: a name that is not there would otherwise be judged by the
    // Default content type of its extension, and fail as a class problem.
    *part = package.FindPart(name);
    if (!*part)
    {
        *error = Error{package.GetPath(), wxString(), "no part named " + Package::NormalPartName(name)};
        return false;
    }
    // From here on the part's name as the package spells it, in messages too.
    const wxString& partName = (*part)->name;
    *cls = FindRootClass(package, partName);
    const wxString contentType = package.GetContentType(partName);
    const bool genericXml = contentType.EndsWith("/xml") || contentType.empty();
    if (!*cls && !genericXml)
    {
        *error = contentType.empty() ? Error{package.GetPath(), partName, "no content type"}
                                     : Error{package.GetPath(), partName, "no root class for content type " + contentType,
                                             true};
        return false;
    }
    return true;
}

} // namespace

bool ReadPartRoot(const Package& package, const wxString& name, PartRoot* root, Error* error, PrepareStats* stats)
{
    Error ignored;
    if (!error)
        error = &ignored;
    const Part* part;
    const RootClass* cls;
    if (!FindPartClass(package, name, &part, &cls, error))
        return false;
    if (package.GetOptions().wxWidgetsParser)
    {
        wxXmlDocument document;
        return package.LoadXml(part->name, &document, error) &&
               ReadParsed(package, part->name, cls, document, root, error, stats);
    }
    dom::Document document;
    return package.ParsePart(part->name, &document, error) &&
           ReadParsed(package, part->name, cls, document, root, error, stats);
}

bool StreamPartRoot(const Package& package, const wxString& name, const std::vector<wxString>& path,
                    const std::function<bool(dom::Node* element, XMLNSContext* context)>& element, PartRoot* root,
                    Error* error, PrepareStats* stats)
{
    Error ignored;
    if (!error)
        error = &ignored;
    const Part* part;
    const RootClass* cls;
    if (!FindPartClass(package, name, &part, &cls, error))
        return false;
    PrepareStats local;
    PrepareStats& counted = stats ? *stats : local;
    dom::Document document;
    wxString problem;
    std::vector<dom::Node*> elements;
    const wxString wanted = path.empty() ? wxString() : path.back();
    XmlStream stream{path, [&](const std::vector<dom::Node*>& ancestors, dom::Node* node) {
        if (!PrepareElement(document, ancestors, node, package.GetOptions(), &problem, &counted,
                            package.GetLimits().maxCopiedDeclarations, &elements))
            return false;
        // The context the element would have in a whole read: the ancestors'
        // scopes open, then its own.
        XMLNSContext context(&document);
        for (std::size_t i = 1; i < ancestors.size(); ++i)
            context.PushStack(ancestors[i]);
        for (dom::Node* taken : elements)
        {
            if (taken->GetName().AfterLast(':') != wanted)
                continue;
            context.PushStack(taken);
            const bool more = element(taken, &context);
            context.PopStack();
            if (!more)
                return false;
        }
        return true;
    }};
    if (!package.ParsePart(part->name, &document, error, &stream))
        return false;
    if (!problem.empty())
    {
        *error = Error{package.GetPath(), part->name, problem};
        return false;
    }
    return ReadParsed(package, part->name, cls, document, root, error, &counted);
}

} // namespace opc
} // namespace ooxml
