// ooxml::dom: the compact tree that the fast reading path builds from a part's
// bytes (ooxml::opc parses with libexpat into it), and that every generated
// class reads through its second ReadXML overload.
//
// It holds what a wxXmlDocument holds, in the same shape (element, text,
// CDATA, comment and processing-instruction nodes; attributes in document
// order; names as written, "c:barChart"), so that the generated readers and
// the markup compatibility processing run unchanged over either tree.  The
// cost is what differs: nodes and attributes live in one arena owned by the
// Document, every distinct name is one wxString shared by all its uses, and
// attribute values and text stay UTF-8 until a reader converts the ones it
// stores (numbers never become wide strings).
#ifndef OOXML_DOM_H
#define OOXML_DOM_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <wx/string.h>
#include <wx/xml/xml.h>

#include "ooxml/ooxml.h"

namespace ooxml
{
namespace dom
{

// UTF-8 text in a Document's arena, followed by a NUL (so C conversions can
// read it in place).  Cheap to copy; valid as long as its Document.
class OOXML_API Text
{
public:
    Text() : m_data(""), m_size(0) {}
    Text(const char* data, std::size_t size) : m_data(data), m_size(static_cast<std::uint32_t>(size)) {}

    const char* data() const { return m_data; }
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    std::string_view view() const { return std::string_view(m_data, m_size); }
    // The text decoded; ASCII, most of what packages hold, without UTF-8 decoding.
    wxString ToString() const;

private:
    const char* m_data;
    std::uint32_t m_size;
};

class OOXML_API Attribute
{
public:
    const wxString& GetName() const { return *m_name; }
    Text GetText() const { return m_value; }
    wxString GetValue() const { return m_value.ToString(); }
    Attribute* GetNext() const { return m_next; }

private:
    friend class Document;
    Attribute(const wxString* name, Text value) : m_name(name), m_value(value), m_next(nullptr) {}

    const wxString* m_name;
    Text m_value;
    Attribute* m_next;
};

// One node: an element (name and attributes) or a text, CDATA, comment or
// processing-instruction node (content; the name is the one wxWidgets gives
// such nodes: "text", "cdata", "comment", the PI's target).
class OOXML_API Node
{
public:
    wxXmlNodeType GetType() const { return static_cast<wxXmlNodeType>(m_type); }
    const wxString& GetName() const { return *m_name; }
    Node* GetChildren() const { return m_children; }
    Node* GetNext() const { return m_next; }
    Attribute* GetAttributes() const { return m_type == wxXML_ELEMENT_NODE ? m_attributes : nullptr; }

    // The content of a text, CDATA, comment or processing-instruction node.
    Text GetText() const { return m_type == wxXML_ELEMENT_NODE ? Text() : Text(m_text, m_textSize); }
    wxString GetContent() const { return GetText().ToString(); }

    // Whether some attribute is an "xmlns" or "xmlns:p" declaration.
    bool DeclaresNamespaces() const { return m_declaresNamespaces; }

    // The value of the attribute named `name` as written, if there is one.
    bool GetAttribute(const wxString& name, wxString* value) const;
    wxString GetAttribute(const wxString& name) const;
    const Attribute* FindAttribute(const wxString& name) const;

private:
    friend class Document;
    Node(wxXmlNodeType type, const wxString* name)
        : m_name(name), m_children(nullptr), m_next(nullptr), m_previous(nullptr), m_attributes(nullptr),
          m_textSize(0), m_type(static_cast<std::uint8_t>(type)), m_declaresNamespaces(false)
    {
    }

    const wxString* m_name;
    Node* m_children;
    Node* m_next;
    // The previous sibling; the first child's is the last child, so that
    // appending and unlinking take constant time.
    Node* m_previous;
    union
    {
        Attribute* m_attributes;   // elements
        const char* m_text;        // the other kinds
    };
    std::uint32_t m_textSize;
    std::uint8_t m_type;
    bool m_declaresNamespaces;
};

// Whether an attribute name is a namespace declaration ("xmlns", "xmlns:p").
OOXML_API bool IsNamespaceDeclaration(const wxString& name);

// The tree of one part: owns every node, attribute, text and name in it.
// Movable, not copyable.  Not thread-safe.
class OOXML_API Document
{
public:
    Document();
    ~Document();
    Document(Document&& other) noexcept;
    Document& operator=(Document&& other) noexcept;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    Node* GetRoot() const { return m_root; }
    void SetRoot(Node* root) { m_root = root; }
    // Nodes before and after the root element (comments, processing
    // instructions), which wxWidgets keeps as the document node's children.
    Node* GetProlog() const { return m_prolog; }

    // -- building ------------------------------------------------------------------
    // The one wxString of a name (UTF-8 as the parser gives it).
    const wxString* Intern(std::string_view utf8Name);
    const wxString* Intern(const wxString& name);
    Node* NewElement(const wxString* name);
    // A text, CDATA, comment or processing-instruction node; the content is copied.
    Node* NewTextNode(wxXmlNodeType type, const wxString* name, std::string_view utf8Content);
    // Copies the text into the arena.
    Text NewText(std::string_view utf8);
    // The text as UTF-8 in the arena.
    Text Encode(const wxString& text);
    // Appends an attribute after `last` (or as the first one when `last` is
    // null); returns it.  Does not check for duplicates.
    Attribute* AppendAttribute(Node* element, Attribute* last, const wxString* name, Text value);
    void AppendChild(Node* parent, Node* child);
    void AppendToProlog(Node* node);

    // -- editing (markup compatibility) --------------------------------------------
    // Unlinks `attribute`, which follows `previous` (null for the first one).
    void UnlinkAttribute(Node* element, Attribute* previous, Attribute* attribute);
    void SetAttributeValue(Attribute* attribute, const wxString& value);
    // Unlinks `child` from `parent` (its memory stays in the arena).
    void RemoveChild(Node* parent, Node* child);
    // Links `child` before `before` (a child of `parent`), or last if null.
    void InsertChild(Node* parent, Node* child, Node* before);

    // -- arena ----------------------------------------------------------------------
    // A point of the arena to come back to: Release(mark) frees everything
    // allocated after it (names stay), as a streaming reader does after each
    // element it has handed out.
    struct Mark
    {
        std::size_t block;
        std::size_t used;
        std::size_t declaring;
    };
    Mark GetMark() const;
    void Release(const Mark& mark);
    // Bytes the arena holds (for limits and benchmarks).
    std::size_t ArenaBytes() const { return m_arenaBytes; }

    // The elements that declare namespaces, in the order they got their first
    // declaration (those unlinked from the tree included): the preprocessing
    // looks at these instead of walking every element.
    const std::vector<Node*>& GetDeclaringElements() const { return m_declaring; }

private:
    void* Allocate(std::size_t size, std::size_t alignment);

    struct Block
    {
        std::unique_ptr<char[]> data;
        std::size_t size;
    };
    std::vector<Block> m_blocks;
    std::size_t m_current;      // index of the block being filled
    std::size_t m_used;         // bytes used in it
    std::size_t m_arenaBytes;
    std::unordered_map<std::string, std::unique_ptr<wxString>> m_names;
    std::vector<Node*> m_declaring;
    Node* m_root;
    Node* m_prolog;
};

} // namespace dom
} // namespace ooxml

#endif // OOXML_DOM_H
