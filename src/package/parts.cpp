// The table of root classes (by content type, and by root element for parts
// declared as plain XML) and the reading of a part into its root class.
#include "ooxml/opc/parts.h"

#include <cstring>

#include <wx/xml/xml.h>

#include "ooxml/all.h"
#include "ooxml/traversal/all.h"

#include "ooxml/opc/markup.h"

namespace ooxml
{
namespace opc
{

namespace
{

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

template <class T>
bool ReadInto(void* object, wxXmlNode* node, XMLNSContext* context)
{
    return static_cast<T*>(object)->ReadXML(node, context);
}

template <class T>
traversal::Node NodeFor(const void* object)
{
    return traversal::NodeOf(*static_cast<const T*>(object));
}

template <class T>
RootClass Root(const char* name)
{
    return RootClass{name, &typeid(T), &Create<T>, &Destroy<T>, &ReadInto<T>, &NodeFor<T>};
}

const char* const kSml = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
const char* const kWml = "application/vnd.openxmlformats-officedocument.wordprocessingml.";
const char* const kPml = "application/vnd.openxmlformats-officedocument.presentationml.";
const char* const kDml = "application/vnd.openxmlformats-officedocument.drawingml.";

struct ByContentType
{
    wxString contentType;
    RootClass root;
};

// The content types of XML parts that ECMA-376 and the Microsoft extensions
// define, each with the class of the part's root element.
const std::vector<ByContentType>& ContentTypeTable()
{
    static const std::vector<ByContentType> table = [] {
        std::vector<ByContentType> t;
        // Stored lower-case: content types compare without case.
        auto add = [&t](const wxString& type, const RootClass& root) { t.push_back(ByContentType{type.Lower(), root}); };
        const wxString sml = kSml, wml = kWml, pml = kPml, dml = kDml;
        // Package-wide parts: relationships, document properties, custom XML properties
        add("application/vnd.openxmlformats-package.relationships+xml",
            Root<relationships::CT_Relationships>("relationships::CT_Relationships"));
        add("application/vnd.openxmlformats-package.core-properties+xml",
            Root<core_properties::CT_CoreProperties>("core_properties::CT_CoreProperties"));
        add("application/vnd.openxmlformats-officedocument.extended-properties+xml",
            Root<extended_properties::CT_Properties>("extended_properties::CT_Properties"));
        add("application/vnd.openxmlformats-officedocument.custom-properties+xml",
            Root<custom_properties::CT_Properties>("custom_properties::CT_Properties"));
        add("application/vnd.openxmlformats-officedocument.customXmlProperties+xml",
            Root<custom_xml::CT_DatastoreItem>("custom_xml::CT_DatastoreItem"));
        // SpreadsheetML
        const RootClass workbook = Root<sml::CT_Workbook>("sml::CT_Workbook");
        add(sml + "sheet.main+xml", workbook);
        add(sml + "template.main+xml", workbook);
        add("application/vnd.ms-excel.sheet.macroEnabled.main+xml", workbook);
        add("application/vnd.ms-excel.template.macroEnabled.main+xml", workbook);
        add("application/vnd.ms-excel.addin.macroEnabled.main+xml", workbook);
        add(sml + "worksheet+xml", Root<sml::CT_Worksheet>("sml::CT_Worksheet"));
        add(sml + "chartsheet+xml", Root<sml::CT_Chartsheet>("sml::CT_Chartsheet"));
        add(sml + "dialogsheet+xml", Root<sml::CT_Dialogsheet>("sml::CT_Dialogsheet"));
        add("application/vnd.ms-excel.macrosheet+xml", Root<sml::CT_Macrosheet>("sml::CT_Macrosheet"));
        add("application/vnd.ms-excel.intlmacrosheet+xml", Root<sml::CT_Macrosheet>("sml::CT_Macrosheet"));
        add(sml + "sharedStrings+xml", Root<sml::CT_Sst>("sml::CT_Sst"));
        add(sml + "styles+xml", Root<sml::CT_Stylesheet>("sml::CT_Stylesheet"));
        add(sml + "calcChain+xml", Root<sml::CT_CalcChain>("sml::CT_CalcChain"));
        add(sml + "table+xml", Root<sml::CT_Table>("sml::CT_Table"));
        add(sml + "pivotCacheDefinition+xml", Root<sml::CT_PivotCacheDefinition>("sml::CT_PivotCacheDefinition"));
        add(sml + "pivotCacheRecords+xml", Root<sml::CT_PivotCacheRecords>("sml::CT_PivotCacheRecords"));
        add(sml + "pivotTable+xml", Root<sml::CT_pivotTableDefinition>("sml::CT_pivotTableDefinition"));
        add(sml + "queryTable+xml", Root<sml::CT_QueryTable>("sml::CT_QueryTable"));
        add(sml + "connections+xml", Root<sml::CT_Connections>("sml::CT_Connections"));
        add(sml + "externalLink+xml", Root<sml::CT_ExternalLink>("sml::CT_ExternalLink"));
        add(sml + "revisionHeaders+xml", Root<sml::CT_RevisionHeaders>("sml::CT_RevisionHeaders"));
        add(sml + "revisionLog+xml", Root<sml::CT_Revisions>("sml::CT_Revisions"));
        add(sml + "userNames+xml", Root<sml::CT_Users>("sml::CT_Users"));
        add(sml + "comments+xml", Root<sml::CT_Comments>("sml::CT_Comments"));
        add(sml + "sheetMetadata+xml", Root<sml::CT_Metadata>("sml::CT_Metadata"));
        add(sml + "tableSingleCells+xml", Root<sml::CT_SingleXmlCells>("sml::CT_SingleXmlCells"));
        add(sml + "volatileDependencies+xml", Root<sml::CT_VolTypes>("sml::CT_VolTypes"));
        add("application/vnd.openxmlformats-officedocument.drawing+xml", Root<xdr::CT_Drawing>("xdr::CT_Drawing"));
        // WordprocessingML
        const RootClass document = Root<wml::CT_Document>("wml::CT_Document");
        add(wml + "document.main+xml", document);
        add(wml + "template.main+xml", document);
        add("application/vnd.ms-word.document.macroEnabled.main+xml", document);
        add("application/vnd.ms-word.template.macroEnabledTemplate.main+xml", document);
        add(wml + "document.glossary+xml", Root<wml::CT_GlossaryDocument>("wml::CT_GlossaryDocument"));
        add(wml + "styles+xml", Root<wml::CT_Styles>("wml::CT_Styles"));
        add("application/vnd.ms-word.stylesWithEffects+xml", Root<wml::CT_Styles>("wml::CT_Styles"));
        add(wml + "numbering+xml", Root<wml::CT_Numbering>("wml::CT_Numbering"));
        add(wml + "settings+xml", Root<wml::CT_Settings>("wml::CT_Settings"));
        add(wml + "webSettings+xml", Root<wml::CT_WebSettings>("wml::CT_WebSettings"));
        add(wml + "fontTable+xml", Root<wml::CT_FontsList>("wml::CT_FontsList"));
        add(wml + "footnotes+xml", Root<wml::CT_Footnotes>("wml::CT_Footnotes"));
        add(wml + "endnotes+xml", Root<wml::CT_Endnotes>("wml::CT_Endnotes"));
        add(wml + "comments+xml", Root<wml::CT_Comments>("wml::CT_Comments"));
        add(wml + "header+xml", Root<wml::CT_HdrFtr>("wml::CT_HdrFtr"));
        add(wml + "footer+xml", Root<wml::CT_HdrFtr>("wml::CT_HdrFtr"));
        // DrawingML: themes, table styles, charts, diagrams
        add("application/vnd.openxmlformats-officedocument.theme+xml",
            Root<dml::CT_OfficeStyleSheet>("dml::CT_OfficeStyleSheet"));
        add("application/vnd.openxmlformats-officedocument.themeOverride+xml",
            Root<dml::CT_BaseStylesOverride>("dml::CT_BaseStylesOverride"));
        add(pml + "tableStyles+xml", Root<dml::CT_TableStyleList>("dml::CT_TableStyleList"));
        add("application/vnd.openxmlformats-officedocument.themeManager+xml",
            Root<dml::CT_EmptyElement>("dml::CT_EmptyElement"));
        add(dml + "chart+xml", Root<chart::CT_ChartSpace>("chart::CT_ChartSpace"));
        add("application/vnd.ms-office.chartex+xml", Root<chartex::CT_ChartSpace>("chartex::CT_ChartSpace"));
        add(dml + "chartshapes+xml", Root<cdr::CT_Drawing>("cdr::CT_Drawing"));
        add(dml + "diagramData+xml", Root<dgm::CT_DataModel>("dgm::CT_DataModel"));
        add(dml + "diagramLayout+xml", Root<dgm::CT_DiagramDefinition>("dgm::CT_DiagramDefinition"));
        add(dml + "diagramStyle+xml", Root<dgm::CT_StyleDefinition>("dgm::CT_StyleDefinition"));
        add(dml + "diagramColors+xml", Root<dgm::CT_ColorTransform>("dgm::CT_ColorTransform"));
        add("application/vnd.ms-office.drawingml.diagramDrawing+xml", Root<dsp::CT_Drawing>("dsp::CT_Drawing"));
        // PresentationML
        const RootClass presentation = Root<pml::CT_Presentation>("pml::CT_Presentation");
        add(pml + "presentation.main+xml", presentation);
        add(pml + "slideshow.main+xml", presentation);
        add(pml + "template.main+xml", presentation);
        add("application/vnd.ms-powerpoint.presentation.macroEnabled.main+xml", presentation);
        add("application/vnd.ms-powerpoint.slideshow.macroEnabled.main+xml", presentation);
        add("application/vnd.ms-powerpoint.template.macroEnabled.main+xml", presentation);
        add("application/vnd.ms-powerpoint.addin.macroEnabled.main+xml", presentation);
        add(pml + "slide+xml", Root<pml::CT_Slide>("pml::CT_Slide"));
        add(pml + "slideLayout+xml", Root<pml::CT_SlideLayout>("pml::CT_SlideLayout"));
        add(pml + "slideMaster+xml", Root<pml::CT_SlideMaster>("pml::CT_SlideMaster"));
        add(pml + "notesSlide+xml", Root<pml::CT_NotesSlide>("pml::CT_NotesSlide"));
        add(pml + "notesMaster+xml", Root<pml::CT_NotesMaster>("pml::CT_NotesMaster"));
        add(pml + "handoutMaster+xml", Root<pml::CT_HandoutMaster>("pml::CT_HandoutMaster"));
        add(pml + "comments+xml", Root<pml::CT_CommentList>("pml::CT_CommentList"));
        add(pml + "commentAuthors+xml", Root<pml::CT_CommentAuthorList>("pml::CT_CommentAuthorList"));
        add(pml + "presProps+xml", Root<pml::CT_PresentationProperties>("pml::CT_PresentationProperties"));
        add(pml + "viewProps+xml", Root<pml::CT_ViewProperties>("pml::CT_ViewProperties"));
        add(pml + "tags+xml", Root<pml::CT_TagList>("pml::CT_TagList"));
        // VML drawings (comment boxes, form controls, legacy shapes): the
        // schemas give the part no root element of its own; its root ("xml")
        // holds shapes, shape types and groups as a VML group does, so the
        // group class reads it.
        add("application/vnd.openxmlformats-officedocument.vmlDrawing", Root<vml::CT_Group>("vml::CT_Group"));
        return t;
    }();
    return table;
}

struct ByElement
{
    const char* namespaceUri;
    const char* localName;
    RootClass root;
};

// Root elements of parts whose content type is generic XML.
const std::vector<ByElement>& ElementTable()
{
    static const std::vector<ByElement> table = {
        {"http://schemas.openxmlformats.org/officeDocument/2006/bibliography", "Sources",
         Root<bibliography::CT_Sources>("bibliography::CT_Sources")},
        {"http://schemas.openxmlformats.org/officeDocument/2006/customXml", "datastoreItem",
         Root<custom_xml::CT_DatastoreItem>("custom_xml::CT_DatastoreItem")},
        {"http://schemas.openxmlformats.org/schemaLibrary/2006/main", "schemaLibrary",
         Root<sl::CT_SchemaLibrary>("sl::CT_SchemaLibrary")},
        {"http://schemas.openxmlformats.org/officeDocument/2006/characteristics", "additionalCharacteristics",
         Root<characteristics::CT_AdditionalCharacteristics>("characteristics::CT_AdditionalCharacteristics")},
        {"http://schemas.openxmlformats.org/spreadsheetml/2006/main", "MapInfo",
         Root<sml::CT_MapInfo>("sml::CT_MapInfo")},
        // Some writers declare theme parts as plain XML.
        {"http://schemas.openxmlformats.org/drawingml/2006/main", "theme",
         Root<dml::CT_OfficeStyleSheet>("dml::CT_OfficeStyleSheet")},
        {"http://schemas.openxmlformats.org/drawingml/2006/main", "themeOverride",
         Root<dml::CT_BaseStylesOverride>("dml::CT_BaseStylesOverride")},
        {"http://schemas.openxmlformats.org/package/2006/content-types", "Types",
         Root<content_types::CT_Types>("content_types::CT_Types")},
    };
    return table;
}

} // namespace

const RootClass* FindRootClassByContentType(const wxString& contentType)
{
    // Parameters (";charset=...") do not change the class.
    const wxString type = contentType.BeforeFirst(';').Strip(wxString::both).Lower();
    for (const ByContentType& row : ContentTypeTable())
        if (row.contentType == type)
            return &row.root;
    return nullptr;
}

const RootClass* FindRootClassByElement(const wxString& namespaceUri, const wxString& localName)
{
    for (const ByElement& row : ElementTable())
        if (namespaceUri == row.namespaceUri && localName == row.localName)
            return &row.root;
    return nullptr;
}

const RootClass* FindRootClass(const Package& package, const wxString& partName)
{
    if (Package::NormalPartName(partName).CmpNoCase("/[Content_Types].xml") == 0)
        return FindRootClassByElement("http://schemas.openxmlformats.org/package/2006/content-types", "Types");
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
    return m_object ? m_class->node(m_object) : traversal::Node{nullptr, nullptr};
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

bool ReadPart(const Package& package, const wxString& name, PartRoot* root, Error* error, PrepareStats* stats)
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
        *error = Error{package.GetPath(), partName, contentType.empty() ? wxString("no content type")
                                                                        : "no root class for content type " + contentType};
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
                               (written.empty() ? wxString("(no namespace)") : written)};
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
