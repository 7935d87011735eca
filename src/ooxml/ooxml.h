// ooxml: typed, read-only object model of Office Open XML parts.
//
// The hand-written frame under every generated class:
// the export macro, the schema namespace map type and XMLNSContext, the
// per-document namespace context that every generated reader receives.
#ifndef OOXML_OOXML_H
#define OOXML_OOXML_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include <wx/string.h>

class wxXmlDocument;
class wxXmlNode;

namespace ooxml
{
namespace dom
{
class Document;
class Node;
class Text;
} // namespace dom
} // namespace ooxml

#if defined(__GNUC__) || defined(__clang__)
#define OOXML_API __attribute__((visibility("default")))
#else
#define OOXML_API
#endif

// The growable array of owned child objects that generated classes hold and
// return: pointers to T in document order.  One std::vector<void*>
// underneath for every T, as wxWidgets does for its pointer arrays, so that
// the ~540 array types of the generated headers cost their includers nothing
// to instantiate.  Copies copy the pointers, not the objects.
class OOXML_API XMLPtrArrayBase
{
public:
    XMLPtrArrayBase();
    XMLPtrArrayBase(const XMLPtrArrayBase& other);
    XMLPtrArrayBase& operator=(const XMLPtrArrayBase& other);
    ~XMLPtrArrayBase();

    std::size_t size() const { return m_items.size(); }
    bool empty() const { return m_items.empty(); }
    void clear() { m_items.clear(); }
    void reserve(std::size_t n) { m_items.reserve(n); }

protected:
    void Append(void* item);

    std::vector<void*> m_items;
};

template <class T>
class XMLPtrArray : public XMLPtrArrayBase
{
public:
    typedef T* value_type;

    class const_iterator
    {
    public:
        typedef std::random_access_iterator_tag iterator_category;
        typedef T* value_type;
        typedef std::ptrdiff_t difference_type;
        typedef T* const* pointer;
        typedef T* reference;

        const_iterator() : m_at(nullptr) {}
        explicit const_iterator(void* const* at) : m_at(at) {}
        T* operator*() const { return static_cast<T*>(*m_at); }
        T* operator[](difference_type n) const { return static_cast<T*>(m_at[n]); }
        const_iterator& operator++() { ++m_at; return *this; }
        const_iterator operator++(int) { const_iterator old(*this); ++m_at; return old; }
        const_iterator& operator--() { --m_at; return *this; }
        const_iterator& operator+=(difference_type n) { m_at += n; return *this; }
        const_iterator operator+(difference_type n) const { return const_iterator(m_at + n); }
        const_iterator operator-(difference_type n) const { return const_iterator(m_at - n); }
        difference_type operator-(const_iterator other) const { return m_at - other.m_at; }
        bool operator==(const_iterator other) const { return m_at == other.m_at; }
        bool operator!=(const_iterator other) const { return m_at != other.m_at; }
        bool operator<(const_iterator other) const { return m_at < other.m_at; }

    private:
        void* const* m_at;
    };
    typedef const_iterator iterator;

    XMLPtrArray() {}
    XMLPtrArray(std::initializer_list<T*> items) { for (T* item : items) push_back(item); }

    T* operator[](std::size_t i) const { return static_cast<T*>(m_items[i]); }
    T* front() const { return static_cast<T*>(m_items.front()); }
    T* back() const { return static_cast<T*>(m_items.back()); }
    const_iterator begin() const { return const_iterator(m_items.data()); }
    const_iterator end() const { return const_iterator(m_items.data() + m_items.size()); }
    void push_back(T* item) { Append(item); }
};

// A schema's namespace map: namespace URI -> the prefix that the
// schema's classes compare against ("" for the schema's own URI).
typedef std::map<wxString, wxString> XMLNSMap;

// The namespace declarations in force while one document is read.
//
// One context per document, passed by pointer down the recursive read.  It
// keeps a stack of prefix scopes (innermost first) and one unscoped default
// namespace: the last "xmlns" declaration met by any push, never restored by a
// pop.  Copyable; not thread-safe (one thread per context).
class OOXML_API XMLNSContext
{
public:
    // Pushes the scope of the document's root node.  `document` must not be null.
    explicit XMLNSContext(wxXmlDocument* document);
    // The same for the compact tree of the fast reading path (ooxml/dom.h).
    explicit XMLNSContext(ooxml::dom::Document* document);
    XMLNSContext(const XMLNSContext& other);
    XMLNSContext& operator=(const XMLNSContext& other);
    ~XMLNSContext();

    // Opens a scope holding the node's "xmlns:p" declarations (a later
    // declaration of the same prefix wins); an "xmlns" declaration replaces
    // the default namespace.  A null node or one without attributes still
    // opens an (empty) scope, so every push is matched by one pop.
    void PushStack(wxXmlNode* node);
    void PushStack(ooxml::dom::Node* node);
    void PushStack(std::nullptr_t) { PushStack(static_cast<wxXmlNode*>(nullptr)); }

    // Closes the innermost scope.  The default namespace is not touched.
    void PopStack();

    // Maps a qualified name as written ("c:barChart", "val", "r:id") to the
    // form the classes of the schema owning `map` compare against: the bare
    // local name for the schema's own namespace, "prefix:local" with the map's
    // prefix for another schema the map knows.  A namespace the map does not
    // know is logged as "Invalid name: %s" (wxLOG_Message) and yields a form no
    // generated comparison equals.  Allocates nothing but its result.
    wxString MapNameSpace(const wxString& name, const XMLNSMap& map) const;

    // Logs what MapNameSpace would log for `name`, without building the mapped
    // form: for the names that a reader has nothing to compare with, so that a
    // name of an unknown namespace is reported wherever it stands.
    void CheckName(const wxString& name, const XMLNSMap& map) const;

    // MapNameSpace for the readers: on the compact tree, whose names are
    // shared strings, the mapped form of a name is remembered per name and map
    // until the declarations in force change, so that the thousands of
    // elements of one name are mapped once.  The result lives in the context
    // (or in `scratch`) until the next call that changes declarations.
    const wxString& MapNameForReader(const wxString& name, const XMLNSMap& map, wxString* scratch);

private:
    struct NameCache;
    // Opens a scope holding the declarations of `node` (either tree).
    template <class Node>
    void Push(Node* node);

    // MapNameSpace without the log: `invalid` tells whether it would log.
    wxString MapName(const wxString& name, const XMLNSMap& map, bool* invalid) const;

    // The URI that `name`'s prefix is bound to (an unbound prefix stands for
    // itself, in `unbound`), or null for a namespace declaration.
    const wxString* Resolve(std::wstring_view name, wxString* unbound) const;

    // Orders prefixes and finds them by a view, so a lookup allocates nothing.
    struct PrefixLess
    {
        typedef void is_transparent;
        static std::wstring_view View(const wxString& s) { return std::wstring_view(s.wx_str(), s.length()); }
        bool operator()(const wxString& a, const wxString& b) const { return View(a) < View(b); }
        bool operator()(const wxString& a, std::wstring_view b) const { return View(a) < b; }
        bool operator()(std::wstring_view a, const wxString& b) const { return a < View(b); }
    };
    typedef std::map<wxString, wxString, PrefixLess> Scope;

    // The scope stack: m_scopes[0 .. m_depth) are open, the innermost last.
    // Slots above m_depth are kept (empty) so that a push does not allocate.
    std::vector<Scope> m_scopes;
    std::size_t m_depth;
    wxString m_defaultNamespace;
    // Changes whenever the declarations in force change (a push that declares,
    // a pop of a scope that did).
    std::uint64_t m_generation;
    std::unique_ptr<NameCache> m_names;   // compact tree only
};

#endif // OOXML_OOXML_H
