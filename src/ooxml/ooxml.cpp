// The XML frame: XMLNSContext and the value converters.
#include "ooxml/ooxml.h"

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cwctype>
#include <limits>
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
    const std::wstring_view whole = View(name);
    const std::size_t colon = whole.find(L':');
    const std::wstring_view local = colon == std::wstring_view::npos ? whole : whole.substr(colon + 1);

    // Resolve the prefix to a namespace URI; an unbound prefix stands for itself.
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
            LogInvalidName(name);
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
        wxString unbound;
        const wxString* uri = Resolve(View(name), &unbound);
        entry.invalid = uri && !uri->empty() && map.find(*uri) == map.end();
        entry.mapped = MapNameSpace(name, map);   // logs once here when invalid
        entry.name = name;
        entry.generation = m_generation;
        return entry.mapped;
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

namespace
{

// wxString::ToLong/ToULong accept the range of the native long, which is 64
// bits here: the 32-bit limits of the schema types are applied explicitly.
bool ParseLong32(const wxString& text, long* value)
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

bool ParseULong32(const wxString& text, unsigned long* value)
{
    unsigned long parsed;
    if (!text.ToULong(&parsed, 10) || NegativeUnsigned(text, parsed) || parsed > std::numeric_limits<std::uint32_t>::max())
        return false;
    *value = parsed;
    return true;
}

// ToCDouble also reads C99 hexadecimal floats; XML Schema numbers are base 10 only.
bool ParseCDouble(const wxString& text, double* value)
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

} // namespace

bool ParseInt8(char* dest, const wxString& text)
{
    long value;
    if (!ParseLong32(text, &value))
        return false;
    *dest = static_cast<char>(static_cast<unsigned char>(value & 0xFF));
    return true;
}

bool ParseUInt8(unsigned char* dest, const wxString& text)
{
    unsigned long value;
    if (!ParseULong32(text, &value))
        return false;
    *dest = static_cast<unsigned char>(value & 0xFF);
    return true;
}

bool ParseInt16(short* dest, const wxString& text)
{
    long value;
    if (!ParseLong32(text, &value))
        return false;
    *dest = static_cast<short>(static_cast<unsigned short>(value & 0xFFFF));
    return true;
}

bool ParseUInt16(unsigned short* dest, const wxString& text)
{
    unsigned long value;
    if (!ParseULong32(text, &value))
        return false;
    *dest = static_cast<unsigned short>(value & 0xFFFF);
    return true;
}

bool ParseInt32(int* dest, const wxString& text)
{
    long value;
    if (!ParseLong32(text, &value))
        return false;
    *dest = static_cast<int>(value);
    return true;
}

bool ParseUInt32(unsigned int* dest, const wxString& text)
{
    unsigned long value;
    if (!ParseULong32(text, &value))
        return false;
    *dest = static_cast<unsigned int>(value);
    return true;
}

bool ParseInt64(long long* dest, const wxString& text)
{
    wxLongLong_t value;
    if (!text.ToLongLong(&value, 10))
        return false;
    *dest = value;
    return true;
}

bool ParseUInt64(unsigned long long* dest, const wxString& text)
{
    wxULongLong_t value;
    if (!text.ToULongLong(&value, 10) || NegativeUnsigned(text, value))
        return false;
    *dest = value;
    return true;
}

bool ParseFloat(float* dest, const wxString& text)
{
    double value;
    if (!ParseCDouble(text, &value))
        return false;
    *dest = static_cast<float>(value);
    return true;
}

bool ParseDouble(double* dest, const wxString& text)
{
    return ParseCDouble(text, dest);
}

bool ParseBool(bool* dest, const wxString& text)
{
    const std::wstring_view value = View(text);
    if (value == L"true" || value == L"1")
        *dest = true;
    else if (value == L"false" || value == L"0")
        *dest = false;
    else
        return false;
    return true;
}

bool ParseString(wxString* dest, const wxString& text)
{
    *dest = text;
    return true;
}

bool ParseVariant(wxAny* dest, const wxString& text)
{
    wxLongLong_t integer;
    double number;
    if (text.ToLongLong(&integer, 10))
        *dest = integer;
    else if (ParseCDouble(text, &number))
        *dest = number;
    else
        *dest = text;
    return true;
}

// -- Converters of UTF-8 text (the compact tree) ---------------------------------------
// The C library's narrow functions on ASCII text give what wxString's wide ones
// give on the same text; other text goes through wxString, so the results of
// the two reading paths are the same by construction.

namespace
{

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
bool ParseWhole(const ooxml::dom::Text& text, T* value, Parse parse)
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

bool ParseLong32(const ooxml::dom::Text& text, long* value)
{
    long parsed;
    if (!ParseWhole(text, &parsed, [](const char* s, char** end) { return std::strtol(s, end, 10); }) ||
        parsed < std::numeric_limits<std::int32_t>::min() || parsed > std::numeric_limits<std::int32_t>::max())
        return false;
    *value = parsed;
    return true;
}

bool ParseULong32(const ooxml::dom::Text& text, unsigned long* value)
{
    unsigned long parsed;
    if (!ParseWhole(text, &parsed, [](const char* s, char** end) { return std::strtoul(s, end, 10); }) ||
        NegativeUnsigned(text, parsed) || parsed > std::numeric_limits<std::uint32_t>::max())
        return false;
    *value = parsed;
    return true;
}

bool ParseCDouble(const ooxml::dom::Text& text, double* value)
{
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    const char* p = text.data();
    while (std::isspace(static_cast<unsigned char>(*p)))
        ++p;
    if (*p == '+' || *p == '-')
        ++p;
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X'))
        return false;
    return ParseWhole(text, value, [](const char* s, char** end) { return strtod_l(s, end, c); });
}

// Converts `text` with the narrow parser if it is ASCII, else as wxString.
template <class T, class Narrow, class Wide>
bool Convert(T* dest, const ooxml::dom::Text& text, Narrow narrow, Wide wide)
{
    return IsAscii(text) ? narrow(dest, text) : wide(dest, text.ToString());
}

} // namespace

bool ParseInt8(char* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](char* d, const ooxml::dom::Text& t) {
        long value;
        if (!ParseLong32(t, &value))
            return false;
        *d = static_cast<char>(static_cast<unsigned char>(value & 0xFF));
        return true;
    }, [](char* d, const wxString& t) { return ParseInt8(d, t); });
}

bool ParseUInt8(unsigned char* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](unsigned char* d, const ooxml::dom::Text& t) {
        unsigned long value;
        if (!ParseULong32(t, &value))
            return false;
        *d = static_cast<unsigned char>(value & 0xFF);
        return true;
    }, [](unsigned char* d, const wxString& t) { return ParseUInt8(d, t); });
}

bool ParseInt16(short* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](short* d, const ooxml::dom::Text& t) {
        long value;
        if (!ParseLong32(t, &value))
            return false;
        *d = static_cast<short>(static_cast<unsigned short>(value & 0xFFFF));
        return true;
    }, [](short* d, const wxString& t) { return ParseInt16(d, t); });
}

bool ParseUInt16(unsigned short* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](unsigned short* d, const ooxml::dom::Text& t) {
        unsigned long value;
        if (!ParseULong32(t, &value))
            return false;
        *d = static_cast<unsigned short>(value & 0xFFFF);
        return true;
    }, [](unsigned short* d, const wxString& t) { return ParseUInt16(d, t); });
}

bool ParseInt32(int* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](int* d, const ooxml::dom::Text& t) {
        long value;
        if (!ParseLong32(t, &value))
            return false;
        *d = static_cast<int>(value);
        return true;
    }, [](int* d, const wxString& t) { return ParseInt32(d, t); });
}

bool ParseUInt32(unsigned int* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](unsigned int* d, const ooxml::dom::Text& t) {
        unsigned long value;
        if (!ParseULong32(t, &value))
            return false;
        *d = static_cast<unsigned int>(value);
        return true;
    }, [](unsigned int* d, const wxString& t) { return ParseUInt32(d, t); });
}

bool ParseInt64(long long* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](long long* d, const ooxml::dom::Text& t) {
        return ParseWhole(t, d, [](const char* s, char** end) { return std::strtoll(s, end, 10); });
    }, [](long long* d, const wxString& t) { return ParseInt64(d, t); });
}

bool ParseUInt64(unsigned long long* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](unsigned long long* d, const ooxml::dom::Text& t) {
        unsigned long long value;
        if (!ParseWhole(t, &value, [](const char* s, char** end) { return std::strtoull(s, end, 10); }) ||
            NegativeUnsigned(t, value))
            return false;
        *d = value;
        return true;
    }, [](unsigned long long* d, const wxString& t) { return ParseUInt64(d, t); });
}

bool ParseFloat(float* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](float* d, const ooxml::dom::Text& t) {
        double value;
        if (!ParseCDouble(t, &value))
            return false;
        *d = static_cast<float>(value);
        return true;
    }, [](float* d, const wxString& t) { return ParseFloat(d, t); });
}

bool ParseDouble(double* dest, const ooxml::dom::Text& text)
{
    return Convert(dest, text, [](double* d, const ooxml::dom::Text& t) { return ParseCDouble(t, d); },
                   [](double* d, const wxString& t) { return ParseDouble(d, t); });
}

bool ParseBool(bool* dest, const ooxml::dom::Text& text)
{
    const std::string_view value = text.view();
    if (value == "true" || value == "1")
        *dest = true;
    else if (value == "false" || value == "0")
        *dest = false;
    else
        return false;
    return true;
}

bool ParseString(wxString* dest, const ooxml::dom::Text& text)
{
    *dest = text.ToString();
    return true;
}

bool ParseVariant(wxAny* dest, const ooxml::dom::Text& text)
{
    if (!IsAscii(text))
        return ParseVariant(dest, text.ToString());
    long long integer;
    double number;
    if (ParseWhole(text, &integer, [](const char* s, char** end) { return std::strtoll(s, end, 10); }))
        *dest = static_cast<wxLongLong_t>(integer);
    else if (ParseCDouble(text, &number))
        *dest = number;
    else
        *dest = text.ToString();
    return true;
}
