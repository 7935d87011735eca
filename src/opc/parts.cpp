// Finding the class that reads a part (by content type, or by root element for
// parts declared as plain XML) in the class registry, and reading a part into it.
#include "ooxml/opc/parts.h"

#include <map>
#include <utility>

#include <wx/xml/xml.h>

#include "ooxml/opc/markup.h"

namespace ooxml
{
namespace opc
{

namespace
{

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

bool ReadPartXml(const RootClass& cls, wxXmlDocument& document, PartRoot* root)
{
    *root = PartRoot();
    root->m_class = &cls;
    root->m_object = cls.create();
    XMLNSContext context(&document);
    root->m_readOk = cls.read(root->m_object, document.GetRoot(), &context);
    return root->m_readOk;
}

// The namespace URI of an element, from the declarations on it and its ancestors.
static wxString NamespaceOf(const wxXmlNode* element)
{
    const wxString prefix = element->GetName().Find(':') == wxNOT_FOUND ? wxString() : element->GetName().BeforeFirst(':');
    const wxString attribute = prefix.empty() ? wxString("xmlns") : "xmlns:" + prefix;
    for (const wxXmlNode* node = element; node; node = node->GetParent())
    {
        wxString uri;
        if (node->GetAttribute(attribute, &uri))
            return uri;
    }
    return wxString();
}

bool ReadPartRoot(const Package& package, const wxString& name, PartRoot* root, Error* error, PrepareStats* stats)
{
    Error ignored;
    if (!error)
        error = &ignored;
    // Checked first: a name that is not there would otherwise be judged by the
    // Default content type of its extension, and fail as a class problem.
    const Part* part = package.FindPart(name);
    if (!part)
    {
        *error = Error{package.GetPath(), wxString(), "no part named " + Package::NormalPartName(name)};
        return false;
    }
    // From here on the part's name as the package spells it, in messages too.
    const wxString& partName = part->name;
    const RootClass* cls = FindRootClass(package, partName);
    const wxString contentType = package.GetContentType(partName);
    const bool genericXml = contentType.EndsWith("/xml") || contentType.empty();
    if (!cls && !genericXml)
    {
        *error = contentType.empty() ? Error{package.GetPath(), partName, "no content type"}
                                     : Error{package.GetPath(), partName, "no root class for content type " + contentType,
                                             true};
        return false;
    }
    wxXmlDocument document;
    if (!package.LoadXml(partName, &document, error))
        return false;
    if (!cls)
    {
        // Generic XML: the root element decides (a Strict bibliography
        // names its transitional class too, unless Strict reading is off).
        wxXmlNode* element = document.GetRoot();
        const wxString local = element->GetName().AfterLast(':');
        const wxString written = NamespaceOf(element);
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
    wxString problem;
    if (!PrepareDocument(document, package.GetOptions(), &problem, stats))
    {
        *error = Error{package.GetPath(), partName, problem};
        return false;
    }
    ReadPartXml(*cls, document, root);
    return true;
}

} // namespace opc
} // namespace ooxml
