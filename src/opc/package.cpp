// Opening packages: ZIP directory, content types, relationships, bounded reads.
#include "ooxml/opc/package.h"

#include <algorithm>
#include <map>

#include <wx/filename.h>
#include <wx/log.h>
#include <wx/mstream.h>
#include <wx/wfstream.h>
#include <wx/xml/xml.h>
#include <wx/zipstrm.h>

#include "ooxml/aliases.h"
#include "ooxml/opc/markup.h"
#include "ooxml/opc/xml.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/relationships.h"

namespace ooxml
{
namespace opc
{

wxString Error::ToString() const
{
    wxString text = package.empty() ? wxString("ooxml") : package;
    if (!part.empty())
        text << ": " << part;
    text << ": " << message;
    // Names come from the package: they must not reach a terminal as controls.
    return Printable(text);
}

wxString Printable(const wxString& text)
{
    wxString printable;
    for (const wxUniChar c : text)
    {
        const wxUint32 v = c.GetValue();
        if (v < 0x20 || (v >= 0x7F && v <= 0x9F))
            printable << wxString::Format("\\x%02X", static_cast<unsigned>(v));
        else
            printable << c;
    }
    return printable;
}

namespace
{

// Part names compare case-insensitively (OPC, ASCII only).
wxString Key(const wxString& name)
{
    return name.Lower();
}

wxString ExtensionOf(const wxString& partName)
{
    const wxString last = partName.AfterLast('/');
    return last.Find('.') == wxNOT_FOUND ? wxString() : last.AfterLast('.');
}

Error MakeError(const wxString& package, const wxString& part, const wxString& message)
{
    Error error;
    error.package = package;
    error.part = part;
    error.message = message;
    return error;
}

wxString Bytes(std::uint64_t n)
{
    return wxString::Format("%llu bytes", static_cast<unsigned long long>(n));
}

} // namespace

struct Package::Impl
{
    Impl(const Limits& limits, const ReadOptions& options)
        : limits(limits), options(options), bytesRead(0), elementsRead(0)
    {
    }

    Limits limits;
    ReadOptions options;
    bool strict = false;
    wxString path;          // the file, or the name given to a package in memory
    std::string memory;     // the package's bytes when it was opened from memory
    bool inMemory = false;
    std::vector<Part> parts;
    std::vector<std::unique_ptr<wxZipEntry>> entries; // parallel to parts
    std::map<wxString, std::size_t> index;            // Key(name) -> position
    std::map<wxString, wxString> overrides;           // Key(part name) -> type
    std::map<wxString, wxString> defaults;            // Key(extension) -> type
    mutable std::uint64_t bytesRead;
    mutable std::uint64_t elementsRead; // elements of the parts parsed, kept in trees

    bool Fail(Error* error, const wxString& part, const wxString& message) const
    {
        if (error)
            *error = MakeError(path, part, message);
        return false;
    }

    // A fresh stream over the whole package (the file, or the bytes).
    std::unique_ptr<wxInputStream> OpenStream() const;

    // One part's ZIP entry, opened for reading in blocks, with the package's
    // checks on it: the sizes counted as the bytes are inflated (the directory
    // may understate them), the local header's name, the CRC at the end.
    class Entry
    {
    public:
        explicit Entry(const Impl& impl) : m_impl(impl) {}
        ~Entry()
        {
            wxLogNull quiet; // closing a broken entry must not log either
            m_zip.reset();
        }
        // False, with the error, when the part is missing or cannot be read.
        bool Open(const Package& package, const wxString& partName, Error* error);
        // The next block (0 bytes at the end); false, with `problem`, when the
        // entry is broken or a size limit is passed.
        bool Read(const char** block, std::size_t* size, wxString* problem);
        const Part& GetPart() const { return *m_part; }

    private:
        const Impl& m_impl;
        const Part* m_part = nullptr;
        std::unique_ptr<wxInputStream> m_stream;
        std::unique_ptr<wxZipEntry> m_entry;
        std::unique_ptr<wxZipInputStream> m_zip;
        std::uint64_t m_size = 0; // bytes inflated so far
        char m_buffer[65536];
    };
    bool ReadDirectory(Error* error);
    bool ReadContentTypes(Package& package, Error* error);
};

Package::Package(const Limits& limits, const ReadOptions& options) : m_impl(new Impl(limits, options)) {}

Package::~Package() = default;

const wxString& Package::GetPath() const { return m_impl->path; }
const Limits& Package::GetLimits() const { return m_impl->limits; }
const ReadOptions& Package::GetOptions() const { return m_impl->options; }
bool Package::IsStrict() const { return m_impl->strict; }
const std::vector<Part>& Package::GetParts() const { return m_impl->parts; }

bool Package::Open(const wxString& path, Error* error)
{
    m_impl.reset(new Impl(m_impl->limits, m_impl->options));
    m_impl->path = path;
    if (!wxFileName::FileExists(path))
        return m_impl->Fail(error, "", wxFileName::DirExists(path) ? "is a folder, not a file" : "no such file");
    return Load(error);
}

bool Package::OpenMemory(const void* data, std::size_t size, const wxString& name, Error* error)
{
    m_impl.reset(new Impl(m_impl->limits, m_impl->options));
    m_impl->path = name;
    m_impl->memory.assign(static_cast<const char*>(data), size);
    m_impl->inMemory = true;
    return Load(error);
}

bool Package::Load(Error* error)
{
    if (!m_impl->ReadDirectory(error) || !m_impl->ReadContentTypes(*this, error))
        return false;
    // The package's own relationships tell whether it is Strict: its main
    // part is reached through a Strict relationship type.  Read as written;
    // a package whose relationships do not read is reported when they are read.
    std::vector<Relationship> relationships;
    Error ignored;
    ReadRelationships("/", false, &relationships, &ignored);
    for (const Relationship& r : relationships)
        if (r.type.StartsWith("http://purl.oclc.org/ooxml/"))
            m_impl->strict = true;
    return true;
}

std::unique_ptr<wxInputStream> Package::Impl::OpenStream() const
{
    if (inMemory)
        return std::unique_ptr<wxInputStream>(new wxMemoryInputStream(memory.data(), memory.size()));
    std::unique_ptr<wxInputStream> file(new wxFFileInputStream(path));
    if (!file->IsOk())
        return nullptr;
    return file;
}

bool Package::Impl::ReadDirectory(Error* error)
{
    wxLogNull quiet; // wxWidgets logs ZIP trouble itself; we report it
    std::unique_ptr<wxInputStream> stream = OpenStream();
    if (!stream)
        return Fail(error, "", "cannot be opened");
    char magic[4] = {0, 0, 0, 0};
    stream->Read(magic, sizeof magic);
    if (stream->LastRead() != sizeof magic || magic[0] != 'P' || magic[1] != 'K')
        return Fail(error, "", "not a ZIP archive");
    stream->SeekI(0);
    wxZipInputStream zip(*stream);
    // Where each directory record's bytes lie: its local header (at least 30
    // bytes and the name) and the compressed data.
    struct Span
    {
        wxFileOffset begin, end;
        wxString name;
    };
    std::vector<Span> spans;
    for (;;)
    {
        std::unique_ptr<wxZipEntry> entry(zip.GetNextEntry());
        if (!entry)
            break;
        // Every record counts, directories and duplicates too.
        if (spans.size() >= limits.maxParts)
            return Fail(error, "", wxString::Format("more than %zu ZIP entries", limits.maxParts));
        const wxString name = NormalPartName(entry->GetInternalName());
        const wxFileOffset begin = entry->GetOffset();
        spans.push_back(Span{begin,
                             begin + 30 + static_cast<wxFileOffset>(entry->GetInternalName().length()) +
                                 std::max<wxFileOffset>(entry->GetCompressedSize(), 0),
                             name});
        if (entry->GetFlags() & 1)
            return Fail(error, name, "encrypted ZIP entry, not supported");
        if (entry->IsDir())
            continue;
        const wxString key = Key(name);
        if (index.count(key))
        {
            // Part names are unique in a package (OPC, compared without case):
            // neither entry can be trusted, the part is not read.
            parts[index[key]].problem = "two ZIP entries of this part name";
            continue;
        }
        index[key] = parts.size();
        parts.push_back(Part{name, wxString(), static_cast<std::uint64_t>(std::max<wxFileOffset>(entry->GetSize(), 0)),
                             static_cast<std::uint64_t>(std::max<wxFileOffset>(entry->GetCompressedSize(), 0)),
                             wxString()});
        entries.push_back(std::move(entry));
    }
    if (zip.GetLastError() == wxSTREAM_READ_ERROR || parts.empty())
        return Fail(error, "", parts.empty() ? "not a ZIP archive, or an empty one" : "broken ZIP directory");
    // Records that share bytes (one local header aliased, or data running into
    // another entry) are a forged directory: sorted by offset, n log n.
    std::stable_sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.begin < b.begin; });
    std::size_t farthest = 0; // the span reaching furthest so far
    for (std::size_t i = 1; i < spans.size(); ++i)
    {
        if (spans[i].begin < spans[farthest].end)
            return Fail(error, "", "ZIP entries overlap: " + spans[farthest].name + " and " + spans[i].name);
        if (spans[i].end > spans[farthest].end)
            farthest = i;
    }
    return true;
}

bool Package::Impl::ReadContentTypes(Package& package, Error* error)
{
    const wxString name = "/[Content_Types].xml";
    const Part* part = package.FindPart(name);
    if (!part)
        return Fail(error, "", "no [Content_Types].xml part: not an Office Open XML package");
    wxXmlDocument document;
    if (!package.LoadXml(part->name, &document, error))
        return false;
    XMLNSContext context(&document);
    content_types::CT_Types types;
    if (!types.ReadXML(document.GetRoot(), &context))
        return Fail(error, part->name, "content types do not read");
    for (content_types::CT_TypesData__* entry : types.GetData__())
    {
        if (entry->GetDefault())
            defaults[Key(entry->GetDefault()->GetExtension())] = entry->GetDefault()->GetContentType();
        if (entry->GetOverride())
        {
            overrides[Key(NormalPartName(entry->GetOverride()->GetPartName()))] =
                entry->GetOverride()->GetContentType();
        }
    }
    for (Part& p : parts)
        p.contentType = package.GetContentType(p.name);
    return true;
}

wxString Package::NormalPartName(const wxString& name)
{
    wxString normal = name;
    normal.Replace("\\", "/");
    return normal.StartsWith("/") ? normal : "/" + normal;
}

const Part* Package::FindPart(const wxString& name) const
{
    const auto found = m_impl->index.find(Key(NormalPartName(name)));
    return found == m_impl->index.end() ? nullptr : &m_impl->parts[found->second];
}

wxString Package::GetContentType(const wxString& partName) const
{
    const auto byOverride = m_impl->overrides.find(Key(NormalPartName(partName)));
    if (byOverride != m_impl->overrides.end())
        return byOverride->second;
    const auto byDefault = m_impl->defaults.find(Key(ExtensionOf(partName)));
    return byDefault == m_impl->defaults.end() ? wxString() : byDefault->second;
}

bool Package::Impl::Entry::Open(const Package& package, const wxString& partName, Error* error)
{
    m_part = package.FindPart(partName);
    if (!m_part)
        return m_impl.Fail(error, "", "no part named " + NormalPartName(partName));
    if (!m_part->problem.empty())
        return m_impl.Fail(error, m_part->name, m_part->problem);
    if (m_part->size > m_impl.limits.maxPartSize)
        return m_impl.Fail(error, m_part->name, "larger than the limit of " + Bytes(m_impl.limits.maxPartSize));
    const wxZipEntry& entry = *m_impl.entries[m_part - m_impl.parts.data()];

    wxLogNull quiet;
    m_stream = m_impl.OpenStream();
    if (!m_stream)
        return m_impl.Fail(error, m_part->name, "the package cannot be opened again");
    // The local header must name the entry the directory names (decoded as
    // wxWidgets decodes names: UTF-8 by flag bit 11, else the local encoding).
    unsigned char local[30] = {0};
    if (m_stream->SeekI(entry.GetOffset()) != wxInvalidOffset &&
        m_stream->Read(local, sizeof local).LastRead() == 30 && std::equal(local, local + 4, "PK\3\4"))
    {
        std::string raw(local[26] | local[27] << 8, '\0');
        raw.resize(m_stream->Read(&raw[0], raw.size()).LastRead());
        const wxString name = NormalPartName(wxZipEntry::GetInternalName(
            local[7] & 8 ? wxString::FromUTF8(raw.data(), raw.size()) : wxString(raw.data(), wxConvLocal, raw.size()),
            wxPATH_UNIX));
        if (name != NormalPartName(entry.GetInternalName()))
            return m_impl.Fail(error, m_part->name, "ZIP local header names another entry (" + name + ")");
    } // else no local header: wxWidgets reports the broken entry
    m_zip.reset(new wxZipInputStream(*m_stream));
    m_entry.reset(entry.Clone());
    if (!m_zip->OpenEntry(*m_entry))
        return m_impl.Fail(error, m_part->name, "broken ZIP entry");
    return true;
}

bool Package::Impl::Entry::Read(const char** block, std::size_t* size, wxString* problem)
{
    const Limits& limits = m_impl.limits;
    wxLogNull quiet;
    m_zip->Read(m_buffer, sizeof m_buffer);
    const std::size_t n = m_zip->LastRead();
    *block = m_buffer;
    *size = n;
    if (n == 0)
    {
        if (m_zip->GetLastError() == wxSTREAM_EOF || m_zip->GetLastError() == wxSTREAM_NO_ERROR)
            return true;
        *problem = "broken ZIP entry (bad compressed data or CRC)";
        return false;
    }
    m_size += n;
    if (m_size > limits.maxPartSize)
    {
        *problem = "larger than the limit of " + Bytes(limits.maxPartSize);
        return false;
    }
    m_impl.bytesRead += n;
    if (m_impl.bytesRead > limits.maxPackageSize)
    {
        *problem = "the package's parts exceed the limit of " + Bytes(limits.maxPackageSize);
        return false;
    }
    return true;
}

bool Package::ReadPartBytes(const wxString& partName, std::string* bytes, Error* error) const
{
    std::unique_ptr<Impl::Entry> entry(new Impl::Entry(*m_impl));
    if (!entry->Open(*this, partName, error))
        return false;
    bytes->clear();
    // Room for the size the directory states at once, not by doubling (a
    // forged size can cost no more than the limits allow).
    const Limits& limits = m_impl->limits;
    const std::uint64_t budget = limits.maxPackageSize - std::min(limits.maxPackageSize, m_impl->bytesRead);
    bytes->reserve(static_cast<std::size_t>(std::min({entry->GetPart().size, limits.maxPartSize, budget})));
    const char* block = nullptr;
    std::size_t size = 0;
    wxString problem;
    do
    {
        if (!entry->Read(&block, &size, &problem))
            return m_impl->Fail(error, entry->GetPart().name, problem);
        bytes->append(block, size);
    } while (size != 0);
    return true;
}

// A parse's elements count towards the package's total (the streamed ones
// excepted: they are freed as they end).
bool Package::Account(const wxString& partName, const XmlCounts& counts, Error* error) const
{
    m_impl->elementsRead += counts.elements - counts.streamedElements;
    const std::uint64_t limit = m_impl->limits.maxPackageElements;
    if (m_impl->elementsRead <= limit)
        return true;
    return m_impl->Fail(error, FindPart(partName)->name,
                        wxString::Format("the package's parts have more than %llu elements (limit maxPackageElements)",
                                         static_cast<unsigned long long>(limit)));
}

bool Package::LoadXml(const wxString& partName, wxXmlDocument* document, Error* error) const
{
    std::string bytes;
    if (!ReadPartBytes(partName, &bytes, error))
        return false;
    wxString problem;
    XmlCounts counts;
    const bool parsed = ParseXml(bytes.data(), bytes.size(), m_impl->limits, document, &problem, &counts);
    std::string().swap(bytes);
    if (!parsed)
        return m_impl->Fail(error, FindPart(partName)->name, problem);
    return Account(partName, counts, error);
}

bool Package::ParsePart(const wxString& partName, dom::Document* document, Error* error,
                        const XmlStream* stream) const
{
    // Inflated and parsed together: only a block of the part is in memory
    // at a time, however large the part.
    std::unique_ptr<Impl::Entry> entry(new Impl::Entry(*m_impl));
    if (!entry->Open(*this, partName, error))
        return false;
    const XmlBlockReader read = [&entry](const char** block, std::size_t* size, wxString* problem) {
        return entry->Read(block, size, problem);
    };
    wxString problem;
    XmlCounts counts;
    const bool parsed = ParseXmlFast(read, m_impl->limits, document, &problem, &counts, stream);
    if (!parsed)
        return m_impl->Fail(error, entry->GetPart().name, problem);
    return Account(partName, counts, error);
}

template <class Match>
bool Package::FindRelated(const wxString& source, Match match, wxString* part, Error* error) const
{
    part->clear();
    std::vector<Relationship> relationships;
    if (!GetRelationships(source, &relationships, error))
        return false;
    const auto found = std::find_if(relationships.begin(), relationships.end(), match);
    if (found != relationships.end())
        *part = found->resolved;
    return true;
}

bool Package::FindRelatedPart(const wxString& source, const wxString& type, wxString* part, Error* error) const
{
    return FindRelated(
        source, [&](const Relationship& r) { return !r.external && (r.type == type || r.type.EndsWith("/" + type)); },
        part, error);
}

bool Package::FindRelatedPartById(const wxString& source, const wxString& id, wxString* part, Error* error) const
{
    return FindRelated(source, [&](const Relationship& r) { return r.id == id; }, part, error);
}

bool Package::GetRelationships(const wxString& source, std::vector<Relationship>* relationships, Error* error) const
{
    return ReadRelationships(source, m_impl->options.strict, relationships, error);
}

bool Package::ReadRelationships(const wxString& source, bool transitional, std::vector<Relationship>* relationships,
                                Error* error) const
{
    relationships->clear();
    const wxString relsName = RelationshipsPartName(source);
    if (!FindPart(relsName))
        return true;
    wxXmlDocument document;
    if (!LoadXml(relsName, &document, error))
        return false;
    XMLNSContext context(&document);
    ooxml::relationships::CT_Relationships rels;
    if (!rels.ReadXML(document.GetRoot(), &context))
        return m_impl->Fail(error, FindPart(relsName)->name, "relationships do not read");
    // Targets resolve against the part's name as the package spells it,
    // however the caller spelled the source.
    const Part* sourcePart = FindPart(source);
    const wxString base = sourcePart ? sourcePart->name : NormalPartName(source);
    for (ooxml::relationships::CT_Relationship* item : rels.GetRelationship())
    {
        Relationship r;
        r.id = item->GetId();
        r.type = transitional ? TransitionalUri(item->GetType()) : item->GetType();
        r.target = item->GetTarget();
        r.targetMode = item->GetTargetMode();
        r.external = r.targetMode.CmpNoCase("External") == 0;
        r.resolved = r.external ? r.target : ResolveTarget(base, r.target);
        relationships->push_back(r);
    }
    return true;
}

wxString Package::RelationshipsPartName(const wxString& source)
{
    const wxString name = NormalPartName(source);
    if (name == "/")
        return "/_rels/.rels";
    return name.BeforeLast('/') + "/_rels/" + name.AfterLast('/') + ".rels";
}

bool Package::IsRelationshipsPart(const wxString& partName)
{
    const wxString key = Key(NormalPartName(partName));
    return key.EndsWith(".rels") && key.BeforeLast('/').AfterLast('/') == "_rels";
}

wxString Package::ResolveTarget(const wxString& source, const wxString& target)
{
    wxString path = target;
    path.Replace("\\", "/");
    path = path.BeforeFirst('#');
    if (!path.StartsWith("/"))
    {
        const wxString folder = source.BeforeLast('/');
        path = folder + "/" + path;
    }
    std::vector<wxString> segments;
    for (const wxString& segment : wxSplit(path, '/', '\0'))
    {
        if (segment.empty() || segment == ".")
            continue;
        if (segment == "..")
        {
            if (!segments.empty())
                segments.pop_back();
            continue;
        }
        segments.push_back(segment);
    }
    wxString result;
    for (const wxString& segment : segments)
        result << "/" << segment;
    return result.empty() ? wxString("/") : result;
}

} // namespace opc
} // namespace ooxml
