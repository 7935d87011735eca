// Parsing XML parts with libexpat: the fast path's tree, the checks both
// paths share, and the wxWidgets path (checks, then wxXmlDocument::Load).
//
// The tree must be the one wxXmlDocument::Load builds, node for node, or the
// two reading paths would read different documents.  Load feeds libexpat
// 1024 bytes at a time and appends each piece of character data libexpat
// reports to the current text node; a piece that is only white space is
// dropped when no text node is open (so an element's leading lines of
// indentation vanish, but white space after a first word stays).  Which
// pieces libexpat reports depends on where the buffers end, so we feed it the
// same slices and apply the same rule, only merging linearly: the text of a
// node is gathered in one buffer and stored once, when the node ends.
// Load also installs a default handler, which keeps libexpat from expanding
// the internal entities of a document type declaration; we do the same.
#include "ooxml/opc/xml.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <expat.h>
#include <wx/log.h>
#include <wx/mstream.h>
#include <wx/xml/xml.h>

namespace ooxml
{
namespace opc
{

namespace
{

// The size of the pieces wxXmlDocument::Load hands to libexpat.
constexpr std::size_t kFeed = 1024;

// White space as wxWidgets tests it when it decides to drop a piece of text.
bool WhiteOnly(const char* s, int length)
{
    for (int i = 0; i < length; ++i)
        if (s[i] != ' ' && s[i] != '\t' && s[i] != '\n' && s[i] != '\r')
            return false;
    return true;
}

const char* LocalName(const char* name)
{
    const char* colon = std::strchr(name, ':');
    return colon ? colon + 1 : name;
}

wxString Utf8(const char* text)
{
    return wxString::FromUTF8(text);
}

wxString Number(std::uint64_t n)
{
    return wxString::Format("%llu", static_cast<unsigned long long>(n));
}

// Collects the error messages wxWidgets logs while it lives (a parse error
// becomes our problem instead of a log record).
class ErrorCollector : public wxLog
{
public:
    ErrorCollector() : m_previous(wxLog::SetActiveTarget(this)) {}
    ~ErrorCollector() override { wxLog::SetActiveTarget(m_previous); }
    wxString Text() const { return m_text; }

protected:
    void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo&) override
    {
        if (level <= wxLOG_Warning && m_text.empty())
            m_text = message;
    }

private:
    wxLog* m_previous;
    wxString m_text;
};

struct ParserFree
{
    void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

// The handlers of one parse: the checks, and the tree when there is a
// document to build (none for CheckXml).  Everything is driven by libexpat's
// events with explicit stacks, so hostile nesting costs heap, never stack.
class Parse
{
public:
    Parse(const Limits& limits, dom::Document* document, const XmlStream* stream, bool boundCopies)
        : m_limits(limits), m_document(document), m_boundCopies(boundCopies)
    {
        if (stream && document && stream->element && !stream->path.empty())
        {
            m_stream = stream;
            for (const wxString& name : stream->path)
                m_path.push_back(std::string(name.utf8_str()));
        }
        if (document)
        {
            m_textName = document->Intern(std::string_view("text"));
            m_cdataName = document->Intern(std::string_view("cdata"));
            m_commentName = document->Intern(std::string_view("comment"));
        }
    }

    bool Run(const XmlBlockReader& read, wxString* problem, XmlCounts* counts)
    {
        const bool ok = Feed(read, problem);
        if (counts)
            *counts = m_counts;
        return ok;
    }

private:
    // Hands libexpat the part in the pieces wxXmlDocument::Load would: every
    // full 1024 bytes as "not done", then the rest (possibly nothing) as the
    // last piece.  Blocks from the reader end anywhere, so a piece that spans
    // two of them is gathered in `piece` first.
    bool Feed(const XmlBlockReader& read, wxString* problem)
    {
        const char* block = nullptr;
        std::size_t size = 0;
        if (!read(&block, &size, problem))
            return false;
        if (size == 0)
        {
            *problem = "empty part, not XML";
            return false;
        }
        std::unique_ptr<XML_ParserStruct, ParserFree> parser(XML_ParserCreate(nullptr));
        if (!parser)
        {
            *problem = "out of memory for the XML parser";
            return false;
        }
        m_parser = parser.get();
        XML_SetUserData(m_parser, this);
        XML_SetElementHandler(m_parser, &Parse::OnStart, &Parse::OnEnd);
        XML_SetCharacterDataHandler(m_parser, &Parse::OnText);
        XML_SetCdataSectionHandler(m_parser, &Parse::OnCdataStart, &Parse::OnCdataEnd);
        XML_SetCommentHandler(m_parser, &Parse::OnComment);
        XML_SetProcessingInstructionHandler(m_parser, &Parse::OnInstruction);
        XML_SetDefaultHandler(m_parser, &Parse::OnDefault);
        XML_SetStartDoctypeDeclHandler(m_parser, &Parse::OnDoctype);
        XML_SetUnknownEncodingHandler(m_parser, &Parse::OnUnknownEncoding, this);
        char piece[kFeed];
        std::size_t held = 0; // bytes of `piece` gathered so far
        do
        {
            if (held != 0)
            {
                const std::size_t take = std::min(kFeed - held, size);
                std::memcpy(piece + held, block, take);
                held += take;
                block += take;
                size -= take;
                if (held == kFeed)
                {
                    held = 0;
                    if (!Piece(piece, kFeed, false, problem))
                        return m_streamStopped;
                }
            }
            if (held == 0)
            {
                for (; size >= kFeed; block += kFeed, size -= kFeed)
                    if (!Piece(block, kFeed, false, problem))
                        return m_streamStopped;
                std::memcpy(piece, block, size);
                held = size;
            }
            if (!read(&block, &size, problem))
                return false;
        } while (size != 0);
        return Piece(piece, held, true, problem) || m_streamStopped;
    }

    // One piece to libexpat; false with `problem` when the parse ends in
    // failure or because the stream callback stopped it.
    bool Piece(const char* bytes, std::size_t length, bool done, wxString* problem)
    {
        if (XML_Parse(m_parser, bytes, static_cast<int>(length), done) == XML_STATUS_OK)
            return true;
        if (m_streamStopped)
            return false;
        if (!m_problem.empty())
            *problem = m_problem;
        else if (!m_unknownEncoding.empty())
            *problem = "XML in the encoding " + Utf8(m_unknownEncoding.c_str()) +
                       ", which is not read (UTF-8, UTF-16, ISO-8859-1 and US-ASCII are)";
        else
            *problem = "XML does not parse: " + Utf8(XML_ErrorString(XML_GetErrorCode(m_parser))) +
                       wxString::Format(" at line %lu", static_cast<unsigned long>(XML_GetCurrentLineNumber(m_parser)));
        return false;
    }

    void Fail(const wxString& problem)
    {
        m_problem = problem;
        m_stopped = true;
        XML_StopParser(m_parser, XML_FALSE);
    }

    // Stores the text node being gathered, if any, as the last child of the
    // current element.
    void EndText()
    {
        if (!m_textOpen)
            return;
        m_textOpen = false;
        if (!m_document)
            return;
        dom::Node* node = m_document->NewTextNode(m_textType, m_textType == wxXML_CDATA_SECTION_NODE ? m_cdataName
                                                                                                     : m_textName,
                                                  m_text);
        m_text.clear();
        Attach(node);
    }

    // A node at the current place: in the open element, or before or after
    // the root.
    void Attach(dom::Node* node)
    {
        if (m_nodes.empty())
            m_document->AppendToProlog(node);
        else
            m_document->AppendChild(m_nodes.back(), node);
    }

    // The namespace bound to `prefix` here, or null.
    const std::string* Namespace(std::string_view prefix) const
    {
        static const std::string xml = "http://www.w3.org/XML/1998/namespace";
        for (auto b = m_bindings.rbegin(); b != m_bindings.rend(); ++b)
            if (b->first == prefix)
                return b->second.empty() ? nullptr : &b->second;
        return prefix == "xml" ? &xml : nullptr;
    }

    // Binds the element's "xmlns:p" declarations, then refuses one attribute
    // written twice through two prefixes of one namespace ("p:x" and "q:x"):
    // libexpat only sees two names, and a reader would take either value.
    bool Namespaces(const char* name, const char** attributes)
    {
        std::size_t prefixed = 0;
        for (const char** a = attributes; *a; a += 2)
        {
            if (std::strncmp(a[0], "xmlns:", 6) == 0)
                m_bindings.emplace_back(std::string(a[0] + 6), std::string(a[1]));
            else if (std::strchr(a[0], ':'))
                ++prefixed;
        }
        if (prefixed < 2)
            return true;
        m_qualified.clear();
        for (const char** a = attributes; *a; a += 2)
        {
            const char* colon = std::strchr(a[0], ':');
            if (!colon || std::strncmp(a[0], "xmlns:", 6) == 0)
                continue;
            if (const std::string* uri = Namespace(std::string_view(a[0], colon - a[0])))
                m_qualified.push_back(Qualified{uri, colon + 1, a[0]});
        }
        std::sort(m_qualified.begin(), m_qualified.end(), [](const Qualified& x, const Qualified& y) {
            const int c = x.uri->compare(*y.uri);
            return c != 0 ? c < 0 : std::strcmp(x.local, y.local) < 0;
        });
        for (std::size_t i = 1; i < m_qualified.size(); ++i)
            if (*m_qualified[i].uri == *m_qualified[i - 1].uri &&
                std::strcmp(m_qualified[i].local, m_qualified[i - 1].local) == 0)
            {
                Fail("duplicate attribute: " + Utf8(m_qualified[i - 1].name) + " and " + Utf8(m_qualified[i].name) +
                     " of <" + Utf8(name) + "> name the same attribute of one namespace");
                return false;
            }
        return true;
    }

    void Start(const char* name, const char** attributes)
    {
        if (m_stopped)
            return;
        EndText();
        const std::size_t depth = m_open.size() + 1;
        if (depth > m_limits.maxDepth)
            return Fail(wxString::Format("XML nested deeper than %zu elements", m_limits.maxDepth));
        m_counts.depth = std::max(m_counts.depth, depth);
        std::size_t count = 0;
        for (const char** a = attributes; *a; a += 2)
            ++count;
        if (count > m_limits.maxAttributesPerElement)
            return Fail("XML element <" + Utf8(name) + "> has more than " + Number(m_limits.maxAttributesPerElement) +
                        " attributes (limit maxAttributesPerElement)");
        // On the streamed path: every ancestor matched its local name so far.
        const bool onPath = m_stream && depth <= m_path.size() && (m_open.empty() || m_open.back().onPath) &&
                            m_path[depth - 1] == LocalName(name);
        const bool streamed = onPath && depth == m_path.size();
        if (streamed)
            m_streamDepth = depth;
        ++m_counts.elements;
        m_counts.attributes += count;
        if (m_streamDepth != 0)
            ++m_counts.streamedElements;
        else
        {
            // Streamed elements are freed as they end: only the others stay.
            if (++m_keptElements > m_limits.maxElements)
                return Fail("XML has more than " + Number(m_limits.maxElements) + " elements (limit maxElements)");
            m_keptAttributes += count;
            if (m_keptAttributes > m_limits.maxAttributes)
                return Fail("XML has more than " + Number(m_limits.maxAttributes) +
                            " attributes (limit maxAttributes)");
        }
        const std::size_t bindings = m_bindings.size();
        m_open.push_back(Open{bindings, onPath});
        if (!Namespaces(name, attributes))
            return;
        dom::Node* node = nullptr;
        if (m_document)
        {
            if (streamed)
                m_mark = m_document->GetMark();
            node = m_document->NewElement(m_document->Intern(std::string_view(name)));
            dom::Attribute* last = nullptr;
            for (const char** a = attributes; *a; a += 2)
                last = m_document->AppendAttribute(node, last, m_document->Intern(std::string_view(a[0])),
                                                   m_document->NewText(a[1]));
            // A streamed element is handed out when it ends, never linked.
            if (!streamed && m_nodes.empty())
                m_document->SetRoot(node);
            else if (!streamed)
                m_document->AppendChild(m_nodes.back(), node);
        }
        m_nodes.push_back(node);
    }

    void End()
    {
        if (m_stopped)
            return;
        EndText();
        const std::size_t depth = m_open.size();
        m_bindings.resize(m_open.back().bindings);
        m_open.pop_back();
        dom::Node* node = m_nodes.back();
        m_nodes.pop_back();
        if (depth != m_streamDepth)
            return;
        m_streamDepth = 0;
        // m_nodes now holds exactly the open elements above it.
        const bool more = m_stream->element(m_nodes, node);
        m_document->Release(m_mark);
        if (!more)
        {
            m_stopped = m_streamStopped = true;
            XML_StopParser(m_parser, XML_FALSE);
        }
    }

    void Text(const char* s, int length)
    {
        if (m_stopped)
            return;
        if (m_textOpen)
        {
            // wxWidgets copies the node's text and the piece into a new string.
            m_copies += m_textLength + static_cast<std::uint64_t>(length);
            m_textLength += static_cast<std::uint64_t>(length);
            if (m_document)
                m_text.append(s, static_cast<std::size_t>(length));
            if (m_boundCopies && m_copies > m_limits.maxTextCopyBytes)
                Fail("XML text would copy more than " + Number(m_limits.maxTextCopyBytes) +
                     " bytes while wxWidgets merges it (limit maxTextCopyBytes)");
        }
        else if (!WhiteOnly(s, length))
        {
            m_textOpen = true;
            m_textType = wxXML_TEXT_NODE;
            m_textLength = static_cast<std::uint64_t>(length);
            if (m_document)
                m_text.assign(s, static_cast<std::size_t>(length));
        }
    }

    void CdataStart()
    {
        if (m_stopped)
            return;
        EndText();
        // A CDATA section is a node even when empty or only white space.
        m_textOpen = true;
        m_textType = wxXML_CDATA_SECTION_NODE;
        m_textLength = 0;
    }

    void Markup(wxXmlNodeType type, const char* target, const char* content)
    {
        if (m_stopped)
            return;
        EndText();
        if (m_document)
            Attach(m_document->NewTextNode(type, target ? m_document->Intern(std::string_view(target)) : m_commentName,
                                           content));
    }

    static void XMLCALL OnStart(void* self, const XML_Char* name, const XML_Char** attributes)
    {
        static_cast<Parse*>(self)->Start(name, attributes);
    }
    static void XMLCALL OnEnd(void* self, const XML_Char*) { static_cast<Parse*>(self)->End(); }
    static void XMLCALL OnText(void* self, const XML_Char* s, int length)
    {
        static_cast<Parse*>(self)->Text(s, length);
    }
    static void XMLCALL OnCdataStart(void* self) { static_cast<Parse*>(self)->CdataStart(); }
    static void XMLCALL OnCdataEnd(void* self)
    {
        Parse* parse = static_cast<Parse*>(self);
        if (!parse->m_stopped)
            parse->EndText();
    }
    static void XMLCALL OnComment(void* self, const XML_Char* data)
    {
        static_cast<Parse*>(self)->Markup(wxXML_COMMENT_NODE, nullptr, data);
    }
    static void XMLCALL OnInstruction(void* self, const XML_Char* target, const XML_Char* data)
    {
        static_cast<Parse*>(self)->Markup(wxXML_PI_NODE, target, data);
    }
    // Present only for its effect: internal entities are not expanded.
    static void XMLCALL OnDefault(void*, const XML_Char*, int) {}
    static void XMLCALL OnDoctype(void* self, const XML_Char*, const XML_Char*, const XML_Char*, int)
    {
        Parse* parse = static_cast<Parse*>(self);
        if (!parse->m_stopped && !parse->m_limits.allowDtd)
            parse->Fail("XML has a document type declaration, which packages never use");
    }
    // wxWidgets would guess a table for an encoding libexpat does not know;
    // a wrong guess changes the text silently, so such a part is refused.
    static int XMLCALL OnUnknownEncoding(void* self, const XML_Char* name, XML_Encoding*)
    {
        static_cast<Parse*>(self)->m_unknownEncoding = name ? name : "?";
        return XML_STATUS_ERROR;
    }

    struct Open
    {
        std::size_t bindings;   // m_bindings' size before the element's own
        bool onPath;
    };
    struct Qualified
    {
        const std::string* uri;
        const char* local;
        const char* name;
    };

    const Limits& m_limits;
    dom::Document* m_document;
    const XmlStream* m_stream = nullptr;
    std::vector<std::string> m_path;  // the streamed path, UTF-8
    const bool m_boundCopies;
    XML_Parser m_parser = nullptr;

    bool m_stopped = false;
    bool m_streamStopped = false;
    wxString m_problem;
    std::string m_unknownEncoding;

    std::vector<Open> m_open;
    std::vector<dom::Node*> m_nodes;  // parallel to m_open (nulls when nothing is built)
    std::vector<std::pair<std::string, std::string>> m_bindings; // prefix, namespace
    std::vector<Qualified> m_qualified;

    bool m_textOpen = false;
    wxXmlNodeType m_textType = wxXML_TEXT_NODE;
    std::string m_text;
    std::uint64_t m_textLength = 0;
    std::uint64_t m_copies = 0;

    std::size_t m_streamDepth = 0;    // depth of the streamed element being built, if any
    dom::Document::Mark m_mark{};

    XmlCounts m_counts;
    std::uint64_t m_keptElements = 0;
    std::uint64_t m_keptAttributes = 0;

    const wxString* m_textName = nullptr;
    const wxString* m_cdataName = nullptr;
    const wxString* m_commentName = nullptr;
};

// The whole of a part in memory, as one block.
XmlBlockReader Whole(const char* bytes, std::size_t size)
{
    return [bytes, size, given = false](const char** block, std::size_t* length, wxString*) mutable {
        *block = bytes;
        *length = given ? 0 : size;
        given = true;
        return true;
    };
}

} // namespace

bool ParseXmlFast(const char* bytes, std::size_t size, const Limits& limits, dom::Document* document,
                  wxString* problem, XmlCounts* counts, const XmlStream* stream)
{
    return Parse(limits, document, stream, false).Run(Whole(bytes, size), problem, counts);
}

bool ParseXmlFast(const XmlBlockReader& read, const Limits& limits, dom::Document* document, wxString* problem,
                  XmlCounts* counts, const XmlStream* stream)
{
    return Parse(limits, document, stream, false).Run(read, problem, counts);
}

bool CheckXml(const char* bytes, std::size_t size, const Limits& limits, wxString* problem, XmlCounts* counts)
{
    return Parse(limits, nullptr, nullptr, true).Run(Whole(bytes, size), problem, counts);
}

bool ParseXml(const char* bytes, std::size_t size, const Limits& limits, wxXmlDocument* document, wxString* problem,
              XmlCounts* counts)
{
    if (!CheckXml(bytes, size, limits, problem, counts))
        return false;
    wxMemoryInputStream input(bytes, size);
    ErrorCollector collector;
    if (!document->Load(input) || !document->IsOk() || !document->GetRoot())
    {
        const wxString why = collector.Text();
        *problem = why.empty() ? wxString("XML does not parse") : "XML does not parse: " + why;
        return false;
    }
    return true;
}

} // namespace opc
} // namespace ooxml
