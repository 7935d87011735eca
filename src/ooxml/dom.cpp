// The compact tree: an arena of nodes and attributes, interned names.
#include "ooxml/dom.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace ooxml
{
namespace dom
{

namespace
{

// Arena blocks grow from 64 KiB to 8 MiB: small parts stay small, large ones
// make few allocations.
constexpr std::size_t kFirstBlock = 64 << 10;
constexpr std::size_t kLargestBlock = 8 << 20;

} // namespace

bool IsNamespaceDeclaration(const wxString& name)
{
    return name.StartsWith(wxS("xmlns")) && (name.length() == 5 || name[5] == ':');
}

// -- Text ---------------------------------------------------------------------------

wxString Text::ToString() const
{
    for (std::uint32_t i = 0; i < m_size; ++i)
        if (static_cast<unsigned char>(m_data[i]) >= 0x80)
            return wxString::FromUTF8(m_data, m_size);
    return wxString::FromAscii(m_data, m_size);
}

// -- Node ---------------------------------------------------------------------------

const Attribute* Node::FindAttribute(const wxString& name) const
{
    for (const Attribute* a = GetAttributes(); a; a = a->GetNext())
        if (a->GetName() == name)
            return a;
    return nullptr;
}

bool Node::GetAttribute(const wxString& name, wxString* value) const
{
    const Attribute* a = FindAttribute(name);
    if (a && value)
        *value = a->GetValue();
    return a != nullptr;
}

wxString Node::GetAttribute(const wxString& name) const
{
    const Attribute* a = FindAttribute(name);
    return a ? a->GetValue() : wxString();
}

// -- Document -----------------------------------------------------------------------

Document::Document() : m_current(0), m_used(0), m_arenaBytes(0), m_root(nullptr), m_prolog(nullptr) {}

Document::~Document() = default;
Document::Document(Document&& other) noexcept = default;
Document& Document::operator=(Document&& other) noexcept = default;

void* Document::Allocate(std::size_t size, std::size_t alignment)
{
    for (;;)
    {
        if (m_current < m_blocks.size())
        {
            Block& block = m_blocks[m_current];
            const std::size_t start = (m_used + alignment - 1) & ~(alignment - 1);
            if (start + size <= block.size)
            {
                m_used = start + size;
                return block.data.get() + start;
            }
            if (m_current + 1 < m_blocks.size())
            {
                // A block kept by Release: reuse it.
                ++m_current;
                m_used = 0;
                continue;
            }
        }
        const std::size_t previous = m_blocks.empty() ? 0 : m_blocks.back().size;
        const std::size_t grown = std::min(kLargestBlock, std::max(kFirstBlock, previous * 2));
        const std::size_t bytes = std::max(grown, size + alignment);
        m_blocks.push_back(Block{std::unique_ptr<char[]>(new char[bytes]), bytes});
        m_arenaBytes += bytes;
        m_current = m_blocks.size() - 1;
        m_used = 0;
    }
}

Document::Mark Document::GetMark() const
{
    return Mark{m_current, m_used, m_declaring.size()};
}

void Document::Release(const Mark& mark)
{
    // Blocks after the next one are given back; the next one is kept for reuse.
    const std::size_t keep = std::min(m_blocks.size(), mark.block + 2);
    for (std::size_t i = keep; i < m_blocks.size(); ++i)
        m_arenaBytes -= m_blocks[i].size;
    m_blocks.resize(keep);
    m_current = mark.block;
    m_used = mark.used;
    m_declaring.resize(std::min(m_declaring.size(), mark.declaring));
}

const wxString* Document::Intern(std::string_view utf8Name)
{
    auto found = m_names.find(std::string(utf8Name));
    if (found != m_names.end())
        return found->second.get();
    auto inserted = m_names.emplace(std::string(utf8Name),
                                    std::make_unique<wxString>(wxString::FromUTF8(utf8Name.data(), utf8Name.size())));
    return inserted.first->second.get();
}

const wxString* Document::Intern(const wxString& name)
{
    const wxScopedCharBuffer utf8 = name.utf8_str();
    return Intern(std::string_view(utf8.data(), utf8.length()));
}

Text Document::NewText(std::string_view utf8)
{
    char* copy = static_cast<char*>(Allocate(utf8.size() + 1, 1));
    if (!utf8.empty())
        std::memcpy(copy, utf8.data(), utf8.size());
    copy[utf8.size()] = '\0';
    return Text(copy, utf8.size());
}

Text Document::Encode(const wxString& text)
{
    const wxScopedCharBuffer utf8 = text.utf8_str();
    return NewText(std::string_view(utf8.data(), utf8.length()));
}

Node* Document::NewElement(const wxString* name)
{
    return new (Allocate(sizeof(Node), alignof(Node))) Node(wxXML_ELEMENT_NODE, name);
}

Node* Document::NewTextNode(wxXmlNodeType type, const wxString* name, std::string_view utf8Content)
{
    const Text content = NewText(utf8Content);
    Node* node = new (Allocate(sizeof(Node), alignof(Node))) Node(type, name);
    node->m_text = content.data();
    node->m_textSize = static_cast<std::uint32_t>(content.size());
    return node;
}

Attribute* Document::AppendAttribute(Node* element, Attribute* last, const wxString* name, Text value)
{
    Attribute* attribute = new (Allocate(sizeof(Attribute), alignof(Attribute))) Attribute(name, value);
    if (last)
        last->m_next = attribute;
    else
        element->m_attributes = attribute;
    if (!element->m_declaresNamespaces && IsNamespaceDeclaration(*name))
    {
        element->m_declaresNamespaces = true;
        m_declaring.push_back(element);
    }
    return attribute;
}

void Document::AppendChild(Node* parent, Node* child)
{
    InsertChild(parent, child, nullptr);
}

void Document::AppendToProlog(Node* node)
{
    if (!m_prolog)
    {
        m_prolog = node;
        node->m_previous = node;
        return;
    }
    Node* last = m_prolog->m_previous;
    last->m_next = node;
    node->m_previous = last;
    m_prolog->m_previous = node;
}

void Document::InsertChild(Node* parent, Node* child, Node* before)
{
    Node* first = parent->m_children;
    child->m_next = nullptr;
    if (!first)
    {
        parent->m_children = child;
        child->m_previous = child;
        return;
    }
    if (!before)
    {
        Node* last = first->m_previous;
        last->m_next = child;
        child->m_previous = last;
        first->m_previous = child;
        return;
    }
    child->m_next = before;
    child->m_previous = before->m_previous;
    if (before == first)
        parent->m_children = child;
    else
        before->m_previous->m_next = child;
    before->m_previous = child;
}

void Document::RemoveChild(Node* parent, Node* child)
{
    Node* first = parent->m_children;
    if (child == first)
    {
        parent->m_children = child->m_next;
        if (child->m_next)
            child->m_next->m_previous = child->m_previous;
    }
    else
    {
        child->m_previous->m_next = child->m_next;
        if (child->m_next)
            child->m_next->m_previous = child->m_previous;
        else
            first->m_previous = child->m_previous;
    }
    child->m_next = nullptr;
    child->m_previous = nullptr;
}

void Document::UnlinkAttribute(Node* element, Attribute* previous, Attribute* attribute)
{
    if (previous)
        previous->m_next = attribute->m_next;
    else
        element->m_attributes = attribute->m_next;
}

void Document::SetAttributeValue(Attribute* attribute, const wxString& value)
{
    attribute->m_value = Encode(value);
}

} // namespace dom
} // namespace ooxml
