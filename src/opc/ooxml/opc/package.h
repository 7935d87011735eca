// ooxml::opc: opening Office Open XML packages (the optional layer on top
// of the library, which reads only already parsed parts).
//
//   ooxml::opc::Package package;
//   ooxml::opc::Error error;
//   if (!package.Open("report.xlsx", &error))
//       return Fail(error.ToString());            // "report.xlsx: not a ZIP archive"
//   for (const ooxml::opc::Part& part : package.GetParts())
//       ... part.name ("/xl/workbook.xml"), part.contentType ...
//
// Every failure is an Error value naming the package and the part; hostile
// input is bounded by Limits (sizes, nesting depth, number of parts).
//
// Part names are accepted as the package writes them ("/word/document.xml")
// and as a ZIP listing shows them ("word/document.xml"), in any case; every
// function taking a part name goes through NormalPartName.
#ifndef OOXML_OPC_PACKAGE_H
#define OOXML_OPC_PACKAGE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <wx/string.h>

#include "ooxml/dom.h"
#include "ooxml/ooxml.h"

class wxXmlDocument;

namespace ooxml
{
namespace opc
{

struct XmlCounts; // ooxml/opc/xml.h
struct XmlStream;

// Bounds on what a package may make us read or hold.  The defaults suit real
// documents (the largest parts of real workbooks are some hundreds of MB
// uncompressed) and stop decompression bombs and runaway nesting.
struct Limits
{
    std::uint64_t maxPartSize = 512ull << 20;     // uncompressed bytes of one part
    std::uint64_t maxPackageSize = 2048ull << 20; // uncompressed bytes of all parts read
    std::size_t maxParts = 65536;                 // records of the ZIP directory (folders, duplicates too)
    // The rest are counted on the XML parser's own events, before any tree
    // is read (on the wxWidgets path by a checking parse before Load).
    std::size_t maxDepth = 256;                   // XML element nesting
    std::uint64_t maxElements = 8u << 20;         // elements of one part (streamed ones excepted)
    std::uint64_t maxAttributes = 16u << 20;      // attributes of one part (streamed ones excepted)
    std::uint64_t maxPackageElements = 32u << 20; // elements of all parts read, together
    std::size_t maxAttributesPerElement = 4096;   // wxWidgets appends attributes in quadratic time
    // Namespace declarations that markup compatibility copies onto the elements
    // it takes out of a wrapper: nested wrappers with many declarations would
    // otherwise multiply them (real documents copy a few hundred).
    std::uint64_t maxCopiedDeclarations = 1u << 20;
    // wxWidgets builds a text node by copying it again for every piece the
    // parser hands over (each line, each entity): the bytes that would copy,
    // summed over a part, are bounded on that path (the fast path is linear).
    std::uint64_t maxTextCopyBytes = 1ull << 30;
    // A document type declaration (DTD) is refused: packages never use one, and
    // its entities and attribute defaults would change what the part says.
    bool allowDtd = false;
};

// What went wrong, and where.
struct OOXML_API Error
{
    wxString package;   // the file
    wxString part;      // the part name ("/xl/workbook.xml"); empty for the whole package, and
                        // for a part the package does not have (the message names it)
    wxString message;   // what is wrong ("no part named /x/y.xml", ...)
    bool noRootClass = false;  // the part is XML that no class reads (an SVG image, an unknown custom XML item)

    // "report.xlsx: /xl/workbook.xml: XML does not parse: ..." (one line: control
    // characters, of ZIP names say, are written as text, "\x1B").
    wxString ToString() const;
};

// One part of the package, in the order of the ZIP directory.
struct Part
{
    wxString name;          // part name: "/" and the ZIP item name ("/xl/workbook.xml")
    wxString contentType;   // by Override, else by Default extension; empty if neither
    std::uint64_t size;     // uncompressed size as the directory states it
    std::uint64_t compressedSize;
    wxString problem;       // why the part cannot be read (two ZIP entries of its name), if so
};

// Options of reading parts (ReadPartRoot in ooxml/opc/parts.h) and relationships.
struct ReadOptions
{
    // Markup compatibility processing (mc:AlternateContent, mc:Ignorable ...)
    // before ReadXML.
    bool markupCompatibility = true;
    // ISO Strict namespaces and relationship types read as their
    // transitional equivalents.
    bool strict = true;
    // Parse parts with wxXmlDocument and read the wxWidgets tree, instead of
    // the fast path (libexpat into an ooxml::dom::Document).  The results are
    // the same; the fast path takes a fraction of the time and memory.
    bool wxWidgetsParser = false;
};

// One relationship of a source part (or of the package).
struct Relationship
{
    wxString id;
    wxString type;
    wxString target;        // as written
    wxString targetMode;    // as written ("External", "Internal" or empty)
    wxString resolved;      // the target part name, or the target itself when external
    bool external;
};

class OOXML_API Package
{
public:
    explicit Package(const Limits& limits = Limits(), const ReadOptions& options = ReadOptions());
    ~Package();
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    // Reads the ZIP directory and the content types part.  False (with
    // `error` filled) if the file is missing, is not a ZIP archive, has too
    // many entries, entries whose bytes overlap, an encrypted entry, or no
    // readable [Content_Types].xml.  (Two parts of one name fail when read.)
    bool Open(const wxString& path, Error* error);

    // The same for a package held in memory; `name` stands for the file in
    // messages.  The bytes are copied.
    bool OpenMemory(const void* data, std::size_t size, const wxString& name, Error* error);

    const wxString& GetPath() const;
    const Limits& GetLimits() const;
    const ReadOptions& GetOptions() const;
    const std::vector<Part>& GetParts() const;

    // Whether the package is an ISO Strict one (its own relationship types
    // are those of http://purl.oclc.org/ooxml/).
    bool IsStrict() const;

    // The part of that name (compared case-insensitively, as OPC says), or null.
    const Part* FindPart(const wxString& name) const;

    // A part name as the package spells it: "/" in front of a ZIP item name
    // ("word/document.xml" -> "/word/document.xml"), backslashes made "/";
    // "" is "/", the package itself.  Case is kept (names compare without it).
    static wxString NormalPartName(const wxString& name);

    // The content type of a part name: its Override, else the Default of its
    // extension (case-insensitive), else empty.
    wxString GetContentType(const wxString& partName) const;

    // The relationships of `source` ("/" or "" for the package itself), read
    // from its relationships part with the library's CT_Relationships.  A
    // source without a relationships part has none (true, empty).  Strict
    // relationship types read as transitional ones unless the options say not.
    bool GetRelationships(const wxString& source, std::vector<Relationship>* relationships,
                          Error* error) const;

    // The uncompressed bytes of a part, within the limits.  A part the
    // package does not have fails with "no part named /x/y.xml"; a part whose
    // local ZIP header names another entry than the directory fails as well.
    bool ReadPartBytes(const wxString& partName, std::string* bytes, Error* error) const;

    // Parses a part into `document` with wxWidgets: the checks of the limits
    // (ParseXml in ooxml/opc/xml.h) come before wxWidgets builds the tree;
    // parse errors are reported, not logged.
    bool LoadXml(const wxString& partName, wxXmlDocument* document, Error* error) const;

    // The same on the fast path: parses a part into `document` (which must be
    // new) with ParseXmlFast, streaming if `stream` says so.  The part's bytes
    // are released before it returns.  Both count the elements they keep
    // towards Limits::maxPackageElements.
    bool ParsePart(const wxString& partName, dom::Document* document, Error* error,
                   const XmlStream* stream = nullptr) const;

    // The part that `source` points to by its first internal relationship of
    // `type`, given whole or by its last segment ("officeDocument",
    // "sharedStrings"), resolved ("/xl/workbook.xml"); empty if it has none.
    // False only if the relationships do not read.
    bool FindRelatedPart(const wxString& source, const wxString& type, wxString* part, Error* error) const;

    // The same by relationship id ("rId3"), external targets included.
    bool FindRelatedPartById(const wxString& source, const wxString& id, wxString* part, Error* error) const;

    // "/xl/workbook.xml" -> "/xl/_rels/workbook.xml.rels"; the package's own
    // relationships are "/_rels/.rels".
    static wxString RelationshipsPartName(const wxString& source);

    // A relative target resolved against its source part's folder
    // ("/xl/workbook.xml", "worksheets/sheet1.xml" -> "/xl/worksheets/sheet1.xml");
    // "." and ".." segments removed; an absolute target ("/a/b") kept.
    static wxString ResolveTarget(const wxString& source, const wxString& target);

    // Whether a part name is a relationships part ("/_rels/.rels", "/x/_rels/y.rels").
    static bool IsRelationshipsPart(const wxString& partName);

private:
    // After the bytes are there: directory, content types, Strict or not.
    bool Load(Error* error);
    bool ReadRelationships(const wxString& source, bool transitional, std::vector<Relationship>* relationships,
                           Error* error) const;
    // The resolved target of the first relationship of `source` that `match` accepts.
    template <class Match>
    bool FindRelated(const wxString& source, Match match, wxString* part, Error* error) const;

    // Adds a parse's elements to the package's total; false past the limit.
    bool Account(const wxString& partName, const XmlCounts& counts, Error* error) const;

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

// `text` with control characters (C0, DEL, C1: ESC, BEL, CR, LF ...) written
// as "\x1B", so that names taken from a package print as text on one line.
OOXML_API wxString Printable(const wxString& text);

} // namespace opc
} // namespace ooxml

#endif // OOXML_OPC_PACKAGE_H
