// The XML frame: XMLNSContext and the value converters.
#include "ooxml/ooxml.h"

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cwctype>
#include <limits>
#include <type_traits>
#include <unordered_map>

#include <locale.h>
#include <stdlib.h>

#include <wx/log.h>
#include <wx/xml/xml.h>

#include "ooxml/dom.h"
#include "ooxml/ooxml_read.h"

namespace
{

std::wstring_view View(const wxString& text)
{
    return std::wstring_view(text.wx_str(), text.length());
}

bool StartsWith(const wxString& text, std::wstring_view prefix)
{
    return View(text).substr(0, prefix.size()) == prefix;
}

} // namespace

// -- XMLNSContext -------------------------------------------------------------------

// The mapped names of the compact tree's shared name strings, per map.  A name
// is kept with its text too: a pointer is only trusted for the same text.
struct XMLNSContext::NameCache
{
    struct Key
    {
        const wxString* name;
        const XMLNSMap* map;
        bool operator==(const Key& other) const { return name == other.name && map == other.map; }
    };
    struct Hash
    {
        std::size_t operator()(const Key& key) const
        {
            return std::hash<const void*>()(key.name) * 31 + std::hash<const void*>()(key.map);
        }
    };
    struct Entry
    {
        wxString name;
        std::uint64_t generation = ~std::uint64_t(0);
        wxString mapped;
        bool invalid = false;   // logged as invalid on every use, as MapNameSpace does
    };
    std::unordered_map<Key, Entry, Hash> entries;
};

XMLNSContext::XMLNSContext(wxXmlDocument* document)
    : m_depth(0), m_generation(0)
{
    PushStack(document->GetRoot());
}

XMLNSContext::XMLNSContext(const XMLNSContext& other)
    : m_scopes(other.m_scopes.begin(), other.m_scopes.begin() + other.m_depth),
      m_depth(other.m_depth),
      m_defaultNamespace(other.m_defaultNamespace),
      m_generation(other.m_generation),
      m_names(other.m_names ? new NameCache : nullptr)
{
}

XMLNSContext& XMLNSContext::operator=(const XMLNSContext& other)
{
    if (this != &other)
    {
        // Reuse this context's scopes pairwise, drop the surplus, add the missing.
        m_scopes.resize(other.m_depth);
        for (std::size_t i = 0; i < other.m_depth; ++i)
            m_scopes[i] = other.m_scopes[i];
        m_depth = other.m_depth;
        m_names.reset(other.m_names ? new NameCache : nullptr);
    }
    m_defaultNamespace = other.m_defaultNamespace;
    ++m_generation;
    return *this;
}

XMLNSContext::~XMLNSContext() = default;

XMLNSContext::XMLNSContext(ooxml::dom::Document* document)
    : m_depth(0), m_generation(0), m_names(new NameCache)
{
    PushStack(document->GetRoot());
}

void XMLNSContext::PushStack(wxXmlNode* node)
{
    Push(node);
}

void XMLNSContext::PushStack(ooxml::dom::Node* node)
{
    // Most elements declare nothing: the compact tree knows it without a look
    // at their attributes.
    if (node && !node->DeclaresNamespaces())
        node = nullptr;
    Push(node);
}

template <class Node>
void XMLNSContext::Push(Node* node)
{
    if (m_depth == m_scopes.size())
        m_scopes.emplace_back();
    Scope& scope = m_scopes[m_depth++];
    if (!node)
        return;
    static const std::wstring_view xmlnsColon = L"xmlns:";
    for (const auto* attribute = node->GetAttributes(); attribute; attribute = attribute->GetNext())
    {
        const wxString& name = attribute->GetName();
        if (StartsWith(name, xmlnsColon))
        {
            scope[name.Mid(xmlnsColon.size())] = attribute->GetValue();
            ++m_generation;
        }
        else if (View(name) == L"xmlns")
        {
            m_defaultNamespace = attribute->GetValue();
            ++m_generation;
        }
    }
}

void XMLNSContext::PopStack()
{
    // Callers never pop more than they pushed; an extra pop does nothing.
    if (m_depth > 0 && !m_scopes[--m_depth].empty())
    {
        m_scopes[m_depth].clear();
        ++m_generation;
    }
}


const wxString* XMLNSContext::Resolve(std::wstring_view name, wxString* unbound) const
{
    const std::size_t colon = name.find(L':');
    const std::wstring_view prefix = colon == std::wstring_view::npos ? std::wstring_view() : name.substr(0, colon);
    const std::wstring_view local = colon == std::wstring_view::npos ? name : name.substr(colon + 1);

    // Namespace declarations pass through untouched.
    if (prefix == L"xmlns" || local == L"xmlns")
        return nullptr;
    if (prefix.empty())
        return &m_defaultNamespace;
    for (std::size_t i = m_depth; i-- > 0;)
    {
        const Scope::const_iterator found = m_scopes[i].find(prefix);
        if (found != m_scopes[i].end())
            return &found->second;
    }
    unbound->assign(prefix.data(), prefix.size());
    return unbound;
}

namespace
{

void LogInvalidName(const wxString& name)
{
    if (wxLog::IsLevelEnabled(wxLOG_Message, wxLOG_COMPONENT))
        wxLogger(wxLOG_Message, __FILE__, __LINE__, "XMLNSContext::MapNameSpace", wxLOG_COMPONENT)
            .Log(wxS("Invalid name: %s"), name);
}

} // namespace

void XMLNSContext::CheckName(const wxString& name, const XMLNSMap& map) const
{
    wxString unbound;
    const wxString* uri = Resolve(View(name), &unbound);
    if (uri && !uri->empty() && map.find(*uri) == map.end())
        LogInvalidName(name);
}

wxString XMLNSContext::MapNameSpace(const wxString& name, const XMLNSMap& map) const
{
    bool invalid;
    const wxString mapped = MapName(name, map, &invalid);
    if (invalid)
        LogInvalidName(name);
    return mapped;
}

wxString XMLNSContext::MapName(const wxString& name, const XMLNSMap& map, bool* invalid) const
{
    const std::wstring_view whole = View(name);
    const std::size_t colon = whole.find(L':');
    const std::wstring_view local = colon == std::wstring_view::npos ? whole : whole.substr(colon + 1);

    // Resolve the prefix to a namespace URI; an unbound prefix stands for itself.
    *invalid = false;
    wxString unbound;
    const wxString* uri = Resolve(whole, &unbound);
    if (!uri)
        return name;

    const wxString* resolved = uri;
    if (!uri->empty())
    {
        const XMLNSMap::const_iterator known = map.find(*uri);
        if (known != map.end())
            resolved = &known->second;
        else
            *invalid = true;
    }

    if (resolved->empty())
        return wxString(local.data(), local.size());
    wxString result;
    result.reserve(resolved->length() + 1 + local.size());
    result.append(*resolved);
    result.append(wxUniChar(':'));
    result.append(local.data(), local.size());
    return result;
}

const wxString& XMLNSContext::MapNameForReader(const wxString& name, const XMLNSMap& map, wxString* scratch)
{
    if (!m_names)
    {
        *scratch = MapNameSpace(name, map);
        return *scratch;
    }
    NameCache::Entry& entry = m_names->entries[NameCache::Key{&name, &map}];
    if (entry.generation != m_generation || entry.name != name)
    {
        entry.mapped = MapName(name, map, &entry.invalid);
        entry.name = name;
        entry.generation = m_generation;
    }
    if (entry.invalid)
        LogInvalidName(name);
    return entry.mapped;
}

// -- XMLPtrArray ----------------------------------------------------------------------
// Out of line, so that the generated getters and readers call them instead of
// inlining std::vector's code ~540 times.

XMLPtrArrayBase::XMLPtrArrayBase() = default;
XMLPtrArrayBase::XMLPtrArrayBase(const XMLPtrArrayBase& other) = default;
XMLPtrArrayBase& XMLPtrArrayBase::operator=(const XMLPtrArrayBase& other) = default;
XMLPtrArrayBase::~XMLPtrArrayBase() = default;

void XMLPtrArrayBase::Append(void* item)
{
    m_items.push_back(item);
}

// -- Reader helpers --------------------------------------------------------------------

bool ooxml_detail::NameMatcher::Is(const wxString& mappedName)
{
    if (!m_mapped)
    {
        // Valid for this name's comparisons: none of them changes declarations.
        m_mapped = &m_context->MapNameForReader(*m_name, *m_map, &m_mappedName);
    }
    return *m_mapped == mappedName;
}

// -- Value converters ------------------------------------------------------------------
// Each conversion is written once over the text it reads (Convert* below): a
// wxString of the wxWidgets tree or the UTF-8 text of the compact tree.  The
// primitive reads exist for both; on UTF-8 text the C library's narrow
// functions read ASCII in place, as wxString's wide ones read the same
// characters, and other text goes through its wxString, so the two reading
// paths give the same values by construction.

namespace
{

// -- primitive reads of wxString ----

// wxString::ToLong/ToULong accept the range of the native long, which is 64
// bits here: the 32-bit limits of the schema types are applied explicitly.
bool ReadLong32(const wxString& text, long* value)
{
    long parsed;
    if (!text.ToLong(&parsed, 10) || parsed < std::numeric_limits<std::int32_t>::min() ||
        parsed > std::numeric_limits<std::int32_t>::max())
        return false;
    *value = parsed;
    return true;
}

// The text after its leading white space, which strtol and friends skip.
std::wstring_view AfterSpaces(const wxString& text)
{
    std::wstring_view rest = View(text);
    while (!rest.empty() && std::iswspace(rest.front()))
        rest.remove_prefix(1);
    return rest;
}

// strtoul and strtoull negate a number after a minus sign instead of refusing
// it ("-1" gives the largest value): an unsigned type takes no sign but "-0".
bool NegativeUnsigned(const wxString& text, unsigned long long parsed)
{
    const std::wstring_view rest = AfterSpaces(text);
    return parsed != 0 && !rest.empty() && rest.front() == L'-';
}

bool ReadULong32(const wxString& text, unsigned long* value)
{
    unsigned long parsed;
    if (!text.ToULong(&parsed, 10) || NegativeUnsigned(text, parsed) || parsed > std::numeric_limits<std::uint32_t>::max())
        return false;
    *value = parsed;
    return true;
}

bool ReadInt64(const wxString& text, long long* value)
{
    wxLongLong_t parsed;
    if (!text.ToLongLong(&parsed, 10))
        return false;
    *value = parsed;
    return true;
}

bool ReadUInt64(const wxString& text, unsigned long long* value)
{
    wxULongLong_t parsed;
    if (!text.ToULongLong(&parsed, 10) || NegativeUnsigned(text, parsed))
        return false;
    *value = parsed;
    return true;
}

// ToCDouble also reads C99 hexadecimal floats; XML Schema numbers are base 10 only.
bool ReadDouble(const wxString& text, double* value)
{
    std::wstring_view rest = AfterSpaces(text);
    if (!rest.empty() && (rest.front() == L'+' || rest.front() == L'-'))
        rest.remove_prefix(1);
    if (rest.size() >= 2 && rest[0] == L'0' && (rest[1] == L'x' || rest[1] == L'X'))
        return false;
    double parsed;
    if (!text.ToCDouble(&parsed))
        return false;
    *value = parsed;
    return true;
}

bool Equals(const wxString& text, std::wstring_view value)
{
    return View(text) == value;
}

const wxString& Decoded(const wxString& text)
{
    return text;
}

// -- the same of UTF-8 text ----

bool IsAscii(const ooxml::dom::Text& text)
{
    for (std::size_t i = 0; i < text.size(); ++i)
        if (static_cast<unsigned char>(text.data()[i]) >= 0x80)
            return false;
    return true;
}

// As wxString's ToLong and friends: something must be read, in range, and
// nothing may follow.  The text ends with a NUL (dom::Text guarantees it).
template <class T, class Parse>
bool ReadWhole(const ooxml::dom::Text& text, T* value, Parse parse)
{
    const char* start = text.data();
    char* end = nullptr;
    errno = 0;
    const T parsed = parse(start, &end);
    if (end == start || errno == ERANGE || *end != '\0')
        return false;
    *value = parsed;
    return true;
}

bool NegativeUnsigned(const ooxml::dom::Text& text, unsigned long long parsed)
{
    const char* p = text.data();
    while (std::isspace(static_cast<unsigned char>(*p)))
        ++p;
    return parsed != 0 && *p == '-';
}

bool ReadLong32(const ooxml::dom::Text& text, long* value)
{
    if (!IsAscii(text))
        return ReadLong32(text.ToString(), value);
    long parsed;
    if (!ReadWhole(text, &parsed, [](const char* s, char** end) { return std::strtol(s, end, 10); }) ||
        parsed < std::numeric_limits<std::int32_t>::min() || parsed > std::numeric_limits<std::int32_t>::max())
        return false;
    *value = parsed;
    return true;
}

bool ReadULong32(const ooxml::dom::Text& text, unsigned long* value)
{
    if (!IsAscii(text))
        return ReadULong32(text.ToString(), value);
    unsigned long parsed;
    if (!ReadWhole(text, &parsed, [](const char* s, char** end) { return std::strtoul(s, end, 10); }) ||
        NegativeUnsigned(text, parsed) || parsed > std::numeric_limits<std::uint32_t>::max())
        return false;
    *value = parsed;
    return true;
}

bool ReadInt64(const ooxml::dom::Text& text, long long* value)
{
    if (!IsAscii(text))
        return ReadInt64(text.ToString(), value);
    return ReadWhole(text, value, [](const char* s, char** end) { return std::strtoll(s, end, 10); });
}

bool ReadUInt64(const ooxml::dom::Text& text, unsigned long long* value)
{
    if (!IsAscii(text))
        return ReadUInt64(text.ToString(), value);
    unsigned long long parsed;
    if (!ReadWhole(text, &parsed, [](const char* s, char** end) { return std::strtoull(s, end, 10); }) ||
        NegativeUnsigned(text, parsed))
        return false;
    *value = parsed;
    return true;
}

bool ReadDouble(const ooxml::dom::Text& text, double* value)
{
    if (!IsAscii(text))
        return ReadDouble(text.ToString(), value);
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    const char* p = text.data();
    while (std::isspace(static_cast<unsigned char>(*p)))
        ++p;
    if (*p == '+' || *p == '-')
        ++p;
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X'))
        return false;
    return ReadWhole(text, value, [](const char* s, char** end) { return strtod_l(s, end, c); });
}

// UTF-8 never equals an ASCII value unless it is that ASCII text.
bool Equals(const ooxml::dom::Text& text, std::wstring_view value)
{
    if (text.size() != value.size())
        return false;
    for (std::size_t i = 0; i < value.size(); ++i)
        if (static_cast<unsigned char>(text.data()[i]) != value[i])
            return false;
    return true;
}

wxString Decoded(const ooxml::dom::Text& text)
{
    return text.ToString();
}

// -- the conversions, once for both ----

// A 32-bit integer kept in T: the 8- and 16-bit types keep its low bits
// without a range check.
template <class T, class R, class Text>
bool ConvertInteger(T* dest, const Text& text, bool (*read)(const Text&, R*))
{
    R value;
    if (!read(text, &value))
        return false;
    *dest = static_cast<T>(static_cast<std::make_unsigned_t<T>>(value));
    return true;
}

template <class T, class Text>
bool ConvertSigned(T* dest, const Text& text)
{
    return ConvertInteger<T, long>(dest, text, ReadLong32);
}

template <class T, class Text>
bool ConvertUnsigned(T* dest, const Text& text)
{
    return ConvertInteger<T, unsigned long>(dest, text, ReadULong32);
}

template <class Text>
bool ConvertFloat(float* dest, const Text& text)
{
    double value;
    if (!ReadDouble(text, &value))
        return false;
    *dest = static_cast<float>(value);
    return true;
}

template <class Text>
bool ConvertBool(bool* dest, const Text& text)
{
    if (Equals(text, L"true") || Equals(text, L"1"))
        *dest = true;
    else if (Equals(text, L"false") || Equals(text, L"0"))
        *dest = false;
    else
        return false;
    return true;
}

// A 64-bit integer if the whole text is one, else a double, else the text.
template <class Text>
bool ConvertVariant(wxAny* dest, const Text& text)
{
    long long integer;
    double number;
    if (ReadInt64(text, &integer))
        *dest = static_cast<wxLongLong_t>(integer);
    else if (ReadDouble(text, &number))
        *dest = number;
    else
        *dest = wxString(Decoded(text));
    return true;
}

} // namespace

bool ParseInt8(char* dest, const wxString& text) { return ConvertSigned(dest, text); }
bool ParseUInt8(unsigned char* dest, const wxString& text) { return ConvertUnsigned(dest, text); }
bool ParseInt16(short* dest, const wxString& text) { return ConvertSigned(dest, text); }
bool ParseUInt16(unsigned short* dest, const wxString& text) { return ConvertUnsigned(dest, text); }
bool ParseInt32(int* dest, const wxString& text) { return ConvertSigned(dest, text); }
bool ParseUInt32(unsigned int* dest, const wxString& text) { return ConvertUnsigned(dest, text); }
bool ParseInt64(long long* dest, const wxString& text) { return ReadInt64(text, dest); }
bool ParseUInt64(unsigned long long* dest, const wxString& text) { return ReadUInt64(text, dest); }
bool ParseFloat(float* dest, const wxString& text) { return ConvertFloat(dest, text); }
bool ParseDouble(double* dest, const wxString& text) { return ReadDouble(text, dest); }
bool ParseBool(bool* dest, const wxString& text) { return ConvertBool(dest, text); }
bool ParseString(wxString* dest, const wxString& text) { *dest = text; return true; }
bool ParseVariant(wxAny* dest, const wxString& text) { return ConvertVariant(dest, text); }

using ooxml::dom::Text;
bool ParseInt8(char* dest, const Text& text) { return ConvertSigned(dest, text); }
bool ParseUInt8(unsigned char* dest, const Text& text) { return ConvertUnsigned(dest, text); }
bool ParseInt16(short* dest, const Text& text) { return ConvertSigned(dest, text); }
bool ParseUInt16(unsigned short* dest, const Text& text) { return ConvertUnsigned(dest, text); }
bool ParseInt32(int* dest, const Text& text) { return ConvertSigned(dest, text); }
bool ParseUInt32(unsigned int* dest, const Text& text) { return ConvertUnsigned(dest, text); }
bool ParseInt64(long long* dest, const Text& text) { return ReadInt64(text, dest); }
bool ParseUInt64(unsigned long long* dest, const Text& text) { return ReadUInt64(text, dest); }
bool ParseFloat(float* dest, const Text& text) { return ConvertFloat(dest, text); }
bool ParseDouble(double* dest, const Text& text) { return ReadDouble(text, dest); }
bool ParseBool(bool* dest, const Text& text) { return ConvertBool(dest, text); }
bool ParseString(wxString* dest, const Text& text) { *dest = text.ToString(); return true; }
bool ParseVariant(wxAny* dest, const Text& text) { return ConvertVariant(dest, text); }
